// Search for secrets after the conversions, which keep no data of their clients.
#include "tests/system/secrets/known_results.h"
#include "tests/system/secrets/searched_service.h"

namespace latchkey::test {
namespace {

using OtherSecretsTest = SearchedService;

// Only the password, which the object of the fixture has.
constexpr auto kPasswordAlone = [](bool) { return Copies{1}; };

TEST_F(OtherSecretsTest, AfterTheConversionsNothingOfTheTextOrItsDigitsIsLeft) {
  const Secret other = Secret::Random(16);
  const auto convert = [&](const clsCryptoAPI& object) {
    const WipedText text = plaintext.Characters();
    const TextView given(text.data(), text.size());
    Text digits = object.ConvertStringToHex(given);
    const WipeAtExit wipeDigits(digits);
    Text back = object.ConvertStringFromHex(digits);
    const WipeAtExit wipeBack(back);
    const ByteArray array = object.StringToByteArray(given);
    Text again = object.ByteArrayToString(array);
    const WipeAtExit wipeAgain(again);
    return back == given && again == given;
  };
  search.Add(kResult, DigitsOf(plaintext));
  SearchAfterEveryEnding(
      other,
      [&](const clsCryptoAPI& object) { return SucceedsInMemory([&] { return convert(object); }); },
      kPasswordAlone);
}

}  // namespace
}  // namespace latchkey::test
