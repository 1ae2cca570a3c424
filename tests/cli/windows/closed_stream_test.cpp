// A standard stream whose handle the process does not have never comes to mean a file of its own.
#include <gtest/gtest.h>

#include "platform/command/file_error.h"
#include "platform/command/input_file.h"
#include "platform/command/standard_streams.h"
#include "platform/command/windows/handles.h"

namespace latchkey::test {
namespace {

using platform::UniqueFile;

UniqueFile OpenNothing() {
  return platform::Owned(
      CreateFileW(L"NUL", GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

class StandardInput {
 public:
  StandardInput() : before_(GetStdHandle(STD_INPUT_HANDLE)) {}
  StandardInput(const StandardInput&) = delete;
  StandardInput& operator=(const StandardInput&) = delete;
  ~StandardInput() { SetStdHandle(STD_INPUT_HANDLE, before_); }

 private:
  HANDLE before_;
};

TEST(ClosedStreamTest, TheNextFileWithTheNumberOfAClosedStreamIsNotTheStream) {
  const StandardInput restored;
  UniqueFile closed = OpenNothing();
  const std::intptr_t number = closed.Get();
  SetStdHandle(STD_INPUT_HANDLE, platform::HandleOf(closed));
  closed.Reset();
  platform::OccupyClosedStreams();
  const UniqueFile next = OpenNothing();
  ASSERT_EQ(next.Get(), number);  // the system gives the number again
  EXPECT_THROW(platform::InputFile("-"), platform::FileError);
}

TEST(ClosedStreamTest, AnOpenStreamStays) {
  const StandardInput restored;
  const UniqueFile open = OpenNothing();
  SetStdHandle(STD_INPUT_HANDLE, platform::HandleOf(open));
  platform::OccupyClosedStreams();
  EXPECT_NO_THROW(platform::InputFile("-"));
}

}  // namespace
}  // namespace latchkey::test
