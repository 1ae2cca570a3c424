// A system that refuses: what a process may be kept from by the one that starts it.
#pragma once

namespace latchkey::test {

// From here on the process is ended (SIGSYS) when it makes the system call of this number
// (SYS_socket, for example). Not taken back: call it in a process that ends after the test. Throws
// std::runtime_error when the system cannot do that.
void ForbidSystemCall(long number);

// The same, but the call fails with this error; 0 makes it return 0.
void FailSystemCall(long number, int error);

}  // namespace latchkey::test
