// The component through COM: the registered server, bound early.
#include <algorithm>
#include <stdexcept>
#include <vector>

#include "base/faults.h"
#include "tests/com/com_client.h"
#include "tests/system/trust/component.h"

namespace latchkey::test {
namespace {

constexpr ULONG kAutomationErrors = 0x800A0000;

UniqueBstr BstrOf(TextView text) {
  return Bstr({reinterpret_cast<const wchar_t*>(text.data()), text.size()});
}

Text TakeText(BSTR text) {
  const std::wstring taken = Take(text);
  return {taken.begin(), taken.end()};
}

VARIANT_BOOL Flag(bool flag) { return flag ? VARIANT_TRUE : VARIANT_FALSE; }

// An array of several dimensions has all its elements in the first.
UniqueSafeArray SafeArrayOf(const ByteArray& array) {
  if (array.Dimensions() == 0) return {};
  const auto elements = array.Elements();
  std::vector<SAFEARRAYBOUND> bounds(array.Dimensions(), SAFEARRAYBOUND{1, 0});
  bounds[0] = {static_cast<ULONG>(elements.size()), array.LowerBound()};
  UniqueSafeArray copy(SafeArrayCreate(VT_UI1, array.Dimensions(), bounds.data()));
  if (!copy) throw std::runtime_error("no memory for an array");
  std::copy(elements.begin(), elements.end(), static_cast<std::uint8_t*>(copy.Get()->pvData));
  return copy;
}

ByteArray TakeArray(SAFEARRAY* array) {
  const UniqueSafeArray owner(array);
  if (array == nullptr) return {};
  const SAFEARRAYBOUND& bound = array->rgsabound[array->cDims - 1];
  return ByteArray::WithShape(array->cDims, bound.lLbound,
                              bound.lLbound + static_cast<LONG>(bound.cElements) - 1,
                              {static_cast<const std::uint8_t*>(array->pvData), bound.cElements});
}

// A value as an early-bound client passes it.
struct VariantMaker {
  VARIANT& value;
  void operator()(Empty) const { V_VT(&value) = VT_EMPTY; }
  void operator()(Null) const { V_VT(&value) = VT_NULL; }
  void operator()(TextView text) const { value = Value(BstrOf(text).Release()); }
  void operator()(bool flag) const { value = Value(flag); }
  void operator()(std::int32_t number) const { value = Value(number); }
  void operator()(float number) const {
    value = OfType(VT_R4);
    V_R4(&value) = number;
  }
  void operator()(double number) const { value = Value(number); }
  void operator()(Date date) const {
    value = OfType(VT_DATE);
    V_DATE(&value) = date.days;
  }
};

// The error information of a fault.
Text DescriptionForClients(FaultNumber fault) {
  Text description(DescriptionOf(fault));
  if (fault == FaultNumber::ObjectNotSet) description += u": no clsMain exists on this thread";
  return description;
}

// The fault that a failed call reports. The error information must describe that fault.
void Check(HRESULT result) {
  if (result == S_OK) return;
  const ULONG number = static_cast<ULONG>(result) - kAutomationErrors;
  const auto known =
      std::find_if(kFaultNumbers.begin(), kFaultNumbers.end(),
                   [&](FaultNumber fault) { return static_cast<ULONG>(fault) == number; });
  if (known == kFaultNumbers.end()) throw std::runtime_error("a result that is no fault");
  const std::wstring description = TakeErrorInfo().description;
  const Text expected = DescriptionForClients(*known);
  if (!std::equal(description.begin(), description.end(), expected.begin(), expected.end())) {
    throw std::runtime_error("error information that does not describe the fault");
  }
  throw Fault(*known);
}

// Keeps the provider's library loaded. Loading and unloading it with every context would take most
// of the time.
void KeepProviderLoaded() {
  static const HMODULE library = LoadLibraryW(L"rsaenh.dll");
  static_cast<void>(library);
}

class ComComponent final : public Component {
 public:
  ComComponent() { KeepProviderLoaded(); }

  void CreateMain() override { mains_.push_back(test::CreateMain()); }
  void DropMain() override { mains_.erase(mains_.begin()); }
  [[nodiscard]] bool HasMain() const override { return !mains_.empty(); }
  SeenRecord Record() override;

  void CreateService() override {
    api_ = CreateCryptoApi();
    if (!api_) throw std::runtime_error("no service object");
  }

  void InputData(const ByteArray& data) override {
    const UniqueSafeArray owner = SafeArrayOf(data);
    SAFEARRAY* array = owner.Get();
    Check(api_.Get()->put_InputData(&array));
  }
  ByteArray OutputData() override {
    SAFEARRAY* array = nullptr;
    Check(api_.Get()->get_OutputData(&array));
    return TakeArray(array);
  }
  void EnhancedProvider(bool flag) override {
    VARIANT_BOOL value = Flag(flag);
    Check(api_.Get()->put_EnhancedProvider(&value));
  }
  void Password(ByteArray& password) override {
    SAFEARRAY* array = SafeArrayOf(password).Release();
    const HRESULT result = api_.Get()->put_Password(&array);
    password = TakeArray(array);
    Check(result);
  }
  ByteArray Password() override {
    SAFEARRAY* array = nullptr;
    Check(api_.Get()->get_Password(&array));
    return TakeArray(array);
  }
  void UseDefaultPWD(bool flag) override {
    VARIANT_BOOL value = Flag(flag);
    Check(api_.Get()->put_UseDefaultPWD(&value));
  }
  Text CreateHash(const Text& text, std::int16_t hash, bool hex, bool appendPassword,
                  bool caseSensitive) override {
    BSTR result = nullptr;
    Check(api_.Get()->CreateHash(BstrOf(text).Get(), hash, Flag(hex), Flag(appendPassword),
                                 Flag(caseSensitive), &result));
    return TakeText(result);
  }
  Text CreateRandom(std::int32_t length, bool exact, bool hex, bool upper) override {
    BSTR result = nullptr;
    Check(api_.Get()->CreateRandom(length, Flag(exact), Flag(hex), Flag(upper), &result));
    return TakeText(result);
  }
  Text CreateSaltValue(std::int32_t length, bool lettersOnly) override {
    ScopedVariant result;
    Check(api_.Get()->CreateSaltValue(length, Flag(lettersOnly), &result.Get()));
    return TakeText(std::exchange(V_BSTR(&result.Get()), nullptr));
  }
  bool Decrypt(std::int16_t hash, std::int16_t cipher) override {
    VARIANT_BOOL result = VARIANT_FALSE;
    Check(api_.Get()->Decrypt(hash, cipher, &result));
    return result != VARIANT_FALSE;
  }
  bool Encrypt(std::int16_t hash, std::int16_t cipher) override {
    VARIANT_BOOL result = VARIANT_FALSE;
    Check(api_.Get()->Encrypt(hash, cipher, &result));
    return result != VARIANT_FALSE;
  }
  Text ByteArrayToString(const ByteArray& array) override {
    const UniqueSafeArray owner = SafeArrayOf(array);
    SAFEARRAY* raw = owner.Get();
    BSTR result = nullptr;
    Check(api_.Get()->ByteArrayToString(&raw, &result));
    return TakeText(result);
  }
  ByteArray StringToByteArray(const Variant& value) override {
    ScopedVariant variant;
    std::visit(VariantMaker{variant.Get()}, value);
    SAFEARRAY* result = nullptr;
    Check(api_.Get()->StringToByteArray(&variant.Get(), &result));
    return TakeArray(result);
  }
  Text ConvertStringFromHex(const Text& hex) override {
    BSTR result = nullptr;
    Check(api_.Get()->ConvertStringFromHex(BstrOf(hex).Get(), &result));
    return TakeText(result);
  }
  Text ConvertStringToHex(const Text& text, bool upper) override {
    VARIANT_BOOL flag = Flag(upper);
    BSTR result = nullptr;
    Check(api_.Get()->ConvertStringToHex(BstrOf(text).Get(), &flag, &result));
    return TakeText(result);
  }

 private:
  Apartment apartment_;
  std::vector<UniqueInterface<_clsMain>> mains_;
  UniqueInterface<_clsCryptoAPI> api_;
};

SeenRecord ComComponent::Record() {
  _clsMain* const main = mains_.back().Get();
  SeenRecord seen;
  LONG rtNumber = 0;
  LONG appNumber = 0;
  BSTR rtDescription = nullptr;
  BSTR appDescription = nullptr;
  VARIANT_BOOL exists = VARIANT_FALSE;
  Check(main->get_ErrorLocationID(&seen.location));
  Check(main->get_ErrorType(&seen.type));
  Check(main->get_RTErrorNumber(&rtNumber));
  Check(main->get_RTErrorDescription(&rtDescription));
  Check(main->get_AppErrorNumber(&appNumber));
  Check(main->get_AppErrorDescription(&appDescription));
  Check(main->get_ErrorExists(&exists));
  Check(main->get_ErrorMachineState(&seen.machineState));
  seen.rtNumber = rtNumber;
  seen.rtDescription = TakeText(rtDescription);
  seen.appNumber = appNumber;
  seen.appDescription = TakeText(appDescription);
  seen.exists = exists != VARIANT_FALSE;
  return seen;
}

}  // namespace

std::unique_ptr<Component> MakeComponent() { return std::make_unique<ComComponent>(); }

}  // namespace latchkey::test
