#include "cli/platform/standard_streams.h"

#include <windows.h>

#include <initializer_list>

namespace latchkey::cli {

// A parent can pass the number of a handle that this process does not have. The next opened file
// would get that number.
void OccupyClosedStreams() noexcept {
  for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    DWORD flags = 0;
    if (!GetHandleInformation(GetStdHandle(stream), &flags)) {
      SetStdHandle(stream, INVALID_HANDLE_VALUE);
    }
  }
}

}  // namespace latchkey::cli
