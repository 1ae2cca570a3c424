// Ends the program with a special status at the first exception of the processor or the system,
// wherever it is raised. Otherwise Wine handles exceptions during the end or unloading of a DLL,
// and the program's status does not show them.
#pragma once

#include <windows.h>

#include <cstdio>

namespace latchkey::test {

constexpr UINT kFatalExceptionStatus = 70;  // not used by any other exit of a test program

// Errors of the system only: exceptions of compilers and the run-time's messages to debuggers have
// codes of other kinds.
inline LONG CALLBACK EndAtFatalException(EXCEPTION_POINTERS* raised) {
  constexpr DWORD kSystemError = 0xC;
  const EXCEPTION_RECORD& record = *raised->ExceptionRecord;
  if (record.ExceptionCode >> 28 != kSystemError) return EXCEPTION_CONTINUE_SEARCH;
  char line[64];
  const int length = std::snprintf(line, sizeof(line), "exception %08lX at %p\n",
                                   record.ExceptionCode, record.ExceptionAddress);
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), line, static_cast<DWORD>(length), &written, nullptr);
  TerminateProcess(GetCurrentProcess(), kFatalExceptionStatus);
  return EXCEPTION_CONTINUE_SEARCH;
}

// Before main, so before the program loads the DLL, and ahead of the handlers of others.
inline void* const kFatalExceptionHandler = AddVectoredExceptionHandler(1, EndAtFatalException);

}  // namespace latchkey::test
