// The first words of a test program.
#pragma once

#include <cstdio>

namespace latchkey::test {

// What GoogleTest does for its programs. check takes a failed one that has printed nothing for one
// that Wine never started, so this comes first.
inline void SayThatItBegins(const char* program) {
  std::printf("%s begins\n", program);
  std::fflush(stdout);
}

}  // namespace latchkey::test
