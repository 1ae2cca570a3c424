// A standard stream whose handle the process does not have never denotes a file of the command.
#include <gtest/gtest.h>

#include "cli/platform/file_error.h"
#include "cli/platform/input_file.h"
#include "cli/platform/standard_streams.h"
#include "cli/platform/windows/handles.h"

namespace latchkey::test {
namespace {

using cli::UniqueFile;

UniqueFile OpenNothing() {
  return cli::Owned(
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
  SetStdHandle(STD_INPUT_HANDLE, cli::HandleOf(closed));
  closed.Reset();
  cli::OccupyClosedStreams();
  const UniqueFile next = OpenNothing();
  ASSERT_EQ(next.Get(), number);  // the system gives the number again
  EXPECT_THROW(cli::InputFile("-"), cli::FileError);
}

TEST(ClosedStreamTest, AnOpenStreamStays) {
  const StandardInput restored;
  const UniqueFile open = OpenNothing();
  SetStdHandle(STD_INPUT_HANDLE, cli::HandleOf(open));
  cli::OccupyClosedStreams();
  EXPECT_NO_THROW(cli::InputFile("-"));
}

}  // namespace
}  // namespace latchkey::test
