// The digest of a file of any length.
#pragma once

#include <cstdint>
#include <string>

#include "cli/checksum_file.h"
#include "cli/platform/input_file.h"
#include "cli/progress.h"
#include "provider/provider_handles.h"

namespace latchkey::cli {

// The digest of the whole input, as lower-case hexadecimal digits; `hash` is a number of the
// component. Raises CommandError if the provider fails.
[[nodiscard]] std::string FileDigest(const UniqueContext& context, std::int16_t hash,
                                     InputFile& input, Progress& progress);

// The format of the checksum lines of the hash with this number.
[[nodiscard]] ChecksumForm ChecksumFormOf(std::int16_t hash);

}  // namespace latchkey::cli
