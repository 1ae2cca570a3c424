// The measurements of the comparison.
#pragma once

namespace latchkey::bench {

// Registers a row "work/peer" for each cipher direction and hash of each library that supports it.
// A repetition is one pass over one buffer of 16 MiB. Throws when a library's output differs from
// Latchkey's.
void AddRows();

}  // namespace latchkey::bench
