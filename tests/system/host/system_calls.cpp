#include "tests/system/host/system_calls.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace latchkey::test {
namespace {

void Answer(long number, std::uint32_t answer) {
  std::array<sock_filter, 4> program{
      sock_filter{BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
      sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, 1, static_cast<std::uint32_t>(number)},
      sock_filter{BPF_RET | BPF_K, 0, 0, answer},
      sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
  };
  const sock_fprog filter{program.size(), program.data()};
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0) {
    throw std::runtime_error("the system takes no filter");
  }
}

}  // namespace

void ForbidSystemCall(long number) { Answer(number, SECCOMP_RET_KILL_PROCESS); }

void FailSystemCall(long number, int error) {
  Answer(number, SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(error));
}

}  // namespace latchkey::test
