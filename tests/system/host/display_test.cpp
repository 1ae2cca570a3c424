// Servers named in the environment: the library must not contact them.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <link.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tests/system/host/operations.h"
#include "tests/system/host/system_calls.h"

namespace latchkey::test {
namespace {

// A display, named in DISPLAY, that accepts a client and never answers.
class SilentDisplay {
 public:
  SilentDisplay() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    if (::bind(socket_, general, size) != 0 || ::listen(socket_, 8) != 0 ||
        ::getsockname(socket_, general, &size) != 0) {
      throw std::runtime_error("no socket");
    }
    constexpr int kFirstDisplayPort = 6000;
    const std::string number = std::to_string(ntohs(address.sin_port) - kFirstDisplayPort);
    ::setenv("DISPLAY", ("127.0.0.1:" + number).c_str(), 1);
  }
  SilentDisplay(const SilentDisplay&) = delete;
  SilentDisplay& operator=(const SilentDisplay&) = delete;
  ~SilentDisplay() { ::close(socket_); }

  // Whether a client has connected.
  [[nodiscard]] bool WasAsked() const {
    const int client = ::accept4(socket_, nullptr, nullptr, SOCK_NONBLOCK);
    return client != -1 || errno != EAGAIN;
  }

 private:
  int socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
};

void RunEachThatAsksTheSystem() {
  for (const Operation& operation : OperationsThatAskTheSystem()) operation.run();
}

// The alarm would end a process that waited for the display.
TEST(DisplayDeathTest, ASilentDisplayIsNotAsked) {
  const SilentDisplay display;
  EXPECT_EXIT(
      {
        ::alarm(60);
        RunEachThatAsksTheSystem();
        std::_Exit(EXIT_SUCCESS);
      },
      ::testing::ExitedWithCode(EXIT_SUCCESS), "");
  EXPECT_FALSE(display.WasAsked());
}

TEST(DisplayDeathTest, NoSocketIsOpenedToMakeRandomData) {
  ::setenv("DISPLAY", ":0", 1);
  EXPECT_EXIT(
      {
        ForbidSystemCall(SYS_socket);
        RunEachThatAsksTheSystem();
        std::_Exit(EXIT_SUCCESS);
      },
      ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST(DisplayDeathTest, ASocketWouldBeNoticed) {
  EXPECT_EXIT(
      {
        ForbidSystemCall(SYS_socket);
        ::socket(AF_INET, SOCK_STREAM, 0);
        std::_Exit(EXIT_SUCCESS);
      },
      ::testing::KilledBySignal(SIGSYS), "");
}

TEST(DisplayTest, NoLibraryForDisplaysIsLoaded) {
  const auto isForDisplays = [](dl_phdr_info* info, std::size_t, void*) {
    const std::string_view name = info->dlpi_name;
    const bool found = name.find("libxcb") != name.npos || name.find("libX") != name.npos;
    return found ? 1 : 0;
  };
  EXPECT_EQ(::dl_iterate_phdr(isForDisplays, nullptr), 0);
}

}  // namespace
}  // namespace latchkey::test
