#include "cli/file_plan.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <new>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/name_hash.h"
#include "cli/name_parts.h"
#include "cli/platform/file_error.h"
#include "cli/platform/folder_reader.h"
#include "cli/platform/input_file.h"
#include "cli/temporary_name.h"

namespace latchkey::cli {
namespace {

// Longer than any system accepts, and short enough to keep in memory.
constexpr std::size_t kLongestName = std::size_t{1} << 16;
constexpr std::size_t kListPiece = std::size_t{1} << 16;
constexpr std::size_t kRecentFolders = 4096;

std::string NameOf(const std::filesystem::path& path) {
  const std::u8string name = path.u8string();
  return {name.begin(), name.end()};
}

// "-" alone would be a standard stream.
std::string AsFile(std::string name) { return name == "-" ? "./-" : std::move(name); }

// The fields of a record of the plan, except the input's name.
struct RecordHead {
  PlannedKind kind = PlannedKind::File;
  std::int32_t reason = 0;
  std::uint64_t size = 0;
  std::uint64_t kept = 0;
};

std::uint64_t IdentityHash(const FileState& state) {
  return NameHash({reinterpret_cast<const char*>(state.identity.data()), sizeof state.identity});
}

PlannedKind KindFor(const FileState& state) {
  if (state.kind == FileKind::File) return PlannedKind::File;
  if (state.kind == FileKind::Folder) return PlannedKind::IsFolder;
  return state.kind == FileKind::Nothing ? PlannedKind::Unreadable : PlannedKind::NotRegular;
}

// Remembers recent names, so that most names are processed only once.
class RecentNames {
 public:
  // Whether the name is new.
  bool Add(const std::string& name) {
    if (names_.size() >= kRecentFolders) names_.clear();
    return names_.insert(name).second;
  }

 private:
  std::set<std::string> names_;
};

}  // namespace

Failure PlannedFile::WhyNot(const std::string& suffix) const {
  if (kind == PlannedKind::Unreadable) return FailureOf(FileError(reason, "cannot open", input));
  Failure failure;
  failure.file = input;
  if (kind == PlannedKind::IsFolder) {
    failure.text = "this is a folder";
    failure.hint = "use --recursive for the files in it";
  } else if (kind == PlannedKind::NoSuffix) {
    failure.text = "the name does not end in " + suffix;
  } else if (kind == PlannedKind::LeavesFolder) {
    failure.text = "the name leaves the output folder";
  } else {
    failure.text = "not a regular file";
  }
  return failure;
}

FilePlan::FilePlan(const ManyFileOptions& options, CipherDirection direction)
    : options_(options), direction_(direction) {
  if (options.folder) {
    folder_ = WithoutEnd(*options.folder);
    folderState_ = StateOf(folder_, Links::Follow);
    const bool isOther =
        folderState_.kind != FileKind::Nothing && folderState_.kind != FileKind::Folder;
    if (isOther) throw WrongUsage("--output-dir is not a folder: " + folder_);
  }
  for (const std::string& name : options.inputs) AddNamed(name, StartOfEntry(WithoutEnd(name)));
  if (options.list) AddList(*options.list);
  files_.Finish();
  Check();
}

void FilePlan::AddList(const std::string& list) {
  InputFile input(list);  // may be standard input
  std::vector<std::uint8_t> piece(kListPiece);
  std::string name;
  const auto finish = [&] {
    if (name.empty()) throw WrongUsage("an empty name in the list: " + input.Name());
    AddNamed(name, StartOfRelative(name));
    name.clear();
  };
  for (std::size_t count = piece.size(); count == piece.size();) {
    count = input.Read(piece);
    for (const std::uint8_t byte : std::span(piece).first(count)) {
      if (byte == 0) {
        finish();
      } else if (name.size() < kLongestName) {
        name += static_cast<char>(byte);
      } else {
        throw WrongUsage("a name in the list is too long: " + input.Name(),
                         "names are ended by NUL, as 'find -print0' writes them");
      }
    }
  }
  if (!name.empty()) finish();
}

void FilePlan::AddNamed(const std::string& given, std::size_t kept) {
  const std::string name(WithoutEnd(given));
  kept = std::min(kept, name.size());
  const FileState state = StateOf(name, Links::Follow);
  const PlannedKind kind = KindFor(state);
  if (options_.folder && HasParent(std::string_view(name).substr(kept))) {
    Add(PlannedKind::LeavesFolder, name, kept, {});
  } else if (kind == PlannedKind::IsFolder && options_.recursive) {
    AddFolder(name, kept);
    ReadFolders();
  } else if (kind == PlannedKind::File && LacksSuffix(name)) {
    Add(PlannedKind::NoSuffix, name, kept, state);
  } else {
    Add(kind, name, kept, state);
  }
}

void FilePlan::AddFolder(const std::string& name, std::size_t kept) {
  Add(PlannedKind::Folder, name, kept, {});
  folders_.Put(std::uint64_t{kept});
  folders_.PutText(name);
}

// One folder is open at a time; those found in it are read later.
void FilePlan::ReadFolders() {
  SpoolReader reader(folders_, foldersRead_);
  std::uint64_t kept = 0;
  std::string name;
  while (reader.Offset() < folders_.Size()) {
    folders_.Finish();
    if (!reader.Get(kept) || !reader.GetText(name)) break;
    ReadFolder(name, static_cast<std::size_t>(kept));
  }
  foldersRead_ = reader.Offset();
}

void FilePlan::ReadFolder(const std::string& name, std::size_t kept) {
  FolderReader reader(name);
  for (std::string entry; reader.Next(entry);) {
    if (IsTemporaryName(entry)) continue;
    // Below ".", the part that is kept begins after the separator.
    const std::string entryName = Joined(name, entry);
    AddEntry(entryName, kept == name.size() ? entryName.size() - entry.size() : kept);
  }
  if (reader.Reason() == 0) return;
  Add(PlannedKind::Unreadable, name, kept, {.reason = reader.Reason()});
}

void FilePlan::AddEntry(const std::string& name, std::size_t kept) {
  const FileState state = StateOf(name, Links::Keep);
  if (state.kind == FileKind::Folder) {
    const bool isOutput = options_.folder && folderState_.kind == FileKind::Folder &&
                          state.identity == folderState_.identity;
    if (!isOutput) AddFolder(name, kept);
  } else if (state.kind == FileKind::Nothing) {
    Add(PlannedKind::Unreadable, name, kept, state);
  } else if (state.kind != FileKind::File || LeavesOut(name)) {
    ++leftOut_;
  } else {
    Add(PlannedKind::File, name, kept, state);
  }
}

void FilePlan::Add(PlannedKind kind, const std::string& name, std::size_t kept,
                   const FileState& state) {
  const std::uint64_t place = files_.Size();
  files_.Put(RecordHead{kind, state.reason, state.size, kept});
  files_.PutText(name);
  if (kind == PlannedKind::File) {
    ++count_;
    bytes_ += state.size;
  }
  AddFacts({kind, state.reason, state.size, name, OutputOf(kind, name, kept)}, state, place);
}

void FilePlan::AddFacts(const PlannedFile& file, const FileState& state, std::uint64_t place) {
  if (file.kind == PlannedKind::Folder) {
    if (!options_.folder) return;
    conflicts_.Add({NameHash(KeyOf(file.output)), place, FactKind::FolderOutput});
  } else if (file.kind == PlannedKind::File) {
    conflicts_.Add({NameHash(KeyOf(file.output)), place, FactKind::Output});
    conflicts_.Add({IdentityHash(state), place, FactKind::Input});
    const FileState existing = StateOf(file.output, Links::Follow);
    if (existing.kind == FileKind::Nothing) return;
    conflicts_.Add({IdentityHash(existing), place, FactKind::ExistingOutput});
  }
}

void FilePlan::Check() {
  const auto fileOf = [&](const Fact& fact) {
    PlannedFile file;
    static_cast<void>(PlanReader(*this, fact.file).Next(file));
    return file;
  };
  conflicts_.Find([&](const Fact& left, const Fact& right) {
    const PlannedFile one = fileOf(left);
    const PlannedFile other = fileOf(right);
    if (left.kind == FactKind::Input) {
      throw WrongUsage("an output is one of the inputs: " + other.output);
    }
    if (KeyOf(one.output) != KeyOf(other.output)) return;
    throw WrongUsage("two inputs have the output " + one.output + ": " + one.input + " and " +
                     other.input);
  });
}

bool FilePlan::LacksSuffix(std::string_view name) const {
  if (direction_ == CipherDirection::Encrypt || options_.suffix.empty()) return false;
  const std::string_view last = LastPartOf(name);
  return !last.ends_with(options_.suffix) || last.size() == options_.suffix.size();
}

// Encryption leaves out names with the suffix: in a folder, they are outputs of an earlier run.
bool FilePlan::LeavesOut(std::string_view name) const {
  const bool adds = direction_ == CipherDirection::Encrypt && !options_.suffix.empty();
  return LacksSuffix(name) || (adds && name.ends_with(options_.suffix));
}

std::string FilePlan::OutputOf(PlannedKind kind, const std::string& name, std::size_t kept) const {
  std::string output = options_.folder ? Joined(folder_, name.substr(kept)) : name;
  if (kind != PlannedKind::File) return output;
  if (direction_ == CipherDirection::Encrypt) return output + options_.suffix;
  output.resize(output.size() - options_.suffix.size());
  return AsFile(std::move(output));
}

std::string FilePlan::KeyOf(const std::string& output) {
  std::string parent = FolderOf(output);
  if (parent != lastParent_ || lastTrueParent_.empty()) {
    std::error_code failure;
    const auto known = std::filesystem::weakly_canonical(PathOf(parent), failure);
    if (failure == std::errc::not_enough_memory) throw std::bad_alloc();
    lastTrueParent_ = failure ? parent : NameOf(known);
    lastParent_ = std::move(parent);
  }
  return FoldedCase(Joined(lastTrueParent_, LastPartOf(output)));
}

void FilePlan::PrepareFolders() const {
  PlanReader reader(*this);
  RecentNames prepared;
  for (PlannedFile file; reader.Next(file);) {
    if (file.kind > PlannedKind::Folder) continue;
    const bool isFolder = file.kind == PlannedKind::Folder;
    const std::string folder = isFolder ? file.output : FolderOf(file.output);
    if (!prepared.Add(folder)) continue;
    std::error_code failure;
    if (options_.folder) std::filesystem::create_directories(PathOf(folder), failure);
    RemoveLeftovers(folder);
  }
}

bool PlanReader::Next(PlannedFile& file) {
  const std::lock_guard lock(mutex_);
  RecordHead head;
  if (!reader_.Get(head) || !reader_.GetText(file.input)) return false;
  file.kind = head.kind;
  file.reason = head.reason;
  file.size = head.size;
  file.output = plan_.OutputOf(head.kind, file.input, static_cast<std::size_t>(head.kept));
  file.input = AsFile(std::move(file.input));
  return true;
}

}  // namespace latchkey::cli
