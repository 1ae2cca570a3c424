// Common parts of the early-bound and late-bound C++ clients: apartments, objects, byte arrays,
// texts and the error information of the last call.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "com/windows/automation_owners.h"
#include "com/windows/latchkey.h"

namespace latchkey::test {

using com::UniqueBstr;
using com::UniqueInterface;
using Bytes = std::vector<std::uint8_t>;

// The HRESULT of a fault.
constexpr HRESULT FaultCode(int number) {
  return static_cast<HRESULT>(0x800A0000U + static_cast<unsigned>(number));
}

struct SafeArrayTrait {
  using Type = SAFEARRAY*;
  static Type None() noexcept { return nullptr; }
  static void Close(Type array) noexcept { SafeArrayDestroy(array); }
};
using UniqueSafeArray = UniqueHandle<SafeArrayTrait>;

// A variant that is cleared when the scope ends.
class ScopedVariant {
 public:
  ScopedVariant() noexcept { VariantInit(&value_); }
  ScopedVariant(const ScopedVariant&) = delete;
  ScopedVariant& operator=(const ScopedVariant&) = delete;
  ~ScopedVariant() { VariantClear(&value_); }

  VARIANT& Get() noexcept { return value_; }

 private:
  VARIANT value_{};
};

// Variants that own nothing.
VARIANT Value(int number);
VARIANT Value(double number);
VARIANT Value(bool flag);
VARIANT Value(BSTR text);
VARIANT Value(SAFEARRAY* bytes);
VARIANT OfType(int type);  // of any VARTYPE, its payload all zero
VARIANT LeftOut();
VARIANT ReferenceTo(VARIANT& variable);
VARIANT ReferenceTo(SAFEARRAY*& bytes);
VARIANT ReferenceTo(VARIANT_BOOL& flag);

// An initialized COM apartment of the calling thread.
class Apartment {
 public:
  explicit Apartment(DWORD kind = COINIT_APARTMENTTHREADED) {
    EXPECT_HRESULT_SUCCEEDED(CoInitializeEx(nullptr, kind));
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() { CoUninitialize(); }
};

// A new object of the registered server, or null with a failed expectation.
template <class Interface>
UniqueInterface<Interface> CreateObject(REFCLSID classId, REFIID interfaceId) {
  void* object = nullptr;
  EXPECT_HRESULT_SUCCEEDED(
      CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, interfaceId, &object));
  return UniqueInterface<Interface>(static_cast<Interface*>(object));
}
UniqueInterface<_clsMain> CreateMain();
UniqueInterface<_clsCryptoAPI> CreateCryptoApi();
UniqueInterface<_clsTimer> CreateTimer();

// A string with its length, so that it may hold NUL characters.
UniqueBstr Bstr(std::wstring_view text);

// Returns the characters of a string and frees the string.
std::wstring Take(BSTR text);

// A dynamic array of one dimension.
SAFEARRAY* MakeByteArray(const Bytes& bytes, LONG lowerBound = 0);

// The elements of an array of bytes; empty for a null one.
Bytes ElementsOf(SAFEARRAY* array);

// Returns the elements of an array of bytes and destroys the array.
Bytes Take(SAFEARRAY* array);

// The codes of an ASCII text, followed by the zero element of a text.
Bytes TextArray(std::string_view text);

// Takes the error information of the calling thread.
struct ErrorSeen {
  bool present = false;
  IID interfaceId = {};
  std::wstring source;
  std::wstring description;
};
ErrorSeen TakeErrorInfo();

// The error record through the properties of clsMain. The default is the empty record.
struct ErrorRecord {
  short location = 0;
  short type = 2;
  LONG runTimeNumber = 0;
  std::wstring runTimeDescription;
  LONG appNumber = 0;
  std::wstring appDescription;
  VARIANT_BOOL exists = VARIANT_FALSE;
  short machineState = 0;

  friend bool operator==(const ErrorRecord&, const ErrorRecord&) = default;
  friend void PrintTo(const ErrorRecord& record, std::ostream* out);
};
ErrorRecord ReadRecord(_clsMain* main);

// A client on a separate thread, with the error record's owner and a service object.
class ClientTest : public testing::Test {
 protected:
  _clsMain* Main() { return main_.Get(); }
  _clsCryptoAPI* Api() { return api_.Get(); }

  // Each makes a call that must succeed.
  VARIANT_BOOL Encrypt(short hash, short cipher);
  VARIANT_BOOL Decrypt(short hash, short cipher);
  std::wstring Hash(const wchar_t* text, short hash);  // in hexadecimal digits
  void UseEnhancedProvider(bool use);
  void UseDefaultPassword(bool use);
  Bytes StoredPassword();

  // Checks that the last call failed with this error information.
  void ExpectFault(HRESULT result, int number, const wchar_t* description);

 private:
  Apartment apartment_;
  UniqueInterface<_clsMain> main_ = CreateMain();
  UniqueInterface<_clsCryptoAPI> api_ = CreateCryptoApi();
};

}  // namespace latchkey::test
