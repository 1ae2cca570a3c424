// Encrypts a text through the registered component, early-bound, and decrypts it again.
//
//   set LATCHKEY_PASSWORD=correct horse
//   encrypt_text TEXT
//
// The password is in the environment, since other users can read the arguments of a program.
// The header is made from com/windows/latchkey.idl, in the build folder; latchkey.dll's type
// library has the same contents.
#include <initguid.h>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>
#include <string_view>

#include "com/windows/latchkey.h"

namespace {

constexpr short kMd5 = 1;
constexpr short kRc4 = 1;
constexpr short kRunTimeFailure = 1;

// Without its digit, see "Storing a ciphertext" in docs/reference.md.
constexpr std::wstring_view kEndMark = L"~lkend~";

// Prints a line: as UTF-16 on a console, as UTF-8 into a file or pipe.
void Print(const std::wstring& text) {
  const std::wstring line = text + L'\n';
  const auto length = static_cast<int>(line.size());
  HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  if (GetConsoleMode(output, &mode) != FALSE) {
    DWORD written = 0;
    WriteConsoleW(output, line.data(), static_cast<DWORD>(length), &written, nullptr);
    return;
  }
  const int size =
      WideCharToMultiByte(CP_UTF8, 0, line.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, line.data(), length, bytes.data(), size, nullptr, nullptr);
  std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

// Ends the program with a message.
[[noreturn]] void StopWith(const std::wstring& message) {
  Print(message);
  std::exit(1);
}

// Reports a call that failed, and ends the program.
void Check(HRESULT result, const char* what) {
  if (SUCCEEDED(result)) return;
  IErrorInfo* information = nullptr;
  BSTR description = nullptr;
  if (GetErrorInfo(0, &information) == S_OK) {
    information->GetDescription(&description);
    information->Release();
  }
  std::array<wchar_t, 16> code{};
  std::swprintf(code.data(), code.size(), L": %08lX ", static_cast<unsigned long>(result));
  StopWith(std::wstring(what, what + std::strlen(what)) + code.data() +
           (description != nullptr ? description : L""));
}

template <class Interface>
Interface* CreateObject(REFCLSID classId, REFIID interfaceId) {
  void* object = nullptr;
  Check(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, interfaceId, &object), "create");
  return static_cast<Interface*>(object);
}

SAFEARRAY* BytesOf(_clsCryptoAPI* api, const std::wstring& text) {
  VARIANT value;
  VariantInit(&value);
  V_VT(&value) = VT_BSTR;
  V_BSTR(&value) = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  SAFEARRAY* bytes = nullptr;
  Check(api->StringToByteArray(&value, &bytes), "StringToByteArray");
  VariantClear(&value);
  return bytes;
}

std::wstring TextOf(_clsCryptoAPI* api, SAFEARRAY* bytes) {
  BSTR text = nullptr;
  Check(api->ByteArrayToString(&bytes, &text), "ByteArrayToString");
  std::wstring result(text, SysStringLen(text));
  SysFreeString(text);
  return result;
}

std::wstring WithoutEndSpaces(std::wstring text) {
  text.erase(text.find_last_not_of(L' ') + 1);
  return text;
}

SAFEARRAY* Output(_clsCryptoAPI* api) {
  SAFEARRAY* output = nullptr;
  Check(api->get_OutputData(&output), "OutputData");
  return output;
}

// A failed operation returns a failure value; the error record has the reason.
void CheckOperation(VARIANT_BOOL succeeded, _clsMain* main) {
  if (succeeded != VARIANT_FALSE) return;
  short location = 0;
  short type = 0;
  BSTR description = nullptr;
  Check(main->get_ErrorLocationID(&location), "ErrorLocationID");
  Check(main->get_ErrorType(&type), "ErrorType");
  Check(type == kRunTimeFailure ? main->get_RTErrorDescription(&description)
                                : main->get_AppErrorDescription(&description),
        "description");
  StopWith(L"failed at location " + std::to_wstring(location) + L": " + description);
}

// Returns the ciphertext and one extra element, which InputData ignores: store and pass the whole
// array.
//
// InputData loses spaces at the end. The end mark keeps those of the text. Its digit is the first
// with which the ciphertext does not end in the code of a space.
SAFEARRAY* Encrypt(_clsCryptoAPI* api, _clsMain* main, const std::wstring& text) {
  for (wchar_t digit = L'0'; digit <= L'9'; ++digit) {
    const std::wstring marked = text + std::wstring(kEndMark) + digit;
    SAFEARRAY* plain = BytesOf(api, marked);
    if (TextOf(api, plain) != marked) StopWith(L"a character is not in the system's code page");
    VARIANT_BOOL done = VARIANT_FALSE;
    Check(api->put_InputData(&plain), "InputData");
    SafeArrayDestroy(plain);
    Check(api->Encrypt(kMd5, kRc4, &done), "Encrypt");
    CheckOperation(done, main);
    SAFEARRAY* cipher = Output(api);
    if (TextOf(api, cipher).size() + 1 == cipher->rgsabound[0].cElements) return cipher;
    SafeArrayDestroy(cipher);
  }
  StopWith(L"no ciphertext that can be stored");
}

// Data without a mark is returned unchanged.
std::wstring WithoutEndMark(const std::wstring& text) {
  const std::size_t end = text.size() - std::min(text.size(), kEndMark.size() + 1);
  const bool marked = text.compare(end, kEndMark.size(), kEndMark) == 0 &&
                      std::wstring_view(L"0123456789").find(text.back()) != std::wstring::npos;
  return marked ? text.substr(0, end) : text;
}

std::wstring Decrypt(_clsCryptoAPI* api, _clsMain* main, SAFEARRAY* cipher) {
  VARIANT_BOOL done = VARIANT_FALSE;
  Check(api->put_InputData(&cipher), "InputData");
  Check(api->Decrypt(kMd5, kRc4, &done), "Decrypt");
  CheckOperation(done, main);
  SAFEARRAY* plain = Output(api);
  std::wstring text = WithoutEndMark(TextOf(api, plain));
  SafeArrayDestroy(plain);
  return text;
}

void PrintHex(_clsCryptoAPI* api, SAFEARRAY* cipher) {
  const std::wstring characters = TextOf(api, cipher);
  BSTR argument = SysAllocStringLen(characters.data(), static_cast<UINT>(characters.size()));
  BSTR hex = nullptr;
  VARIANT_BOOL upperCase = VARIANT_TRUE;
  Check(api->ConvertStringToHex(argument, &upperCase, &hex), "ConvertStringToHex");
  Print(std::wstring(L"ciphertext  ") + hex);
  SysFreeString(hex);
  SysFreeString(argument);
}

void EncryptText(const wchar_t* text, const wchar_t* passwordText) {
  auto* const main = CreateObject<_clsMain>(CLSID_clsMain, IID__clsMain);  // first on each thread
  auto* const api = CreateObject<_clsCryptoAPI>(CLSID_clsCryptoAPI, IID__clsCryptoAPI);

  SAFEARRAY* password = BytesOf(api, passwordText);
  if (WithoutEndSpaces(TextOf(api, password)) != WithoutEndSpaces(passwordText)) {
    StopWith(L"a character of the password is not in the system's code page");
  }
  Check(api->put_Password(&password), "Password");  // erases the array, which is null afterwards

  SAFEARRAY* cipher = Encrypt(api, main, text);
  PrintHex(api, cipher);
  Print(L"decrypted   " + Decrypt(api, main, cipher));

  SafeArrayDestroy(cipher);
  SafeArrayDestroy(password);
  api->Release();
  main->Release();
}

}  // namespace

// The arguments of main are in the ANSI code page; the component's texts are UTF-16.
int main() {
  std::array<wchar_t, 256> password{};
  const DWORD length = GetEnvironmentVariableW(L"LATCHKEY_PASSWORD", password.data(),
                                               static_cast<DWORD>(password.size()));
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  if (count != 2 || length == 0 || length >= password.size()) {
    std::puts("usage: set LATCHKEY_PASSWORD, then encrypt_text TEXT");
    return 2;
  }
  Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
  EncryptText(arguments[1], password.data());
  CoUninitialize();
  LocalFree(arguments);
  return 0;
}
