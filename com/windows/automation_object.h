// Base of all objects that clients create: identity, reference count, late binding, class and error
// information.
#pragma once

#include <atomic>
#include <utility>

#include "com/windows/classes.h"
#include "com/windows/dispatch.h"
#include "com/windows/method_call.h"
#include "com/windows/module.h"

namespace latchkey::com {

// `Interface` is the dual interface of the class in `description`. The object starts with one
// reference and destroys itself with its last one. Derived classes add the interface's own methods,
// each as one call of Run.
template <class Interface>
class AutomationObject : public Interface, public ISupportErrorInfo, public IProvideClassInfo {
 public:
  AutomationObject(const AutomationObject&) = delete;
  AutomationObject& operator=(const AutomationObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (!HasInterface(description_, interfaceId)) return E_NOINTERFACE;
    if (IsEqualIID(interfaceId, IID_ISupportErrorInfo)) {
      *object = static_cast<ISupportErrorInfo*>(this);
    } else if (IsEqualIID(interfaceId, IID_IProvideClassInfo)) {
      *object = static_cast<IProvideClassInfo*>(this);
    } else {
      *object = static_cast<Interface*>(this);
    }
    AddRef();
    return S_OK;
  }

  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }

  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }

  STDMETHODIMP GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** typeInfo) noexcept override {
    return DescribeInterface(description_, index, typeInfo);
  }

  STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID /*locale*/,
                             DISPID* ids) noexcept override {
    return FindDispatchIds(description_, reserved, names, count, ids);
  }

  STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                      DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                      UINT* badArgument) noexcept override {
    const DispatchCall call = {description_, static_cast<Interface*>(this), member, locale, flags};
    if (!IsEqualIID(reserved, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    return InvokeMember(call, arguments, result, exception, badArgument);
  }

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID interfaceId) noexcept override {
    return IsEqualIID(interfaceId, description_.interfaceId) ? S_OK : S_FALSE;
  }

  STDMETHODIMP GetClassInfo(ITypeInfo** typeInfo) noexcept override {
    return DescribeClass(description_, typeInfo);
  }

 protected:
  explicit AutomationObject(const ClassDescription& description) noexcept
      : description_(description) {}
  virtual ~AutomationObject() = default;

  // Runs the body of one of the interface's methods; see RunMethod.
  template <class Body>
  [[nodiscard]] HRESULT Run(Body&& body) const noexcept {
    return RunMethod(description_, std::forward<Body>(body));
  }
  template <class Result, class Body>
  [[nodiscard]] HRESULT Run(Result* result, Body&& body) const noexcept {
    return RunMethod(description_, result, std::forward<Body>(body));
  }

  // The same for a method that also reads through a pointer: a null one is refused, after the
  // result is cleared.
  template <class Result, class Argument, class Body>
  [[nodiscard]] HRESULT Run(Result* result, const Argument* argument, Body&& body) const noexcept {
    if (argument != nullptr) return Run(result, std::forward<Body>(body));
    if (result != nullptr) *result = Result{};
    return RefuseNullPointer();
  }

 private:
  const ClassDescription& description_;
  std::atomic<ULONG> references_{1};
  ModuleUse moduleUse_;
};

}  // namespace latchkey::com
