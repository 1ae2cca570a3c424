// A ciphertext whose last byte is 20 hexadecimal: the component loses that byte in the conversion
// to text and refuses the rest; the command decrypts it.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "cli/command_line.h"
#include "cli/platform/input_file.h"
#include "cli/platform/output_file.h"
#include "crypto/algorithms.h"
#include "crypto/open_provider.h"
#include "crypto/password_cipher.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "provider/block_size.h"

namespace latchkey::test {
namespace {

using cli::InputFile;
using cli::OutputFile;
using cli::Readers;

constexpr std::int16_t kMd5 = 1;
constexpr std::int16_t kDes = 3;

// The ciphertext of the text under an empty password, MD5 and DES.
WipedBytes Encrypted(const std::string& text) {
  const UniqueContext context = OpenProvider(false);
  PasswordKey key;
  EXPECT_EQ(key.Derive(context, {FindHashAlgorithm(kMd5).id, FindCipherAlgorithm(kDes, false), {}}),
            CipherStep::Done);
  WipedBytes buffer(text.begin(), text.end());
  auto length = static_cast<std::uint32_t>(buffer.size());
  buffer.resize(buffer.size() + provider::kBlockSize);
  EXPECT_EQ(key.Transform(CipherDirection::Encrypt, buffer, length), CipherStep::Done);
  buffer.resize(length);
  return buffer;
}

// A text whose ciphertext ends in a space; one in 256 does.
std::string TextWithSpaceAtTheEnd() {
  std::string text;
  for (int number = 0; text.empty() || Encrypted(text).back() != ' '; ++number) {
    text = "message " + std::to_string(number);
  }
  return text;
}

class TrailingSpaceTest : public testing::Test {
 protected:
  TrailingSpaceTest() { std::filesystem::create_directory(folder); }
  ~TrailingSpaceTest() override { std::filesystem::remove_all(folder); }

  [[nodiscard]] std::string NameOf(const char* name) const { return folder + "/" + name; }

  const std::string folder =
      (std::filesystem::temp_directory_path() / "latchkey-trailing-space").generic_string();
};

TEST_F(TrailingSpaceTest, OnlyTheCommandDecryptsIt) {
  const std::string text = TextWithSpaceAtTheEnd();
  const WipedBytes ciphertext = Encrypted(text);
  {
    const clsMain main;
    clsCryptoAPI api;
    api.UseDefaultPWD(false);
    api.InputData(ByteArray::WithTrailingZero(ciphertext));
    EXPECT_FALSE(api.Decrypt(kMd5, kDes));
    EXPECT_EQ(main.ErrorLocationID(), 717);
    EXPECT_EQ(main.AppErrorNumber(), 120);
  }
  OutputFile file(NameOf("ciphertext"), false, Readers::Default);
  file.Write(ciphertext);
  file.Commit();

  cli::CommandLine commandLine;
  EXPECT_EQ(commandLine.Run({"decrypt", "--hash", "md5", "--cipher", "des", "--no-password", "-o",
                             NameOf("plain"), NameOf("ciphertext")}),
            cli::ExitStatus::Done);
  WipedBytes plain(100);
  plain.resize(InputFile(NameOf("plain")).Read(plain));
  EXPECT_EQ(std::string(plain.begin(), plain.end()), text);
}

}  // namespace
}  // namespace latchkey::test
