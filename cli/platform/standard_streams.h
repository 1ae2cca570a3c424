// The standard streams at the start of the process.
#pragma once

namespace latchkey::cli {

// Replaces each standard stream that was closed at the start by one that refuses every use.
// Otherwise the next opened file would get its number, and messages would be written into it. Call
// it before any file is opened.
void OccupyClosedStreams() noexcept;

}  // namespace latchkey::cli
