#include "com/windows/classes.h"

#include <array>

#include "com/windows/crypto_api_object.h"
#include "com/windows/main_object.h"
#include "com/windows/timer_object.h"

namespace latchkey::com {
namespace {

template <class Object>
UniqueInterface<IUnknown> Create() {
  return UniqueInterface<IUnknown>(static_cast<IDispatch*>(new Object));
}

constexpr std::array kAllClasses = {&kMainClass, &kCryptoApiClass, &kTimerClass};

}  // namespace

constexpr ClassDescription kMainClass = {CLSID_clsMain, IID__clsMain, L"Latchkey.clsMain",
                                         L"Latchkey entry object", Create<MainObject>};
constexpr ClassDescription kCryptoApiClass = {
    CLSID_clsCryptoAPI, IID__clsCryptoAPI, L"Latchkey.clsCryptoAPI",
    L"Latchkey cryptographic service", Create<CryptoApiObject>};
constexpr ClassDescription kTimerClass = {CLSID_clsTimer, IID__clsTimer, L"Latchkey.clsTimer",
                                          L"Latchkey elapsed-time timer", Create<TimerObject>};

std::span<const ClassDescription* const, kClassCount> AllClasses() noexcept { return kAllClasses; }

const ClassDescription* FindClass(REFCLSID classId) noexcept {
  for (const ClassDescription* const description : kAllClasses) {
    if (IsEqualCLSID(description->classId, classId)) return description;
  }
  return nullptr;
}

bool HasInterface(const ClassDescription& description, REFIID interfaceId) noexcept {
  return IsEqualIID(interfaceId, IID_IUnknown) || IsEqualIID(interfaceId, IID_IDispatch) ||
         IsEqualIID(interfaceId, IID_ISupportErrorInfo) ||
         IsEqualIID(interfaceId, IID_IProvideClassInfo) ||
         IsEqualIID(interfaceId, description.interfaceId);
}

}  // namespace latchkey::com
