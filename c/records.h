// Records as callers of the C interface pass them.
#pragma once

#include <array>

#include "c/call.h"
#include "crypto/engine/record_batch.h"
#include "latchkey.h"

namespace latchkey::c {

// False for a wrong struct, missing memory, and offsets that decrease or lie outside the data.
[[nodiscard]] bool ReadRecords(const latchkey_records* given, Records& records) noexcept;

// The memory of the offsets and of the data. Requires a good offset size and fewer than SIZE_MAX
// records.
[[nodiscard]] std::array<Memory, 2> InputsOf(const latchkey_records& records) noexcept;

}  // namespace latchkey::c
