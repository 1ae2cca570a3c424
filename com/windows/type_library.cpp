#include "com/windows/type_library.h"

#include <atomic>

#include "com/windows/automation_owners.h"
#include "com/windows/module.h"

namespace latchkey::com {
namespace {

// Type libraries may be read by any thread.
std::atomic<ITypeLib*> ownLibrary{nullptr};

}  // namespace

HRESULT OwnTypeLibrary(ITypeLib** library) {
  *library = ownLibrary.load();
  if (*library != nullptr) return S_OK;
  ITypeLib* fresh = nullptr;
  const HRESULT loaded = LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, &fresh);
  if (FAILED(loaded)) return loaded;
  // Two threads may load at once; the second one's library is released unused.
  const bool first = ownLibrary.compare_exchange_strong(*library, fresh);
  if (first) {
    *library = fresh;
  } else {
    fresh->Release();
  }
  return S_OK;
}

HRESULT TypeInfoOf(REFGUID id, ITypeInfo** typeInfo) {
  ITypeLib* library = nullptr;
  const HRESULT loaded = OwnTypeLibrary(&library);
  return FAILED(loaded) ? loaded : library->GetTypeInfoOfGuid(id, typeInfo);
}

HRESULT SlotInfoOf(REFIID interfaceId, ITypeInfo** typeInfo) {
  constexpr auto kOtherHalf = static_cast<UINT>(-1);  // of a dual interface
  ITypeInfo* late = nullptr;
  const HRESULT found = TypeInfoOf(interfaceId, &late);
  if (FAILED(found)) return found;
  const UniqueInterface<ITypeInfo> owner(late);
  HREFTYPE reference = 0;
  const HRESULT referred = late->GetRefTypeOfImplType(kOtherHalf, &reference);
  return FAILED(referred) ? referred : late->GetRefTypeInfo(reference, typeInfo);
}

ITypeLib* TakeTypeLibrary() noexcept { return ownLibrary.exchange(nullptr); }

}  // namespace latchkey::com
