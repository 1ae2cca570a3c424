#include "diagnostics/module_data.h"

#include "diagnostics/fault.h"
#include "platform/thread_slot.h"

namespace latchkey {
namespace {

void* MakeModuleData() { return std::make_unique<ModuleData>().release(); }

void DestroyModuleData(void* data) noexcept {
  const std::unique_ptr<ModuleData> owner(static_cast<ModuleData*>(data));
}

}  // namespace

ModuleData& ThreadModuleData() {
  static constexpr platform::ThreadSlotFunctions kFunctions{MakeModuleData, DestroyModuleData};
  return *static_cast<ModuleData*>(platform::ThreadSlotValue(kFunctions));
}

clsErrorObject& ErrorRecord() {
  clsErrorObject* record = ThreadModuleData().errorRecord.get();
  if (record == nullptr) throw Fault(FaultNumber::ObjectNotSet);
  return *record;
}

}  // namespace latchkey
