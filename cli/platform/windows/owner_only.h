// The access rights of a file that its owner alone may read.
#pragma once

#include <windows.h>

#include "cli/platform/windows/handles.h"

namespace latchkey::cli {

// Security attributes for CreateFile that grant all rights to the process's user and none to
// others.
class OwnerOnly {
 public:
  OwnerOnly();
  OwnerOnly(const OwnerOnly&) = delete;
  OwnerOnly& operator=(const OwnerOnly&) = delete;
  ~OwnerOnly() = default;

  // Null if the system failed to make them; GetLastError() has the reason.
  [[nodiscard]] SECURITY_ATTRIBUTES* Get() noexcept;

 private:
  UniqueLocal<PSECURITY_DESCRIPTOR> rights_;
  SECURITY_ATTRIBUTES attributes_{sizeof attributes_, nullptr, FALSE};
};

}  // namespace latchkey::cli
