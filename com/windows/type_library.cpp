#include "com/windows/type_library.h"

#include <atomic>

#include "com/windows/module.h"

namespace latchkey::com {
namespace {

// Type libraries may be read by any thread.
std::atomic<ITypeLib*> ownLibrary{nullptr};

}  // namespace

HRESULT OwnTypeLibrary(ITypeLib** library) {
  *library = ownLibrary.load();
  if (*library != nullptr) return S_OK;
  UniqueInterface<ITypeLib> fresh;
  const HRESULT loaded = LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, fresh.Put());
  if (FAILED(loaded)) return loaded;
  // Two threads may load at once; the second one's library is released unused.
  if (ownLibrary.compare_exchange_strong(*library, fresh.Get())) *library = fresh.Release();
  return S_OK;
}

HRESULT TypeInfoOf(REFGUID id, ITypeInfo** typeInfo) {
  ITypeLib* library = nullptr;
  const HRESULT loaded = OwnTypeLibrary(&library);
  return FAILED(loaded) ? loaded : library->GetTypeInfoOfGuid(id, typeInfo);
}

HRESULT SlotInfoOf(REFIID interfaceId, ITypeInfo** typeInfo) {
  constexpr auto kOtherHalf = static_cast<UINT>(-1);  // of a dual interface
  UniqueInterface<ITypeInfo> late;
  const HRESULT found = TypeInfoOf(interfaceId, late.Put());
  if (FAILED(found)) return found;
  HREFTYPE reference = 0;
  const HRESULT referred = late.Get()->GetRefTypeOfImplType(kOtherHalf, &reference);
  return FAILED(referred) ? referred : late.Get()->GetRefTypeInfo(reference, typeInfo);
}

UniqueInterface<ITypeLib> TakeTypeLibrary() noexcept {
  return UniqueInterface<ITypeLib>(ownLibrary.exchange(nullptr));
}

}  // namespace latchkey::com
