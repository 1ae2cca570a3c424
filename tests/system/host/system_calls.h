// Makes system calls of this process fail, as a parent process can.
#pragma once

namespace latchkey::test {

// Makes the system end the process (SIGSYS) at the system call of this number (SYS_socket, for
// example). Cannot be undone: call it in a process that ends after the test. Throws
// std::runtime_error if the system does not support it.
void ForbidSystemCall(long number);

// The same, but the call fails with this error; 0 makes it return 0.
void FailSystemCall(long number, int error);

}  // namespace latchkey::test
