// The cost of a COM call: prints one JSON object with nanoseconds per call, the compiler and the
// version of Wine, which is empty on Windows itself. The DLL of its bitness must be registered.
#include <bit>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "com/windows/latchkey.h"

namespace {

constexpr int kCalls = 20'000;
constexpr int kRounds = 9;

void Require(HRESULT result) {
  if (SUCCEEDED(result)) return;
  std::fprintf(stderr, "com_calls: %08lX\n", static_cast<unsigned long>(result));
  std::exit(1);
}

// The fastest round, in nanoseconds per call: other load only adds to the time.
template <class Call>
double Measure(Call&& call) {
  double best = 1e18;
  for (int round = 0; round < kRounds; ++round) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < kCalls; ++i) call();
    const std::chrono::duration<double, std::nano> spent = std::chrono::steady_clock::now() - start;
    best = spent.count() / kCalls < best ? spent.count() / kCalls : best;
  }
  return best;
}

// A virtual call in the same process, for scale.
struct Plain {
  virtual ~Plain() = default;
  virtual HRESULT Get(VARIANT_BOOL* value) = 0;
};
struct Constant final : Plain {
  HRESULT Get(VARIANT_BOOL* value) override {
    *value = VARIANT_FALSE;
    return S_OK;
  }
};

std::string WineVersion() {
  const FARPROC function = GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version");
  using GetVersion = const char*(__cdecl*)();
  return function != nullptr ? std::bit_cast<GetVersion>(function)() : "";
}

}  // namespace

int main() {
  Require(CoInitialize(nullptr));
  _clsMain* main = nullptr;
  Require(CoCreateInstance(CLSID_clsMain, nullptr, CLSCTX_INPROC_SERVER, IID__clsMain,
                           reinterpret_cast<void**>(&main)));
  Constant constant;
  Plain* volatile plain = &constant;
  VARIANT_BOOL exists = VARIANT_TRUE;
  const double virtualCall = Measure([&] { plain->Get(&exists); });
  const double early = Measure([&] { Require(main->get_ErrorExists(&exists)); });

  std::wstring name = L"ErrorExists";
  OLECHAR* names = name.data();
  DISPID member = 0;
  const auto getId = [&] {
    Require(main->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &member));
  };
  const auto invoke = [&] {
    DISPPARAMS none{};
    VARIANT value;
    VariantInit(&value);
    Require(main->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value,
                         nullptr, nullptr));
  };
  const double naming = Measure(getId);
  const double invoking = Measure(invoke);
  std::printf(R"({"virtual": %.1f, "early": %.1f, "GetIDsOfNames": %.1f, "Invoke": %.1f, )",
              virtualCall, early, naming, invoking);
  std::printf(R"("compiler": "GCC %s", "wine": "%s"})", __VERSION__, WineVersion().c_str());
  std::puts("");
  main->Release();
  CoUninitialize();
  return 0;
}
