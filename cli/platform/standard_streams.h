// The streams that a process begins with.
#pragma once

namespace latchkey::cli {

// Puts something that refuses every use in the place of each standard stream that was closed at the
// start. Otherwise the next file to be opened would take its place, and text for people would go
// into it. Call it before anything is opened.
void OccupyClosedStreams() noexcept;

}  // namespace latchkey::cli
