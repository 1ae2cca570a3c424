// Arguments of random shapes for every member, bound late: each call ends with the HRESULT that its
// shapes ask for, and nothing leaks.
//   late_bound_shapes              10,000 calls; 100,000 with LATCHKEY_LONG
//   late_bound_shapes COUNT SEED   that many of that seed
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "tests/trust/resource_usage.h"
#include "tests/trust/windows/automation_memory.h"
#include "tests/trust/windows/random_shapes.h"

namespace latchkey::test {
namespace {

enum class Takes { Bytes, Text, Integer, Long, Flag, FlagByReference, Any };

struct Member {
  const wchar_t* name;
  WORD kind;
  std::vector<Takes> arguments;
  std::size_t required;
};

const std::vector<Member> kMembers = {
    {L"InputData", DISPATCH_PROPERTYPUT, {Takes::Bytes}, 1},
    {L"OutputData", DISPATCH_PROPERTYGET, {}, 0},
    {L"EnhancedProvider", DISPATCH_PROPERTYPUT, {Takes::FlagByReference}, 1},
    {L"Password", DISPATCH_PROPERTYPUT, {Takes::Bytes}, 1},
    {L"Password", DISPATCH_PROPERTYGET, {}, 0},
    {L"UseDefaultPWD", DISPATCH_PROPERTYPUT, {Takes::FlagByReference}, 1},
    {L"CreateHash",
     DISPATCH_METHOD,
     {Takes::Text, Takes::Integer, Takes::Flag, Takes::Flag, Takes::Flag},
     0},
    {L"CreateRandom", DISPATCH_METHOD, {Takes::Long, Takes::Flag, Takes::Flag, Takes::Flag}, 0},
    {L"CreateSaltValue", DISPATCH_METHOD, {Takes::Long, Takes::Flag}, 0},
    {L"Decrypt", DISPATCH_METHOD, {Takes::Integer, Takes::Integer}, 0},
    {L"Encrypt", DISPATCH_METHOD, {Takes::Integer, Takes::Integer}, 0},
    {L"ByteArrayToString", DISPATCH_METHOD, {Takes::Bytes}, 1},
    {L"StringToByteArray", DISPATCH_METHOD, {Takes::Any}, 1},
    {L"ConvertStringFromHex", DISPATCH_METHOD, {Takes::Text}, 1},
    {L"ConvertStringToHex", DISPATCH_METHOD, {Takes::Text, Takes::FlagByReference}, 1}};

// An exception with its fault's number, or another HRESULT.
HRESULT ResultOf(const Outcome& outcome) {
  return outcome.result == DISP_E_EXCEPTION ? outcome.scode : outcome.result;
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

HRESULT ExpectedOfBytes(const Shape& shape) {
  const bool circle = (V_VT(&shape.value) == (VT_BYREF | VT_VARIANT)) && !shape.readable;
  if (circle) return DISP_E_TYPEMISMATCH;
  if (shape.leftOut) return DISP_E_PARAMNOTOPTIONAL;
  if (shape.readable && V_VT(&shape.plain) == VT_EMPTY) return FaultCode(9);
  if (shape.array == ArrayKind::NoBytes) return FaultCode(13);
  return shape.array == ArrayKind::Readable ? S_OK : FaultCode(9);
}

HRESULT ExpectedOfAny(const Shape& shape) {
  const bool circle = (V_VT(&shape.value) == (VT_BYREF | VT_VARIANT)) && !shape.readable;
  if (circle) return DISP_E_TYPEMISMATCH;
  if (shape.readable && V_VT(&shape.plain) == VT_NULL) return FaultCode(94);
  const HRESULT converted = ConversionTo(VT_BSTR, shape);
  if (converted == DISP_E_OVERFLOW) return FaultCode(6);
  return SUCCEEDED(converted) ? S_OK : FaultCode(13);
}

HRESULT ExpectedOf(Takes takes, const Shape& shape, bool optional) {
  if (takes == Takes::Bytes) return ExpectedOfBytes(shape);
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

// The result that the first argument that does not fit asks for.
HRESULT Expected(const Member& member, const std::vector<Shape>& shapes) {
  if (shapes.size() > member.arguments.size() || shapes.size() < member.required) {
    return DISP_E_BADPARAMCOUNT;
  }
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    const HRESULT expected = ExpectedOf(member.arguments[i], shapes[i], i >= member.required);
    if (FAILED(expected)) return expected;
  }
  return S_OK;
}

// Random data of a length that takes its time or its memory.
bool AsksForTooMuch(const Member& member, const Shape& length) {
  constexpr LONG kMost = 64;
  if (member.arguments.empty() || member.arguments[0] != Takes::Long || !length.readable) {
    return false;
  }
  ScopedVariant converted;
  VARIANT plain = length.plain;
  const HRESULT result =
      VariantChangeTypeEx(&converted.Get(), &plain, LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL, VT_I4);
  return SUCCEEDED(result) && V_I4(&converted.Get()) > kMost;
}

class ShapeThrower {
 public:
  ShapeThrower(IDispatch* object, std::uint64_t seed) : client_(object), random_(seed, 0) {}

  // Calls members; the calls whose results were other than expected, or that left something locked.
  int Throw(int calls) {
    int wrong = 0;
    for (int i = 0; i < calls; ++i) wrong += ThrowOne(i) ? 0 : 1;
    return wrong;
  }

  [[nodiscard]] bool ObjectIsFree() const { return object_.References() == 1; }

 private:
  bool ThrowOne(int number) {
    ShapeMaker maker(random_, object_);
    const Member& member = random_.Of(std::span(kMembers));
    std::vector<Shape> shapes(DrawCount(member));
    for (auto& shape : shapes) shape = maker.Make();
    while (!shapes.empty() && AsksForTooMuch(member, shapes[0])) shapes[0] = maker.Make();
    const HRESULT expected = Expected(member, shapes);
    const HRESULT result = ResultOf(Call(member, shapes));
    if (result == expected && maker.LocksAreAsMade()) return true;
    std::printf("call %d, %ls: %08lX instead of %08lX for types", number, member.name,
                static_cast<unsigned long>(result), static_cast<unsigned long>(expected));
    for (const Shape& shape : shapes)
      std::printf(" %04X=%04X", V_VT(&shape.value), V_VT(&shape.plain));
    std::printf("\n");
    return false;
  }

  std::size_t DrawCount(const Member& member) {
    if (random_.OneIn(12)) return static_cast<std::size_t>(random_.Below(7));
    const std::size_t optional = member.arguments.size() - member.required;
    return member.required + static_cast<std::size_t>(random_.Below(optional + 1));
  }

  Outcome Call(const Member& member, const std::vector<Shape>& shapes) {
    std::vector<VARIANT> values;
    for (auto shape = shapes.rbegin(); shape != shapes.rend(); ++shape) {
      values.push_back(shape->value);
    }
    DISPID put = DISPID_PROPERTYPUT;
    const bool named = member.kind == DISPATCH_PROPERTYPUT && shapes.size() == 1 && random_.Flag();
    DISPPARAMS given = {values.data(), named ? &put : nullptr, static_cast<UINT>(values.size()),
                        named ? 1U : 0U};
    return client_.Invoke(client_.IdOf(member.name), member.kind, &given);
  }

  LateClient client_;
  RandomSource random_;
  CountedObject object_;
};

int Run(int calls, std::uint64_t seed) {
  const Apartment apartment;
  const auto main = CreateMain();
  const auto api = CreateCryptoApi();
  ShapeThrower thrower(api.Get(), seed);
  int wrong = thrower.Throw(calls / 10);
  const auto measure = [] {
    SetErrorInfo(0, nullptr);
    return std::pair(LiveAutomationBlocks(), CurrentUsage());
  };
  FailAutomationAllocation(0);  // from now on blocks are counted
  const auto [blocksBefore, before] = measure();
  wrong += thrower.Throw(calls - calls / 10);
  const auto [blocksAfter, after] = measure();
  std::printf("seed %lu, %d calls: %d with another result, %ld blocks and %ld KiB more\n",
              static_cast<unsigned long>(seed), calls, wrong, blocksAfter - blocksBefore,
              static_cast<long>(after.residentBytes / 1024) -
                  static_cast<long>(before.residentBytes / 1024));
  const bool flat = blocksAfter <= blocksBefore + 8 &&
                    after.systemHandles <= before.systemHandles &&
                    after.residentBytes <= before.residentBytes + (1U << 20);
  return wrong == 0 && flat && thrower.ObjectIsFree() ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace latchkey::test

int main(int count, char** arguments) {
  const char* const usual = std::getenv("LATCHKEY_LONG") != nullptr ? "100000" : "10000";
  const int calls = std::atoi(count > 1 ? arguments[1] : usual);
  return latchkey::test::Run(calls, std::strtoull(count > 2 ? arguments[2] : "4", nullptr, 10));
}
