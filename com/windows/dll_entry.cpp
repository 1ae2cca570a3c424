// The entry points of the DLL.
#include "com/windows/automation_owners.h"
#include "com/windows/class_factory.h"
#include "com/windows/method_call.h"
#include "com/windows/module.h"
#include "com/windows/registration.h"
#include "platform/thread_slot.h"
#include "platform/windows/run_time.h"

namespace latchkey::com {
namespace {

// Runs an entry point that belongs to no class; faults in it name the entry object as their source.
template <class Body>
HRESULT RunEntryPoint(Body&& body) noexcept {
  const ModuleUse use;
  HRESULT outcome = S_OK;
  const HRESULT ran = RunMethod(kMainClass, [&] { outcome = body(); });
  return FAILED(ran) ? ran : outcome;
}

}  // namespace

STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  const ClassDescription* const description = FindClass(classId);
  if (description == nullptr) return CLASS_E_CLASSNOTAVAILABLE;
  return RunEntryPoint([&] {
    const UniqueInterface<IClassFactory> factory(new ClassFactory(*description));
    return factory.Get()->QueryInterface(interfaceId, object);
  });
}

STDAPI DllCanUnloadNow() { return ModuleIsUnused() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() {
  return RunEntryPoint([] { return RegisterServer(RegistryScope::Machine); });
}

STDAPI DllUnregisterServer() {
  return RunEntryPoint([] { return UnregisterServer(RegistryScope::Machine); });
}

STDAPI DllInstall(BOOL install, const wchar_t* options) {
  return RunEntryPoint([&] { return InstallServer(install != FALSE, options); });
}

// Threads outlive an unloaded DLL, so their data in it is freed here. COM and Automation must not
// be called while libraries are loaded or unloaded; the module's last use has released their
// objects. When the process ends (`reserved` is not null), other threads were stopped at any point,
// and freeing is not safe.
extern "C" BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, void* reserved) {
  if (reason == DLL_PROCESS_DETACH && reserved == nullptr) {
    platform::ReleaseThreadSlot();
    platform::ReleaseRunTime();
  }
  return TRUE;
}

}  // namespace latchkey::com
