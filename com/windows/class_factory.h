// The class factory.
#pragma once

#include <atomic>

#include "com/windows/classes.h"
#include "com/windows/module.h"

namespace latchkey::com {

// Makes objects of the class in `description`. Objects cannot be aggregated.
class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const ClassDescription& description) noexcept : description_(description) {}
  ClassFactory(const ClassFactory&) = delete;
  ClassFactory& operator=(const ClassFactory&) = delete;

  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override;
  STDMETHODIMP_(ULONG) Release() noexcept override;
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) noexcept override;
  // Returns E_UNEXPECTED for an unlock while no lock is held, which changes nothing.
  STDMETHODIMP LockServer(BOOL lock) noexcept override;

 private:
  ~ClassFactory() = default;

  const ClassDescription& description_;
  std::atomic<ULONG> references_{1};
  ModuleUse moduleUse_;
};

}  // namespace latchkey::com
