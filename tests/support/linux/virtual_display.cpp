#include "tests/support/linux/virtual_display.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace latchkey::test {
namespace {

struct Free {
  void operator()(void* memory) const noexcept { std::free(memory); }
};
template <class Reply>
using OwnedReply = std::unique_ptr<Reply, Free>;

// The server writes the number of the display that it found free.
std::string ReadLine(int file) {
  std::string line;
  for (char next = 0; ::read(file, &next, 1) == 1 && next != '\n';) line.push_back(next);
  return line;
}

pid_t SpawnServer(int displayNumberTo) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, displayNumberTo, 3);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", 1, 0);
  // With -terminate it ends with its last client, also when the test program dies of a fault.
  std::array<std::string, 9> arguments{"Xvfb",    "-displayfd", "3",       "-nolisten", "tcp",
                                       "-screen", "0",          "64x64x8", "-terminate"};
  std::array<char*, arguments.size() + 1> pointers{};
  for (std::size_t i = 0; i < arguments.size(); ++i) pointers[i] = arguments[i].data();
  pid_t server = -1;
  const int error = posix_spawnp(&server, "Xvfb", &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? server : -1;
}

}  // namespace

VirtualDisplay::VirtualDisplay() {
  const char* const before = std::getenv("DISPLAY");
  displayBefore_ = before != nullptr ? before : "";
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
  server_ = SpawnServer(ends[1]);
  ::close(ends[1]);
  const std::string number = ReadLine(ends[0]);
  ::close(ends[0]);
  if (server_ == -1 || number.empty()) {
    Stop();
    throw std::runtime_error("Xvfb does not start");
  }
  ::setenv("DISPLAY", (":" + number).c_str(), 1);
}

VirtualDisplay::~VirtualDisplay() {
  Stop();
  if (displayBefore_.empty()) {
    ::unsetenv("DISPLAY");
  } else {
    ::setenv("DISPLAY", displayBefore_.c_str(), 1);
  }
}

void VirtualDisplay::Pause() noexcept { ::kill(server_, SIGSTOP); }

void VirtualDisplay::Stop() noexcept {
  if (server_ == -1) return;
  ::kill(server_, SIGTERM);
  ::kill(server_, SIGCONT);
  ::waitpid(server_, nullptr, 0);
  server_ = -1;
}

WindowClient::WindowClient() : connection_(xcb_connect(nullptr, nullptr)) {
  if (xcb_connection_has_error(connection_) != 0) throw std::runtime_error("no X11 connection");
}

WindowClient::~WindowClient() { xcb_disconnect(connection_); }

xcb_window_t WindowClient::Create(xcb_window_t parent) {
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  const xcb_window_t window = xcb_generate_id(connection_);
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window,
                    parent != XCB_WINDOW_NONE ? parent : root, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  WaitUntilDone();
  return window;
}

void WindowClient::SetProperty(xcb_window_t window, const std::string& name,
                               const std::string& value) {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, AtomOf(name), XCB_ATOM_STRING, 8,
                      static_cast<std::uint32_t>(value.size()), value.data());
  WaitUntilDone();
}

void WindowClient::Destroy(xcb_window_t window) {
  xcb_destroy_window(connection_, window);
  WaitUntilDone();
}

// The server answers in order: with a reply to this, all before it has been done.
void WindowClient::WaitUntilDone() {
  const OwnedReply<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

xcb_atom_t WindowClient::AtomOf(const std::string& name) {
  const auto cookie =
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
  const OwnedReply<xcb_intern_atom_reply_t> reply(
      xcb_intern_atom_reply(connection_, cookie, nullptr));
  if (!reply) throw std::runtime_error("no atom");
  return reply->atom;
}

}  // namespace latchkey::test
