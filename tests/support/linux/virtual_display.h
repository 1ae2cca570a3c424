// An X11 display of the test's own, and windows on it.
#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <string>

namespace latchkey::test {

// Runs a virtual X server and names it in the variable DISPLAY. Ends it, and restores the variable,
// when it goes.
class VirtualDisplay {
 public:
  // Throws std::runtime_error when the server does not start.
  VirtualDisplay();
  VirtualDisplay(const VirtualDisplay&) = delete;
  VirtualDisplay& operator=(const VirtualDisplay&) = delete;
  ~VirtualDisplay();

  // From here on the server answers nothing and notices nothing, until it is stopped.
  void Pause() noexcept;

  // Ends the server, which closes all connections to it.
  void Stop() noexcept;

 private:
  pid_t server_ = -1;
  std::string displayBefore_;
};

// A client with windows on the display that DISPLAY names. They vanish with it.
class WindowClient {
 public:
  WindowClient();
  WindowClient(const WindowClient&) = delete;
  WindowClient& operator=(const WindowClient&) = delete;
  ~WindowClient();

  // A window inside `parent`, or a top-level one. It exists when the call returns, as everything
  // else here is done when the call returns.
  [[nodiscard]] xcb_window_t Create(xcb_window_t parent = XCB_WINDOW_NONE);
  void SetProperty(xcb_window_t window, const std::string& name, const std::string& value);
  void Destroy(xcb_window_t window);

 private:
  void WaitUntilDone();
  [[nodiscard]] xcb_atom_t AtomOf(const std::string& name);

  xcb_connection_t* connection_;
};

}  // namespace latchkey::test
