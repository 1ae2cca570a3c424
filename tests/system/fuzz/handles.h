// The handles of the C interface that a driver has opened.
#pragma once

#include <algorithm>
#include <cstddef>
#include <set>
#include <vector>

#include "latchkey.h"
#include "tests/system/fuzz/input.h"

namespace latchkey::fuzz {

// Every number that was ever a handle of any kind.
using HandleNumbers = std::vector<void*>;

enum class HandleChoice { Newest, Earlier, OfAnyKind, Null };

// The handles of one kind. Closed ones may still be drawn.
template <class Handle>
class Handles {
 public:
  using OpenFunction = int (*)(Handle**);
  using CloseFunction = int (*)(Handle*);

  Handles(OpenFunction open, CloseFunction close, HandleNumbers& numbers)
      : openFunction_(open), closeFunction_(close), numbers_(numbers) {}
  Handles(const Handles&) = delete;
  Handles& operator=(const Handles&) = delete;
  ~Handles() {
    for (Handle* const handle : open_) Require(closeFunction_(handle) == LATCHKEY_OK);
  }

  int Open() {
    Handle* handle = nullptr;
    const int status = openFunction_(&handle);
    Require(status == LATCHKEY_OK && handle != nullptr);
    Require(std::ranges::find(numbers_, handle) == numbers_.end());
    numbers_.push_back(handle);
    all_.push_back(handle);
    open_.insert(handle);
    return status;
  }

  [[nodiscard]] int OpenWithoutResult() const { return openFunction_(nullptr); }

  // Only an open handle can be closed, once; closing another does nothing.
  int Close(Handle* handle) {
    const bool closes = open_.erase(handle) > 0 || handle == nullptr;
    const int status = closeFunction_(handle);
    Require(status == (closes ? LATCHKEY_OK : LATCHKEY_BAD_HANDLE));
    return status;
  }

  [[nodiscard]] bool IsOpen(Handle* handle) const { return open_.contains(handle); }

  // Null if no handle was made yet.
  [[nodiscard]] Handle* Draw(HandleChoice choice, Input& input) const {
    if (choice == HandleChoice::Newest && !all_.empty()) return all_.back();
    if (choice == HandleChoice::Earlier) return DrawFrom(all_, input);
    if (choice == HandleChoice::OfAnyKind) return static_cast<Handle*>(DrawFrom(numbers_, input));
    return nullptr;
  }

 private:
  template <class Element>
  static Element DrawFrom(const std::vector<Element>& elements, Input& input) {
    const std::size_t index = input.Take<std::uint8_t>();
    return elements.empty() ? nullptr : elements.at(elements.size() - 1 - index % elements.size());
  }

  OpenFunction openFunction_;
  CloseFunction closeFunction_;
  HandleNumbers& numbers_;
  std::vector<Handle*> all_;
  std::set<Handle*> open_;
};

}  // namespace latchkey::fuzz
