#include "tests/system/trust/windows/late_bound_call.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace latchkey::test {
namespace {

constexpr VARTYPE kBytes = VT_ARRAY | VT_UI1;

std::vector<Member> Numbered(std::vector<Member> members, const LateClient& object) {
  for (Member& member : members) member.id = object.IdOf(member.name);
  return members;
}

// The system's own conversion of the plain value decides.
HRESULT ConversionTo(VARTYPE type, const Shape& shape) {
  if (!shape.readable) return DISP_E_TYPEMISMATCH;
  ScopedVariant converted;
  VARIANT plain = shape.plain;
  const HRESULT result =
      VariantChangeTypeEx(&converted.Get(), &plain, LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL, type);
  return SUCCEEDED(result) || result == DISP_E_OVERFLOW ? result : DISP_E_TYPEMISMATCH;
}

bool IsCircle(const Shape& shape) {
  return V_VT(&shape.value) == (VT_BYREF | VT_VARIANT) && !shape.readable;
}

// Password stores an array by its bounds alone; other members read from element 0.
HRESULT ExpectedOfBytes(const Member& member, const Shape& shape) {
  if (IsCircle(shape)) return DISP_E_TYPEMISMATCH;
  if (shape.leftOut) return DISP_E_PARAMNOTOPTIONAL;
  if (shape.readable && V_VT(&shape.plain) == VT_EMPTY) return FaultCode(9);
  if (shape.array == ArrayKind::NoBytes) return FaultCode(13);
  const bool stored =
      shape.array == ArrayKind::NoElementZero && std::wstring_view(member.name) == L"Password";
  return shape.array == ArrayKind::Readable || stored ? S_OK : FaultCode(9);
}

HRESULT ExpectedOfAny(const Shape& shape) {
  if (IsCircle(shape)) return DISP_E_TYPEMISMATCH;
  if (shape.readable && V_VT(&shape.plain) == VT_NULL) return FaultCode(94);
  const HRESULT converted = ConversionTo(VT_BSTR, shape);
  if (converted == DISP_E_OVERFLOW) return FaultCode(6);
  return SUCCEEDED(converted) ? S_OK : FaultCode(13);
}

HRESULT ExpectedOf(const Member& member, Takes takes, const Shape& shape, bool optional) {
  if (takes == Takes::Array) return ExpectedOfBytes(member, shape);
  if (takes == Takes::Any) return ExpectedOfAny(shape);
  if (shape.leftOut) return optional ? S_OK : DISP_E_PARAMNOTOPTIONAL;
  switch (takes) {
    case Takes::Text:
      return ConversionTo(VT_BSTR, shape);
    case Takes::Integer:
      return ConversionTo(VT_I2, shape);
    case Takes::Long:
      return ConversionTo(VT_I4, shape);
    default:
      return ConversionTo(VT_BOOL, shape);
  }
}

// The two kinds of property put are interchangeable.
const Member* FindMember(std::span<const Member> members, const LateCall& call) {
  constexpr int kPuts = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
  const int kinds = (call.flags & kPuts) != 0 ? call.flags | kPuts : call.flags;
  const auto found = std::find_if(members.begin(), members.end(), [&](const Member& member) {
    return member.id == call.member && (member.kind & kinds) != 0;
  });
  return found != members.end() ? &*found : nullptr;
}

// The arguments by their positions, null where one is missing.
using Bound = std::vector<const Shape*>;

HRESULT Bind(const Member& member, const LateCall& call, Bound& bound) {
  const std::size_t count = call.arguments.size();
  const std::size_t named = call.names.size();
  if (named > count || (call.withoutValues && count > 0) || (call.withoutNames && named > 0)) {
    return E_INVALIDARG;
  }
  bound.assign(member.arguments.size(), nullptr);
  if (count > bound.size() || count < member.required) return DISP_E_BADPARAMCOUNT;
  for (std::size_t i = 0; i < count; ++i) {
    auto position = static_cast<LONGLONG>(count - 1 - i);
    if (i < named) position = call.names[i];
    const bool isValue = position == DISPID_PROPERTYPUT && member.kind == DISPATCH_PROPERTYPUT;
    if (isValue) position = static_cast<LONGLONG>(bound.size()) - 1;
    if (position < 0 || position >= static_cast<LONGLONG>(bound.size())) {
      return DISP_E_PARAMNOTFOUND;
    }
    const Shape*& place = bound[static_cast<std::size_t>(position)];
    if (place != nullptr) return DISP_E_PARAMNOTFOUND;
    place = &call.arguments[i];
  }
  return S_OK;
}

// The failure that the first unsuitable argument requires.
HRESULT ExpectedResult(const Member& member, const LateCall& call) {
  Bound bound;
  const HRESULT matched = Bind(member, call, bound);
  if (FAILED(matched)) return matched;
  for (std::size_t i = 0; i < bound.size(); ++i) {
    const bool optional = i >= member.required;
    if (bound[i] == nullptr && !optional) return DISP_E_PARAMNOTOPTIONAL;
    if (bound[i] == nullptr) continue;
    const HRESULT expected = ExpectedOf(member, member.arguments[i], *bound[i], optional);
    if (FAILED(expected)) return expected;
  }
  return S_OK;
}

}  // namespace

std::vector<Member> MembersOfMain(const LateClient& object) {
  return Numbered({{L"ErrorLocationID", DISPATCH_PROPERTYGET, VT_I2},
                   {L"ErrorType", DISPATCH_PROPERTYGET, VT_I2},
                   {L"RTErrorNumber", DISPATCH_PROPERTYGET, VT_I4},
                   {L"RTErrorDescription", DISPATCH_PROPERTYGET, VT_BSTR},
                   {L"AppErrorNumber", DISPATCH_PROPERTYGET, VT_I4},
                   {L"AppErrorDescription", DISPATCH_PROPERTYGET, VT_BSTR},
                   {L"ErrorExists", DISPATCH_PROPERTYGET, VT_BOOL},
                   {L"ErrorMachineState", DISPATCH_PROPERTYGET, VT_I2},
                   {L"DoesInternetConnectionExist", DISPATCH_METHOD, VT_BOOL}},
                  object);
}

std::vector<Member> MembersOfCryptoApi(const LateClient& object) {
  using enum Takes;
  return Numbered({{L"InputData", DISPATCH_PROPERTYPUT, VT_EMPTY, {Array}, 1},
                   {L"OutputData", DISPATCH_PROPERTYGET, kBytes},
                   {L"EnhancedProvider", DISPATCH_PROPERTYPUT, VT_EMPTY, {FlagByReference}, 1},
                   {L"Password", DISPATCH_PROPERTYGET, kBytes},
                   {L"Password", DISPATCH_PROPERTYPUT, VT_EMPTY, {Array}, 1},
                   {L"UseDefaultPWD", DISPATCH_PROPERTYPUT, VT_EMPTY, {FlagByReference}, 1},
                   {L"CreateHash", DISPATCH_METHOD, VT_BSTR, {Text, Integer, Flag, Flag, Flag}},
                   {L"CreateRandom", DISPATCH_METHOD, VT_BSTR, {Long, Flag, Flag, Flag}},
                   {L"CreateSaltValue", DISPATCH_METHOD, VT_BSTR, {Long, Flag}},
                   {L"Decrypt", DISPATCH_METHOD, VT_BOOL, {Integer, Integer}},
                   {L"Encrypt", DISPATCH_METHOD, VT_BOOL, {Integer, Integer}},
                   {L"ByteArrayToString", DISPATCH_METHOD, VT_BSTR, {Array}, 1},
                   {L"StringToByteArray", DISPATCH_METHOD, kBytes, {Any}, 1},
                   {L"ConvertStringFromHex", DISPATCH_METHOD, VT_BSTR, {Text}, 1},
                   {L"ConvertStringToHex", DISPATCH_METHOD, VT_BSTR, {Text, FlagByReference}, 1}},
                  object);
}

std::vector<Member> MembersOfTimer(const LateClient& object) {
  return Numbered(
      {{L"Start", DISPATCH_METHOD, VT_EMPTY}, {L"GetElapsedTime", DISPATCH_METHOD, VT_I4}}, object);
}

Ending ExpectedEnding(std::span<const Member> members, const LateCall& call) {
  if (call.withoutList) return {E_INVALIDARG};
  const Member* const member = FindMember(members, call);
  if (member == nullptr) return {DISP_E_MEMBERNOTFOUND};
  const HRESULT result = ExpectedResult(*member, call);
  return {result, SUCCEEDED(result) ? member->result : VARTYPE{VT_EMPTY}};
}

bool AsksForTooMuch(std::span<const Member> members, const LateCall& call) {
  constexpr LONG kMost = 64;
  const Member* const member = FindMember(members, call);
  if (member == nullptr || member->arguments.empty()) return false;
  Bound bound;
  if (member->arguments[0] != Takes::Long || FAILED(Bind(*member, call, bound))) return false;
  if (bound[0] == nullptr || !bound[0]->readable) return false;
  ScopedVariant converted;
  VARIANT plain = bound[0]->plain;
  const HRESULT result =
      VariantChangeTypeEx(&converted.Get(), &plain, LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL, VT_I4);
  return SUCCEEDED(result) && V_I4(&converted.Get()) > kMost;
}

LateCall CallMaker::Make(ShapeMaker& shapes) {
  const Member& member = random_.Of(members_);
  LateCall call;
  call.member = random_.OneIn(16) ? DrawWrongNumber() : member.id;
  call.flags = DrawFlags(member.kind);
  call.arguments.resize(DrawCount(member));
  for (Shape& shape : call.arguments) shape = shapes.Make();
  DrawNames(member, call);
  call.withoutList = random_.OneIn(100);
  call.withoutValues = random_.OneIn(100);
  call.withoutNames = random_.OneIn(50);
  return call;
}

// Numbers with a special meaning, numbers next to the members', and those of the members that every
// dual interface inherits.
DISPID CallMaker::DrawWrongNumber() {
  constexpr std::array<DISPID, 10> kNumbers{DISPID_VALUE,
                                            DISPID_UNKNOWN,
                                            DISPID_PROPERTYPUT,
                                            DISPID_NEWENUM,
                                            15,
                                            99,
                                            0x60000000,
                                            0x60010000,
                                            std::numeric_limits<DISPID>::max(),
                                            std::numeric_limits<DISPID>::min()};
  const DISPID number = random_.Of(std::span(kNumbers));
  return number >= 0x60000000 && random_.Flag() ? number - random_.Between(0, 7) : number;
}

WORD CallMaker::DrawFlags(WORD kind) {
  if (random_.OneIn(12)) return static_cast<WORD>(random_.Below(32));
  const bool put = kind == DISPATCH_PROPERTYPUT;
  if (random_.OneIn(4))
    return put ? DISPATCH_PROPERTYPUTREF : DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  return kind;
}

std::size_t CallMaker::DrawCount(const Member& member) {
  if (random_.OneIn(12)) return static_cast<std::size_t>(random_.Below(7));
  const std::size_t optional = member.arguments.size() - member.required;
  return member.required + static_cast<std::size_t>(random_.Below(optional + 1));
}

// The positions after those given by position, in either direction.
void CallMaker::DrawNames(const Member& member, LateCall& call) {
  constexpr std::array<DISPID, 8> kStrange{DISPID_UNKNOWN,
                                           DISPID_PROPERTYPUT,
                                           0,
                                           1,
                                           5,
                                           99,
                                           std::numeric_limits<DISPID>::max(),
                                           std::numeric_limits<DISPID>::min()};
  const std::size_t count = call.arguments.size();
  if (member.kind == DISPATCH_PROPERTYPUT && random_.Flag()) {
    call.names = {DISPID_PROPERTYPUT};
  } else if (random_.OneIn(4)) {
    const auto named = static_cast<std::size_t>(random_.Below(count + 1));
    for (std::size_t i = count - named; i < count; ++i)
      call.names.push_back(static_cast<DISPID>(i));
    if (random_.Flag()) std::reverse(call.names.begin(), call.names.end());
  }
  for (DISPID& name : call.names) {
    if (random_.OneIn(12)) name = random_.Of(std::span(kStrange));
  }
  if (random_.OneIn(50)) call.names.push_back(random_.Of(std::span(kStrange)));
}

}  // namespace latchkey::test
