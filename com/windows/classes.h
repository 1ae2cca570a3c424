// The classes that clients can create, as one table: the class factory, the dispatcher, the error
// information and the registration are all led by it.
#pragma once

#include <cstddef>
#include <span>

#include "com/windows/automation_owners.h"
#include "com/windows/automation_prelude.h"

namespace latchkey::com {

struct ClassDescription {
  const CLSID& classId;
  const IID& interfaceId;      // the dual default interface
  const wchar_t* progId;       // without version; also the source that error information names
  const wchar_t* description;  // what registry viewers show
  // A new object. Raises OutOfMemory or bad_alloc.
  UniqueInterface<IUnknown> (*create)();
};

extern const ClassDescription kMainClass;
extern const ClassDescription kCryptoApiClass;
extern const ClassDescription kTimerClass;

inline constexpr std::size_t kClassCount = 3;
[[nodiscard]] std::span<const ClassDescription* const, kClassCount> AllClasses() noexcept;

// Null for a class that is not the component's.
[[nodiscard]] const ClassDescription* FindClass(REFCLSID classId) noexcept;

// Whether the objects of a class answer to an interface.
[[nodiscard]] bool HasInterface(const ClassDescription& description, REFIID interfaceId) noexcept;

}  // namespace latchkey::com
