// What the component keeps for each thread that uses it. Nothing here is shared between threads
// and nothing is locked.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "diagnostics/cls_error_object.h"
#include "platform/services.h"

namespace latchkey {

struct ModuleData {
  // The thread's error record: made by clsMain when it is constructed, empty before and after.
  std::unique_ptr<clsErrorObject> errorRecord;

  // The step of the multi-step operation that is running, 0 for none. Every failure copies it into
  // the record's MachineState.
  std::int32_t currentStep = 0;

  // State of the pseudo-random generator behind salt letters.
  std::array<std::uint64_t, 2> generatorState{};

  // Accumulators of the window walk.
  double windowCount = 0;
  double windowHandleSum = 0;

  // Byte counts that the last look at a drive found.
  double lastDriveTotal = 0;
  double lastDriveFree = 0;
  double lastDriveUsed = 0;

  // The platform that this thread's operations work against.
  platform::Services services;
};

// The calling thread's data, made on first use.
ModuleData& ThreadModuleData();

// The calling thread's error record. Without one (no clsMain lives on this thread) it raises
// FaultNumber::ObjectNotSet.
clsErrorObject& ErrorRecord();

}  // namespace latchkey
