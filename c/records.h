// Records as callers of the C interface pass them.
#pragma once

#include "crypto/engine/record_batch.h"
#include "latchkey.h"

namespace latchkey::c {

// False for a wrong struct, missing memory, and offsets that descend or leave the data.
[[nodiscard]] bool ReadRecords(const latchkey_records* given, Records& records) noexcept;

}  // namespace latchkey::c
