// The component as the classes of the library.
#include <utility>
#include <vector>

#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "tests/system/trust/component.h"

namespace latchkey::test {
namespace {

class LibraryComponent final : public Component {
 public:
  void CreateMain() override { mains_.push_back(std::make_unique<clsMain>()); }
  void DropMain() override { mains_.erase(mains_.begin()); }
  [[nodiscard]] bool HasMain() const override { return !mains_.empty(); }

  SeenRecord Record() override {
    const clsMain& main = *mains_.back();
    return {main.ErrorLocationID(),    main.ErrorType(),        main.RTErrorNumber(),
            main.RTErrorDescription(), main.AppErrorNumber(),   main.AppErrorDescription(),
            main.ErrorExists(),        main.ErrorMachineState()};
  }

  void CreateService() override { api_ = std::make_unique<clsCryptoAPI>(); }

  void InputData(const ByteArray& data) override { api_->InputData(data); }
  ByteArray OutputData() override { return api_->OutputData(); }
  void EnhancedProvider(bool flag) override { api_->EnhancedProvider(flag); }
  void Password(ByteArray& password) override { api_->Password(password); }
  ByteArray Password() override { return std::as_const(*api_).Password(); }
  void UseDefaultPWD(bool flag) override { api_->UseDefaultPWD(flag); }
  Text CreateHash(const Text& text, std::int16_t hash, bool hex, bool appendPassword,
                  bool caseSensitive) override {
    return api_->CreateHash(text, hash, hex, appendPassword, caseSensitive);
  }
  Text CreateRandom(std::int32_t length, bool exact, bool hex, bool upper) override {
    return api_->CreateRandom(length, exact, hex, upper);
  }
  Text CreateSaltValue(std::int32_t length, bool lettersOnly) override {
    return api_->CreateSaltValue(length, lettersOnly);
  }
  bool Decrypt(std::int16_t hash, std::int16_t cipher) override {
    return api_->Decrypt(hash, cipher);
  }
  bool Encrypt(std::int16_t hash, std::int16_t cipher) override {
    return api_->Encrypt(hash, cipher);
  }
  Text ByteArrayToString(const ByteArray& array) override { return api_->ByteArrayToString(array); }
  ByteArray StringToByteArray(const Variant& value) override {
    return api_->StringToByteArray(value);
  }
  Text ConvertStringFromHex(const Text& hex) override { return api_->ConvertStringFromHex(hex); }
  Text ConvertStringToHex(const Text& text, bool upper) override {
    return api_->ConvertStringToHex(text, upper);
  }

 private:
  std::vector<std::unique_ptr<clsMain>> mains_;
  std::unique_ptr<clsCryptoAPI> api_;
};

}  // namespace

std::unique_ptr<Component> MakeComponent() { return std::make_unique<LibraryComponent>(); }

}  // namespace latchkey::test
