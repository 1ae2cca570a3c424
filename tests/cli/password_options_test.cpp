// The built-in password of the command.
#include "cli/password_options.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "crypto/algorithms.h"
#include "crypto/open_provider.h"
#include "crypto/password_cipher.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "provider/block_size.h"

namespace latchkey::test {
namespace {

constexpr std::int16_t kMd5 = 1;
constexpr std::int16_t kDes = 3;
constexpr std::string_view kText = "attack at dawn";

WipedBytes TextBytes() { return {kText.begin(), kText.end()}; }

WipedBytes EncryptedUnder(const WipedBytes& password) {
  const UniqueContext context = OpenProvider(false);
  PasswordKey key;
  EXPECT_EQ(
      key.Derive(context, {FindHashAlgorithm(kMd5).id, FindCipherAlgorithm(kDes, false), password}),
      CipherStep::Done);
  WipedBytes buffer = TextBytes();
  auto length = static_cast<std::uint32_t>(buffer.size());
  buffer.resize(buffer.size() + provider::kBlockSize);
  EXPECT_EQ(key.Transform(CipherDirection::Encrypt, buffer, length), CipherStep::Done);
  buffer.resize(length);
  return buffer;
}

TEST(PasswordOptionsTest, TheBuiltInPasswordIsTheDefaultOneOfTheComponent) {
  cli::PasswordOptions options;
  options.builtIn = true;
  const WipedBytes password = cli::ReadPassword(options, cli::Prompt::Once);

  const clsMain main;
  clsCryptoAPI api;
  api.UseDefaultPWD(true);
  api.InputData(ByteArray::WithTrailingZero(TextBytes()));
  ASSERT_TRUE(api.Encrypt(kMd5, kDes));
  const ByteArray output = api.OutputData();
  EXPECT_TRUE(std::ranges::equal(output.TextElements(), EncryptedUnder(password)));
}

}  // namespace
}  // namespace latchkey::test
