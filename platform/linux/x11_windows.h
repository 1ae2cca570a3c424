// The windows of the X11 display that DISPLAY names, read through XCB.
//
// Every function works without a display, too: there are no windows then. A window that vanishes,
// or a display that closes, in the middle of a walk has no more children, name or class.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace latchkey::platform {

using X11Window = std::uint32_t;
using X11Visitor = std::function<void(X11Window)>;

// Calls the visitor for each child of each screen's root, or for each descendant of `parent`,
// parents before their children. An exception from the visitor ends the walk.
void VisitTopLevelWindows(const X11Visitor& visit);
void VisitDescendants(X11Window parent, const X11Visitor& visit);

// The bytes of a window's title and class as its program set them; empty for none.
[[nodiscard]] std::string X11Title(X11Window window);
[[nodiscard]] std::string X11Class(X11Window window);

}  // namespace latchkey::platform
