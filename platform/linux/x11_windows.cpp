#include "platform/linux/x11_windows.h"

#include <string_view>
#include <vector>

#include "platform/linux/x11_connection.h"

namespace latchkey::platform {
namespace {

void AppendReversed(std::vector<xcb_window_t>& pending, const std::vector<xcb_window_t>& windows) {
  pending.insert(pending.end(), windows.rbegin(), windows.rend());
}

}  // namespace

void VisitTopLevelWindows(const X11Visitor& visit) {
  const X11Connection connection;
  for (const xcb_window_t root : connection.Roots()) {
    for (const xcb_window_t window : connection.ChildrenOf(root)) visit(window);
  }
}

void VisitDescendants(X11Window parent, const X11Visitor& visit) {
  const X11Connection connection;
  std::vector<xcb_window_t> pending;
  AppendReversed(pending, connection.ChildrenOf(parent));
  while (!pending.empty()) {
    const xcb_window_t window = pending.back();
    pending.pop_back();
    visit(window);
    AppendReversed(pending, connection.ChildrenOf(window));
  }
}

std::string X11Title(X11Window window) {
  const X11Connection connection;
  std::string title = connection.PropertyOf(window, XCB_ATOM_WM_NAME);
  if (!title.empty()) return title;
  const xcb_atom_t newerName = connection.AtomOf("_NET_WM_NAME");
  if (newerName != XCB_ATOM_NONE) title = connection.PropertyOf(window, newerName);
  return title;
}

// The property holds two NUL-terminated texts: the program instance's name and the class.
std::string X11Class(X11Window window) {
  const X11Connection connection;
  const std::string names = connection.PropertyOf(window, XCB_ATOM_WM_CLASS);
  const std::size_t end = names.find('\0');
  return end != std::string::npos ? std::string(names.c_str() + end + 1) : std::string();
}

}  // namespace latchkey::platform
