// The first words of a test program.
#pragma once

#include <cstdio>

namespace latchkey::test {

// Prints a first line as GoogleTest does: check treats a failed program without output as one
// that Wine never started.
inline void SayThatItBegins(const char* program) {
  std::printf("%s begins\n", program);
  std::fflush(stdout);
}

}  // namespace latchkey::test
