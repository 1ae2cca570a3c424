// Many mixed operations, half of them on one service object that lives all the time and half on
// fresh ones: the resources of the process must not grow.
//   long_use            20,000 operations; a million with LATCHKEY_LONG
//   long_use COUNT      that many
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>

#include "tests/system/trust/case_player.h"
#include "tests/system/trust/program_start.h"
#include "tests/system/trust/resource_usage.h"

namespace latchkey::test {
namespace {

constexpr std::uint64_t kSeed = 6;
constexpr std::uint64_t kStretches = 10;
constexpr std::uint64_t kFirstStretches = 2;  // fill caches and heaps to their working size

// The bounds for growth outside the component. In the short form a leak of one byte in each
// operation reaches the heap's bound, in the long form one in every fiftieth. This requires that
// the system's caches are off, as in the test.
constexpr std::int64_t kResidentSlack = 1 << 20;
constexpr std::int64_t kHeapSlack = 16 << 10;

// Each of the two service objects may keep a context.
constexpr std::int64_t kKeptContexts = 2;

class MixedUse {
 public:
  MixedUse() {
    lasting_->CreateMain();
    lasting_->CreateService();
  }

  // Continues to this number of operations. Returns the resources in use then, with objects alive.
  ResourceUsage PlayTo(std::uint64_t operations) {
    while (onFresh_ < operations / 2) onFresh_ += freshPlayer_.Play();
    // Destroying another entry object may have destroyed the thread's record.
    lasting_->DropMain();
    lasting_->CreateMain();
    for (; onFresh_ + onLasting_ < operations; ++onLasting_) lastingPlayer_.Step();
    static_cast<void>(lasting_->Record());  // a fault when the operations had no record
    return CurrentUsage();
  }

 private:
  Transcript transcript_;
  std::unique_ptr<Component> lasting_ = MakeComponent();
  std::unique_ptr<Component> fresh_ = MakeComponent();
  CasePlayer lastingPlayer_{*lasting_, RandomSource(kSeed, 0), transcript_};
  CasePlayer freshPlayer_{*fresh_, RandomSource(kSeed, 1), transcript_};
  std::uint64_t onLasting_ = 0;
  std::uint64_t onFresh_ = 0;
};

void Print(const char* when, const ResourceUsage& usage) {
  std::printf("%-8s resident %lu KiB, heap %lu bytes, system handles %lu, provider handles %ld\n",
              when, static_cast<unsigned long>(usage.residentBytes >> 10),
              static_cast<unsigned long>(usage.heapBytes),
              static_cast<unsigned long>(usage.systemHandles),
              static_cast<long>(usage.providerHandles));
}

// Prints the growth and returns whether it is within the bound.
bool Judge(const char* what, std::uint64_t before, std::uint64_t now, std::int64_t most) {
  const auto more = static_cast<std::int64_t>(now - before);
  std::printf("%s: %ld bytes more, %ld allowed\n", what, static_cast<long>(more),
              static_cast<long>(most));
  return more <= most;
}

int Run(std::uint64_t operations) {
  std::optional<MixedUse> use(std::in_place);
  CountProviderHandles();
  ResourceUsage first;
  ResourceUsage last;
  for (std::uint64_t i = 1; i <= kStretches; ++i) {
    last = use->PlayTo(operations / kStretches * i);
    if (i == kFirstStretches) first = last;
  }
  use.reset();
  const ResourceUsage after = CurrentUsage();
  Print("early", first);
  Print("late", last);
  Print("after", after);
  const bool heapIsFlat = Judge("heap", first.heapBytes, last.heapBytes, kHeapSlack);
  const bool isFlat = Judge("resident", first.residentBytes, last.residentBytes, kResidentSlack) &&
                      heapIsFlat && last.systemHandles <= first.systemHandles &&
                      last.providerHandles <= kKeptContexts && after.providerHandles == 0;
  std::printf("%lu operations, %s\n", static_cast<unsigned long>(operations),
              isFlat ? "flat" : "GROWING");
  return isFlat ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace latchkey::test

int main(int count, char** arguments) {
  latchkey::test::SayThatItBegins("long_use");
  const char* const usual = std::getenv("LATCHKEY_LONG") != nullptr ? "1000000" : "20000";
  try {
    return latchkey::test::Run(std::strtoull(count > 1 ? arguments[1] : usual, nullptr, 10));
  } catch (const std::exception& failure) {
    std::printf("%s\n", failure.what());
    return EXIT_FAILURE;
  }
}
