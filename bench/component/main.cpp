// What the component costs beside what it calls.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <string_view>

// Freed memory stays with the program, so that new pages do not hide what is measured. With the
// argument --new-pages, the first one, large memory comes from the system and goes back to it each
// time, as in a program that does not choose.
int main(int argc, char** argv) {
  constexpr std::string_view kNewPages = "--new-pages";
  if (argc > 1 && argv[1] == kNewPages) {
    argv[1] = argv[0];
    --argc;
    ++argv;
  } else {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
