// The overhead of the component over the provider.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <string_view>

// Keeps freed memory in the program, so that the cost of new pages does not hide differences. With
// the first argument --new-pages, large memory is allocated from the system and returned to it each
// time, as with the allocator's default settings.
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
