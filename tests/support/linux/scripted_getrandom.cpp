// The C library's getrandom, replaced in the test program.
#include <sys/random.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "tests/support/random_source_script.h"

extern "C" ssize_t getrandom(void* buffer, size_t length, unsigned flags) {
  auto* const script = latchkey::test::RandomSourceScript::Current();
  if (script == nullptr) return ::syscall(SYS_getrandom, buffer, length, flags);
  const long answer = script->Answer({static_cast<std::uint8_t*>(buffer), length});
  if (answer >= 0) return answer;
  errno = static_cast<int>(-answer);
  return -1;
}
