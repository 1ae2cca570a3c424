// What the component costs beside what it calls.
#include <benchmark/benchmark.h>
#include <malloc.h>

// Freed memory stays with the program: new pages cost the same whoever asks for them, and would
// hide what is measured.
int main(int argc, char** argv) {
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, 2047 << 20);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
