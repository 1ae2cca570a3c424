// The table of the classes that clients can create, used by the class factory, the dispatcher, the
// error information and the registration.
#pragma once

#include <cstddef>
#include <span>

#include "com/windows/automation_owners.h"
#include "com/windows/automation_prelude.h"

namespace latchkey::com {

struct ClassDescription {
  const CLSID& classId;
  const IID& interfaceId;      // the dual default interface
  const wchar_t* progId;       // without version; also the source in error information
  const wchar_t* description;  // shown by registry viewers
  // A new object. Raises OutOfMemory or bad_alloc.
  UniqueInterface<IUnknown> (*create)();
};

extern const ClassDescription kMainClass;
extern const ClassDescription kCryptoApiClass;
extern const ClassDescription kTimerClass;

inline constexpr std::size_t kClassCount = 3;
[[nodiscard]] std::span<const ClassDescription* const, kClassCount> AllClasses() noexcept;

// Returns null for a class that is not the component's.
[[nodiscard]] const ClassDescription* FindClass(REFCLSID classId) noexcept;

// Whether the objects of a class have an interface.
[[nodiscard]] bool HasInterface(const ClassDescription& description, REFIID interfaceId) noexcept;

}  // namespace latchkey::com
