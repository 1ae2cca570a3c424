// Whether the machine has an Internet connection at this moment. No network traffic, no waiting.
#pragma once

#include <cstdint>

namespace latchkey {

// Asks the platform. *flags describes the connection (platform/connectivity.h), 0 when the query
// failed. A fault is recorded at location 419 and gives false; being offline is no failure and
// writes nothing. The record is not cleared first. Raises ObjectNotSet only when there is a fault
// to record and the thread has no record.
bool QueryConnectionState(std::int16_t* flags);

// The same answer without the flags; a fault of its own is recorded at location 420.
bool QueryConnectionExists();

}  // namespace latchkey
