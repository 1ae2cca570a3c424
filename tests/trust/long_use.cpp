// Mixed operations in great number, on one service object and on fresh ones: what the process holds
// does not grow.
//   long_use            20,000 operations; a million with LATCHKEY_LONG
//   long_use COUNT      that many
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "tests/trust/case_player.h"
#include "tests/trust/program_start.h"
#include "tests/trust/resource_usage.h"

namespace latchkey::test {
namespace {

constexpr std::uint64_t kSeed = 6;
constexpr std::uint64_t kStretches = 10;
constexpr std::uint64_t kCallsOfACase = 11;  // on the average

// What may come and go beside the component: the C library's buffers and the system's caches.
constexpr std::uint64_t kResidentSlack = 1U << 20;
constexpr std::uint64_t kHeapSlack = 256U << 10;

void Print(const char* when, const ResourceUsage& usage) {
  std::printf("%-8s resident %lu KiB, heap %lu bytes, system handles %lu, provider handles %ld\n",
              when, static_cast<unsigned long>(usage.residentBytes >> 10),
              static_cast<unsigned long>(usage.heapBytes),
              static_cast<unsigned long>(usage.systemHandles),
              static_cast<long>(usage.providerHandles));
}

// One stretch: half of the operations on one object, half on fresh ones. Measured with an object
// that has done nothing yet.
ResourceUsage Use(Component& component, std::uint64_t operations, std::uint64_t sequence) {
  Transcript transcript;
  CasePlayer player(component, RandomSource(kSeed, sequence), transcript);
  player.Begin();
  for (std::uint64_t i = 0; i < operations / 2; ++i) player.Step();
  for (std::uint64_t i = 0; i < operations / 2; i += kCallsOfACase) player.Play();
  while (component.HasMain()) component.DropMain();
  player.Begin();
  return CurrentUsage();
}

bool IsFlat(const ResourceUsage& first, const ResourceUsage& last) {
  return last.residentBytes <= first.residentBytes + kResidentSlack &&
         last.heapBytes <= first.heapBytes + kHeapSlack &&
         last.systemHandles <= first.systemHandles && last.providerHandles == 0 &&
         first.providerHandles == 0;
}

int Run(std::uint64_t operations) {
  const auto component = MakeComponent();
  component->CreateMain();
  component->CreateService();
  CountProviderHandles();
  // The first stretch and the second fill caches and heaps to their working size.
  Use(*component, operations / kStretches, 0);
  const ResourceUsage first = Use(*component, operations / kStretches, 1);
  Print("early", first);
  ResourceUsage last;
  for (std::uint64_t i = 2; i < kStretches; ++i) {
    last = Use(*component, operations / kStretches, i);
  }
  Print("late", last);
  const bool flat = IsFlat(first, last);
  std::printf("%lu operations, %s\n", static_cast<unsigned long>(operations),
              flat ? "flat" : "GROWING");
  return flat ? EXIT_SUCCESS : EXIT_FAILURE;
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
