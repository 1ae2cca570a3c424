// What the platform layer throws when the system lacks a library that is loaded on demand. The
// component records them as run-time faults (diagnostics/fault.h).
#pragma once

#include <exception>

namespace latchkey::platform {

// The system has no such library, or it cannot be loaded.
class MissingLibrary final : public std::exception {
 public:
  [[nodiscard]] const char* what() const noexcept override { return "library not found"; }
};

// The library has no such function.
class MissingFunction final : public std::exception {
 public:
  [[nodiscard]] const char* what() const noexcept override { return "function not found"; }
};

}  // namespace latchkey::platform
