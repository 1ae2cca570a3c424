// Prints the results of random cases on this target, for comparison with other targets.
//   differential SEED COUNT         a line for each of the cases 0 to COUNT - 1: its number and a
//                                   digest of all that a client sees of it
//   differential SEED case NUMBER   that one case in full
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

#include "tests/system/trust/case_player.h"

namespace latchkey::test {
namespace {

std::uint64_t Play(Component& component, std::uint64_t seed, std::uint64_t number, bool shown) {
  Transcript transcript(shown);
  CasePlayer(component, RandomSource(seed, number), transcript).Play();
  return transcript.Digest();
}

int Run(int count, char** arguments) {
  const bool one = count == 4 && std::string_view(arguments[2]) == "case";
  if (count != 3 && !one) return EXIT_FAILURE;
  const std::uint64_t seed = std::strtoull(arguments[1], nullptr, 10);
  const std::uint64_t last = std::strtoull(arguments[count - 1], nullptr, 10);
  const auto component = MakeComponent();
  if (one) {
    Play(*component, seed, last, true);
    return EXIT_SUCCESS;
  }
  for (std::uint64_t number = 0; number < last; ++number) {
    const std::uint64_t digest = Play(*component, seed, number, false);
    std::printf("%lu %s\n", static_cast<unsigned long>(number), HexOf(digest).c_str());
  }
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace latchkey::test

int main(int count, char** arguments) {
  try {
    return latchkey::test::Run(count, arguments);
  } catch (const std::exception& failure) {
    std::printf("%s\n", failure.what());
    return EXIT_FAILURE;
  }
}
