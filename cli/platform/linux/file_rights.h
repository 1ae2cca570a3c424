// Who may use a file that the command makes.
#pragma once

#include <string>

#include "cli/platform/file_handle.h"
#include "cli/platform/output_file.h"

namespace latchkey::cli {

// Gives a file that its maker alone may use the owner, group, mode and access list of the one whose
// place it takes, or the mode of a new file where nothing is there. For Readers::Owner nobody but
// the owner gets a right. What the system refuses to set leaves fewer rights, never more.
void SetRights(const UniqueFile& file, const std::string& place, Readers readers);

}  // namespace latchkey::cli
