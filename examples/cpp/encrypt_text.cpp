// Encrypts a text through the registered component, early-bound, and decrypts it again.
//
//   set LATCHKEY_PASSWORD=correct horse
//   encrypt_text TEXT
//
// The password comes from the environment, since other users can read the arguments of a program.
// The header is made from com/windows/latchkey.idl, in the build folder: latchkey.dll's type
// library holds the same.
#include <initguid.h>
#include <array>
#include <cstdio>

#include "com/windows/latchkey.h"

namespace {

constexpr short kMd5 = 1;
constexpr short kRc4 = 1;

// Reports a call that failed, and ends the program.
void Check(HRESULT result, const char* what) {
  if (SUCCEEDED(result)) return;
  IErrorInfo* information = nullptr;
  BSTR description = nullptr;
  if (GetErrorInfo(0, &information) == S_OK) {
    information->GetDescription(&description);
    information->Release();
  }
  std::printf("%s: %08lX %ls\n", what, static_cast<unsigned long>(result),
              description != nullptr ? description : L"");
  std::exit(1);
}

template <class Interface>
Interface* CreateObject(REFCLSID classId, REFIID interfaceId) {
  void* object = nullptr;
  Check(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, interfaceId, &object), "create");
  return static_cast<Interface*>(object);
}

SAFEARRAY* BytesOf(_clsCryptoAPI* api, const wchar_t* text) {
  VARIANT value;
  VariantInit(&value);
  V_VT(&value) = VT_BSTR;
  V_BSTR(&value) = SysAllocString(text);
  SAFEARRAY* bytes = nullptr;
  Check(api->StringToByteArray(&value, &bytes), "StringToByteArray");
  VariantClear(&value);
  return bytes;
}

// The result of the last Encrypt or Decrypt, as text.
BSTR OutputText(_clsCryptoAPI* api) {
  SAFEARRAY* output = nullptr;
  BSTR text = nullptr;
  Check(api->get_OutputData(&output), "OutputData");
  Check(api->ByteArrayToString(&output, &text), "ByteArrayToString");
  SafeArrayDestroy(output);
  return text;
}

// An operation that fails says so by its result; the error record tells why.
void CheckOperation(VARIANT_BOOL succeeded, _clsMain* main) {
  if (succeeded != VARIANT_FALSE) return;
  short location = 0;
  BSTR description = nullptr;
  Check(main->get_ErrorLocationID(&location), "ErrorLocationID");
  Check(main->get_AppErrorDescription(&description), "AppErrorDescription");
  std::printf("failed at location %d: %ls\n", location, description);
  std::exit(1);
}

void EncryptText(const wchar_t* text, const wchar_t* passwordText) {
  auto* const main = CreateObject<_clsMain>(CLSID_clsMain, IID__clsMain);  // first on each thread
  auto* const api = CreateObject<_clsCryptoAPI>(CLSID_clsCryptoAPI, IID__clsCryptoAPI);

  SAFEARRAY* password = BytesOf(api, passwordText);
  Check(api->put_Password(&password), "Password");  // erases the array: it is null now

  SAFEARRAY* plain = BytesOf(api, text);
  VARIANT_BOOL done = VARIANT_FALSE;
  Check(api->put_InputData(&plain), "InputData");
  Check(api->Encrypt(kMd5, kRc4, &done), "Encrypt");
  CheckOperation(done, main);

  BSTR cipherText = OutputText(api);
  BSTR hex = nullptr;
  VARIANT_BOOL upperCase = VARIANT_TRUE;
  Check(api->ConvertStringToHex(cipherText, &upperCase, &hex), "ConvertStringToHex");
  std::printf("ciphertext  %ls\n", hex);

  SAFEARRAY* cipher = nullptr;
  Check(api->get_OutputData(&cipher), "OutputData");
  Check(api->put_InputData(&cipher), "InputData");
  Check(api->Decrypt(kMd5, kRc4, &done), "Decrypt");
  CheckOperation(done, main);
  BSTR decrypted = OutputText(api);
  std::printf("decrypted   %ls\n", decrypted);

  SysFreeString(decrypted);
  SysFreeString(hex);
  SysFreeString(cipherText);
  SafeArrayDestroy(cipher);
  SafeArrayDestroy(plain);
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
