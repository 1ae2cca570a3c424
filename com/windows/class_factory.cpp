#include "com/windows/class_factory.h"

#include "com/windows/automation_owners.h"
#include "com/windows/method_call.h"

namespace latchkey::com {

STDMETHODIMP ClassFactory::QueryInterface(REFIID interfaceId, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (!IsEqualIID(interfaceId, IID_IUnknown) && !IsEqualIID(interfaceId, IID_IClassFactory)) {
    return E_NOINTERFACE;
  }
  *object = static_cast<IClassFactory*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) ClassFactory::AddRef() noexcept { return ++references_; }

STDMETHODIMP_(ULONG) ClassFactory::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

// Checks the interface before it makes the object: a clsMain that is destroyed at once would
// destroy the error record of its thread.
STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID interfaceId,
                                          void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  if (!HasInterface(description_, interfaceId)) return E_NOINTERFACE;
  UniqueInterface<IUnknown> created;
  const HRESULT made = RunMethod(description_, [&] { created = description_.create(); });
  return FAILED(made) ? made : created.Get()->QueryInterface(interfaceId, object);
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) noexcept {
  if (lock == FALSE) return UnlockModule() ? S_OK : E_UNEXPECTED;
  LockModule();
  return S_OK;
}

}  // namespace latchkey::com
