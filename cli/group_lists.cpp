#include "cli/group_lists.h"

#include <cstdint>
#include <filesystem>
#include <system_error>

#include "cli/failure.h"
#include "cli/name_parts.h"
#include "cli/platform/file_state.h"
#include "cli/platform/output_file.h"

namespace latchkey::cli {
namespace {

void WriteFile(const std::string& name, const std::string& text) {
  OutputFile file(name, false, Readers::Default);
  file.Write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  file.Commit();
}

void WriteList(const std::string& name, std::span<const std::string> files) {
  std::string text;
  for (const std::string& file : files) text.append(file).push_back('\0');
  WriteFile(name, text);
}

void MakeFolder(const std::string& folder) {
  std::filesystem::path path = PathOf(folder);
  if (!path.has_filename()) path = path.parent_path();  // of a name that ends in a slash
  std::error_code failure;
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), failure);
  if (!failure && !std::filesystem::create_directory(path, failure) && !failure) {
    failure = std::make_error_code(std::errc::file_exists);
  }
  if (failure) throw FileError(failure.value(), "cannot make the folder", folder);
}

void WriteInto(const std::string& folder, std::span<const FileGroup> groups,
               std::span<const std::string> others) {
  std::string options;
  std::size_t number = 0;
  for (const FileGroup& group : groups) {
    const std::string list = Joined(folder, std::to_string(++number));
    WriteList(list, group.files);
    options += group.options + " --files0-from=\"" + list + "\"\n";
  }
  if (!others.empty()) WriteList(Joined(folder, "others"), others);
  WriteFile(Joined(folder, "options"), options);
}

}  // namespace

void RequireNewFolder(const std::string& folder) {
  if (folder.empty()) throw WrongUsage("--lists needs the name of a folder");
  if (folder.find_first_of("\"\n") != std::string::npos) {
    throw WrongUsage("--lists takes no name with a quotation mark or line end");
  }
  if (StateOf(folder, Links::Keep).kind == FileKind::Nothing) return;
  throw WrongUsage("--lists makes a new folder, but this name exists: " + folder);
}

void WriteLists(const std::string& folder, std::span<const FileGroup> groups,
                std::span<const std::string> others) {
  MakeFolder(folder);
  try {
    WriteInto(folder, groups, others);
  } catch (...) {
    std::error_code ignored;
    std::filesystem::remove_all(PathOf(folder), ignored);
    throw;
  }
}

}  // namespace latchkey::cli
