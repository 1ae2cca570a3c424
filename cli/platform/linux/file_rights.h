// Access rights of a file that the command makes.
#pragma once

#include <string>

#include "cli/platform/file_handle.h"
#include "cli/platform/output_file.h"

namespace latchkey::cli {

// Gives a private new file the owner, group, mode and access list of the file that it replaces, or
// the mode of a new file. With Readers::Owner only the owner gets rights. If the system refuses a
// setting, the file has fewer rights, never more.
void SetRights(const UniqueFile& file, const std::string& place, Readers readers);

}  // namespace latchkey::cli
