#include "com/windows/interface_members.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <string_view>
#include <utility>

#include "com/windows/slot_call.h"
#include "com/windows/type_library.h"

namespace latchkey::com {
namespace {

// In the order of AllClasses().
std::array<std::atomic<const InterfaceMembers*>, kClassCount> ownMembers;

std::atomic<const InterfaceMembers*>& MembersFor(const ClassDescription& description) {
  const auto classes = AllClasses();
  const auto place = std::find(classes.begin(), classes.end(), &description) - classes.begin();
  return ownMembers.at(static_cast<std::size_t>(place));
}

// All names are ASCII, so no language's rules for upper and lower case apply.
constexpr wchar_t LowerCase(wchar_t character) noexcept {
  const bool isUpper = character >= L'A' && character <= L'Z';
  return isUpper ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

bool IsSameName(std::wstring_view lowerCase, std::wstring_view name) noexcept {
  return std::ranges::equal(lowerCase, name, {}, {}, LowerCase);
}

std::wstring LowerCaseOf(std::wstring_view name) {
  std::wstring result(name);
  std::ranges::transform(result, result.begin(), LowerCase);
  return result;
}

using UniqueAttributes = std::unique_ptr<TYPEATTR, DescriptionDeleter>;

// Running out of memory is not the same as having no description.
bool Given(HRESULT result) {
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  return SUCCEEDED(result);
}

// AttributesOf and FunctionAt return null if the description does not exist, and raise bad_alloc.
// The type information must outlive the result.
UniqueAttributes AttributesOf(ITypeInfo& typeInfo) {
  TYPEATTR* attributes = nullptr;
  const bool given = Given(typeInfo.GetTypeAttr(&attributes));
  return {given ? attributes : nullptr, DescriptionDeleter{&typeInfo}};
}

UniqueFunction FunctionAt(ITypeInfo& typeInfo, UINT index) {
  FUNCDESC* function = nullptr;
  const bool given = Given(typeInfo.GetFuncDesc(index, &function));
  return {given ? function : nullptr, DescriptionDeleter{&typeInfo}};
}

}  // namespace

HRESULT InterfaceMembers::Read(UniqueInterface<ITypeInfo> slots) {
  slots_ = std::move(slots);
  const UniqueAttributes attributes = AttributesOf(*slots_.Get());
  if (!attributes) return TYPE_E_ELEMENTNOTFOUND;
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    UniqueFunction function = FunctionAt(*slots_.Get(), i);
    const HRESULT read = function ? ReadNames(*function) : TYPE_E_ELEMENTNOTFOUND;
    if (FAILED(read)) return read;
    functions_.push_back(std::move(function));
  }
  return S_OK;
}

// The functions of a property share its number and the names of the first function.
HRESULT InterfaceMembers::ReadNames(const FUNCDESC& function) {
  if (std::ranges::find(names_, function.memid, &Names::id) != names_.end()) return S_OK;
  const std::size_t wanted = 1 + ArgumentCount(function);
  std::vector<UniqueBstr> owners(wanted);
  std::vector<BSTR> given(wanted);
  UINT count = 0;
  const HRESULT found =
      slots_.Get()->GetNames(function.memid, given.data(), static_cast<UINT>(wanted), &count);
  if (FAILED(found)) return found;
  for (std::size_t i = 0; i < wanted; ++i) owners[i] = UniqueBstr(given[i]);
  Names names{function.memid, {}};
  for (UINT i = 0; i < count; ++i) names.all.push_back(LowerCaseOf(given[i]));
  names_.push_back(std::move(names));
  return S_OK;
}

HRESULT InterfaceMembers::FindIds(std::span<const LPOLESTR> names, DISPID* ids) const noexcept {
  std::fill_n(ids, names.size(), DISPID_UNKNOWN);
  const auto member = std::ranges::find_if(
      names_, [&](const Names& known) { return IsSameName(known.all.front(), names.front()); });
  if (member == names_.end()) return DISP_E_UNKNOWNNAME;
  ids[0] = member->id;
  HRESULT outcome = S_OK;
  const auto arguments = std::span(member->all).subspan(1);
  for (std::size_t i = 1; i < names.size(); ++i) {
    const auto argument = std::ranges::find_if(
        arguments, [&](const std::wstring& known) { return IsSameName(known, names[i]); });
    if (argument == arguments.end()) {
      outcome = DISP_E_UNKNOWNNAME;
    } else {
      ids[i] = static_cast<DISPID>(argument - arguments.begin());
    }
  }
  return outcome;
}

const FUNCDESC* InterfaceMembers::FindFunction(DISPID id, int kinds) const noexcept {
  for (const UniqueFunction& function : functions_) {
    if (function->memid == id && (function->invkind & kinds) != 0) return function.get();
  }
  return nullptr;
}

HRESULT MembersOf(const ClassDescription& description, const InterfaceMembers** members) {
  std::atomic<const InterfaceMembers*>& own = MembersFor(description);
  *members = own.load();
  if (*members != nullptr) return S_OK;
  UniqueInterface<ITypeInfo> slots;
  const HRESULT described = SlotInfoOf(description.interfaceId, slots.Put());
  if (FAILED(described)) return described;
  auto fresh = std::make_unique<InterfaceMembers>();
  const HRESULT read = fresh->Read(std::move(slots));
  if (FAILED(read)) return read;
  // Two threads may read at once; the second one's members are dropped.
  if (own.compare_exchange_strong(*members, fresh.get())) *members = fresh.release();
  return S_OK;
}

MembersOfClasses TakeMembers() noexcept {
  MembersOfClasses taken;
  for (std::size_t i = 0; i < kClassCount; ++i) taken[i].reset(ownMembers[i].exchange(nullptr));
  return taken;
}

}  // namespace latchkey::com
