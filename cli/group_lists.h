// Lists of ciphertexts with the same settings, so that each group can be decrypted at once.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace latchkey::cli {

// Ciphertexts with the same settings.
struct FileGroup {
  std::string options;  // of latchkey decrypt
  std::vector<std::string> files;
};

// Raises CommandError (wrong usage) unless `folder` is the name of a new folder, without quotation
// marks and line ends, which would end the quotation in the file "options".
void RequireNewFolder(const std::string& folder);

// Makes the folder and its files: a list for each group, named "1", "2" and so on; the list
// "others", unless `others` is empty; and "options", which has a line for each group with its
// options and its list, quoted for xargs(1). A list has the names, each ended by NUL, for
// --files0-from. Raises FileError, and then removes the folder that it made.
void WriteLists(const std::string& folder, std::span<const FileGroup> groups,
                std::span<const std::string> others);

}  // namespace latchkey::cli
