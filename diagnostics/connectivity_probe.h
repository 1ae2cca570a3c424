// Queries whether the machine has an Internet connection now. Makes no network traffic and does not
// wait.
#pragma once

#include <cstdint>

namespace latchkey {

// Queries the platform. *flags describes the connection (platform/connectivity.h), or is 0 if the
// query failed. A fault is recorded at location 419 and gives false; being offline is not a failure
// and is not recorded. Does not clear the record first. Raises ObjectNotSet only if a fault must be
// recorded and the thread has no record.
bool QueryConnectionState(std::int16_t* flags);

// The same without the flags. A fault of this function itself is recorded at location 420.
bool QueryConnectionExists();

}  // namespace latchkey
