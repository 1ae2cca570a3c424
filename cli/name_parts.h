// The parts of a file's name.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace latchkey::cli {

// FolderOf: the folder in the name, "." if it has none. BeforeLastPart: the folder with its
// separator, empty if the name has none. LastPartOf: the part after the folder.
[[nodiscard]] std::string FolderOf(std::string_view name);
[[nodiscard]] std::string_view BeforeLastPart(std::string_view name);
[[nodiscard]] std::string_view LastPartOf(std::string_view name);

// The name without separators at its end. Keeps the first character.
[[nodiscard]] std::string_view WithoutEnd(std::string_view name);

// The name of a file in a folder: the two with a separator between them.
[[nodiscard]] std::string Joined(std::string_view folder, std::string_view name);

// The standard library's form of a name in UTF-8.
[[nodiscard]] std::filesystem::path PathOf(const std::string& name);

// The offset at which the last part begins. The size of the name if the last part is ".", ".." or a
// root, which are not entries of a folder.
[[nodiscard]] std::size_t StartOfEntry(std::string_view name);

// The offset of the part after the root and after "." at the beginning.
[[nodiscard]] std::size_t StartOfRelative(std::string_view name);

// Whether one of the name's parts is "..".
[[nodiscard]] bool HasParent(std::string_view name);

}  // namespace latchkey::cli
