// The standard streams at the start of the process.
#pragma once

namespace latchkey::cli {

// Replaces each standard stream that was closed at the start by one that refuses every use.
// Otherwise the next file that is opened would get the stream's number, and messages would be
// written into the file. Call it before any file is opened.
void OccupyClosedStreams() noexcept;

}  // namespace latchkey::cli
