// The digest of a file of any length.
#pragma once

#include <cstdint>
#include <string>

#include "cli/checksum_file.h"
#include "cli/platform/input_file.h"
#include "cli/progress.h"
#include "crypto/provider_handles.h"

namespace latchkey::cli {

// The digest of all that the input has to give, as lower-case hexadecimal digits; `hash` is a
// number of the component. Raises CommandError when the provider refuses.
[[nodiscard]] std::string FileDigest(const UniqueContext& context, std::int16_t hash,
                                     InputFile& input, Progress& progress);

// What checksum lines of that hash look like.
[[nodiscard]] ChecksumForm ChecksumFormOf(std::int16_t hash);

}  // namespace latchkey::cli
