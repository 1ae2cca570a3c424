// Outputs that are not files: a pipe requires `replace`, the null device does not.
#include <gtest/gtest.h>

#include <array>
#include <system_error>

#include "cli/platform/file_error.h"
#include "cli/platform/output_file.h"
#include "cli/platform/windows/handles.h"

namespace latchkey::test {
namespace {

using cli::OutputFile;
using cli::Readers;

constexpr std::array<std::uint8_t, 3> kData{'a', 'b', 'c'};

TEST(OutputDeviceTest, APipeIsRefusedWithoutReplace) {
  constexpr const char* kName = R"(\\.\pipe\latchkey-output-device-test)";
  const cli::UniqueFile pipe =
      cli::Owned(CreateNamedPipeA(kName, PIPE_ACCESS_INBOUND, PIPE_TYPE_BYTE, 1, 0, 0, 0, nullptr));
  ASSERT_TRUE(pipe);
  try {
    OutputFile(kName, false, Readers::Default);
    ADD_FAILURE() << "the pipe was taken";
  } catch (const cli::FileError& error) {
    EXPECT_EQ(error.code().value(), ERROR_FILE_EXISTS);
  }
}

TEST(OutputDeviceTest, TheNullDeviceNeedsNoReplace) {
  for (const char* const name : {"NUL", "nul", R"(\\.\NUL)"}) {
    OutputFile output(name, false, Readers::Default);
    EXPECT_NO_THROW(output.Write(kData)) << name;
    EXPECT_NO_THROW(output.Commit()) << name;
  }
}

}  // namespace
}  // namespace latchkey::test
