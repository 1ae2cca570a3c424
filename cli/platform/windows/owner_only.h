// The access rights of a file that its owner alone may read.
#pragma once

#include <windows.h>

namespace latchkey::cli {

// Security attributes for CreateFile that grant the process's user everything and nobody else
// anything.
class OwnerOnly {
 public:
  OwnerOnly();
  OwnerOnly(const OwnerOnly&) = delete;
  OwnerOnly& operator=(const OwnerOnly&) = delete;
  ~OwnerOnly();

  // Null when the system did not make them; GetLastError() tells why.
  [[nodiscard]] SECURITY_ATTRIBUTES* Get() noexcept;

 private:
  SECURITY_ATTRIBUTES attributes_{sizeof attributes_, nullptr, FALSE};
};

}  // namespace latchkey::cli
