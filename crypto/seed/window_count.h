// Counts the windows of the desktop.
#pragma once

namespace latchkey {

// Counts all top-level windows and their descendants that have a class name, and adds up the
// handles of the counted windows, each read as a signed 32-bit number. Sets both arguments and the
// thread's sums.
void CountWindows(double& windowCount, double& handleSum);

}  // namespace latchkey
