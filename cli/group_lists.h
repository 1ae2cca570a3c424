// Files with lists of other files, for decrypting these in groups.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace latchkey::cli {

// Ciphertexts of the same settings.
struct FileGroup {
  std::string options;  // of latchkey decrypt
  std::vector<std::string> files;
};

// Raises CommandError (wrong usage) if WriteLists cannot write into `folder`: a new folder, whose
// name has no character that would end a quotation in the file "options".
void RequireNewFolder(const std::string& folder);

// Makes the folder. The first group's list is its file "1", the next one's "2", and so on, and that
// of `others` is "others", unless it is empty. A list has the names, each ended by NUL, for
// --files0-from. The file "options" has a line for each group: its options and its list, quoted for
// xargs(1). Raises FileError.
void WriteLists(const std::string& folder, std::span<const FileGroup> groups,
                std::span<const std::string> others);

}  // namespace latchkey::cli
