#include "platform/linux/x11_connection.h"

#include <pthread.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <type_traits>

namespace latchkey::platform {
namespace {

thread_local xcb_connection_t* threadConnection = nullptr;

// A display that closes while XCB writes to its socket raises SIGPIPE; the host program must not
// die of that. Keeps the signal from the thread, and swallows one that XCB has caused.
class WithoutSigpipe {
 public:
  WithoutSigpipe() {
    sigemptyset(&sigpipe_);
    sigaddset(&sigpipe_, SIGPIPE);
    wasPending_ = IsPending();
    pthread_sigmask(SIG_BLOCK, &sigpipe_, &before_);
  }
  WithoutSigpipe(const WithoutSigpipe&) = delete;
  WithoutSigpipe& operator=(const WithoutSigpipe&) = delete;
  ~WithoutSigpipe() {
    const std::timespec now{};
    if (!wasPending_ && IsPending()) sigtimedwait(&sigpipe_, nullptr, &now);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }

 private:
  static bool IsPending() {
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, SIGPIPE) == 1;
  }

  sigset_t sigpipe_{};
  sigset_t before_{};
  bool wasPending_ = false;
};

struct Free {
  void operator()(void* memory) const noexcept { std::free(memory); }
};

// Sends a request and waits for its reply; null when there is none.
template <class Send, class Receive>
auto Ask(xcb_connection_t* connection, Send send, Receive receive) {
  const WithoutSigpipe guard;
  xcb_generic_error_t* error = nullptr;
  auto* const reply = receive(connection, send(connection), &error);
  const std::unique_ptr<xcb_generic_error_t, Free> ownedError(error);
  return std::unique_ptr<std::remove_pointer_t<decltype(reply)>, Free>(reply);
}

}  // namespace

X11Connection::X11Connection() : connection_(threadConnection), owned_(connection_ == nullptr) {
  if (!owned_) return;
  const WithoutSigpipe guard;
  connection_ = threadConnection = xcb_connect(nullptr, nullptr);
}

X11Connection::~X11Connection() {
  if (!owned_) return;
  const WithoutSigpipe guard;
  threadConnection = nullptr;
  xcb_disconnect(connection_);
}

std::vector<xcb_window_t> X11Connection::Roots() const {
  std::vector<xcb_window_t> roots;
  if (xcb_connection_has_error(connection_) != 0) return roots;
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
  for (; screens.rem > 0; xcb_screen_next(&screens)) roots.push_back(screens.data->root);
  return roots;
}

std::vector<xcb_window_t> X11Connection::ChildrenOf(xcb_window_t window) const {
  const auto reply = Ask(
      connection_, [=](auto* c) { return xcb_query_tree(c, window); }, xcb_query_tree_reply);
  if (!reply) return {};
  const xcb_window_t* const first = xcb_query_tree_children(reply.get());
  return {first, first + xcb_query_tree_children_length(reply.get())};
}

std::string X11Connection::PropertyOf(xcb_window_t window, xcb_atom_t property) const {
  constexpr std::uint32_t kLongestInWords = 256;
  const auto send = [=](auto* c) {
    return xcb_get_property(c, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kLongestInWords);
  };
  const auto reply = Ask(connection_, send, xcb_get_property_reply);
  if (!reply || reply->format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

xcb_atom_t X11Connection::AtomOf(std::string_view name) const {
  const auto send = [=](auto* c) {
    return xcb_intern_atom(c, 1, static_cast<std::uint16_t>(name.size()), name.data());
  };
  const auto reply = Ask(connection_, send, xcb_intern_atom_reply);
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

}  // namespace latchkey::platform
