// The parts of a file's name.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace latchkey::cli {

// The name's folder, "." without one, and the rest.
[[nodiscard]] std::string FolderOf(std::string_view name);
[[nodiscard]] std::string_view LastPartOf(std::string_view name);

// Without separators at the end, but at least one character.
[[nodiscard]] std::string_view WithoutEnd(std::string_view name);

// A name in a folder.
[[nodiscard]] std::string Joined(std::string_view folder, std::string_view name);

// The standard library's form of a name in UTF-8.
[[nodiscard]] std::filesystem::path PathOf(const std::string& name);

// Where the last part begins; the end if that is ".", ".." or a root, which name no entry of a
// folder.
[[nodiscard]] std::size_t StartOfEntry(std::string_view name);

// Where the part below the root and below "." begins.
[[nodiscard]] std::size_t StartOfRelative(std::string_view name);

// Whether a part of the name is "..".
[[nodiscard]] bool HasParent(std::string_view name);

}  // namespace latchkey::cli
