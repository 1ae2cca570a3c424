// A connection to the X11 display, shared by all that one walk over its windows asks for.
#pragma once

#include <xcb/xcb.h>

#include <string>
#include <string_view>
#include <vector>

namespace latchkey::platform {

// Makes the calling thread's connection available in a scope. The outermost scope opens and closes
// it; scopes inside, such as those of calls made by a visitor, share it.
class X11Connection {
 public:
  X11Connection();
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;
  ~X11Connection();

  // The root window of each screen; none without a display.
  [[nodiscard]] std::vector<xcb_window_t> Roots() const;

  // The children of a window, none when it does not exist any more.
  [[nodiscard]] std::vector<xcb_window_t> ChildrenOf(xcb_window_t window) const;

  // The first bytes of a property of a window, of whatever type; empty for none.
  [[nodiscard]] std::string PropertyOf(xcb_window_t window, xcb_atom_t property) const;

  // The number of a named property, XCB_ATOM_NONE when no program has used the name.
  [[nodiscard]] xcb_atom_t AtomOf(std::string_view name) const;

 private:
  xcb_connection_t* connection_;
  bool owned_;
};

}  // namespace latchkey::platform
