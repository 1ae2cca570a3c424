#include "cli/many_files.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <utility>

#include "base/checked_arithmetic.h"
#include "base/secure_memory.h"
#include "cli/failure.h"
#include "cli/output_group.h"
#include "cli/platform/disk_flush.h"
#include "crypto/engine/on_threads.h"
#include "platform/processors.h"

namespace latchkey::cli {
namespace {

constexpr std::size_t kMostThreads = 64;

Sync SyncOf(const std::string& word) {
  if (word == "each") return Sync::Each;
  return word == "never" ? Sync::Never : Sync::End;
}

class ManyFiles {
 public:
  ManyFiles(const ManyFilesWork& work, const FilePlan& plan, FileResults& results)
      : work_(work), plan_(plan), results_(results) {}

  void Run();

 private:
  // The pieces of one large file are independent only if a block cipher decrypts it. Otherwise each
  // thread processes whole files.
  enum class Pass { All, Small, Large };

  void RunPass(Pass pass, std::size_t threads, std::size_t threadsOfFile);
  void Process(PlannedFile& file, OutputGroup& group, WipedBytes& buffer, std::size_t threads);
  void Transform(PlannedFile& file, OutputGroup& group, WipedBytes& buffer, std::size_t threads);
  // With 0 threads as one message; nothing if the file is too long for that.
  std::optional<ByteCounts> TransformBytes(InputFile& file, OutputFile& output, WipedBytes& buffer,
                                           std::size_t threads);
  std::optional<ByteCounts> TransformWhole(CiphertextInput& input, const std::string& name,
                                           DataWriter& output, WipedBytes& buffer);
  // True if the output is to be left as it is.
  [[nodiscard]] bool IsSkipped(const PlannedFile& file) const;
  [[nodiscard]] static bool IsIn(Pass pass, const PlannedFile& file);

  const ManyFilesWork& work_;
  const FilePlan& plan_;
  FileResults& results_;
  std::atomic<bool> isStopped_{false};
};

void ManyFiles::Run() {
  const std::size_t most = std::min(platform::UsableProcessors(), kMostThreads);
  const auto threads = static_cast<std::size_t>(std::clamp<std::uint64_t>(plan_.Files(), 1, most));
  const bool splits =
      work_.direction == CipherDirection::Decrypt && work_.key.Settings().HasBlockCipher();
  RunPass(splits && most > 1 ? Pass::Small : Pass::All, threads, 1);
  if (splits && most > 1) RunPass(Pass::Large, 1, most);
}

bool ManyFiles::IsIn(Pass pass, const PlannedFile& file) {
  const bool isLarge = file.kind == PlannedKind::File && file.size > kCipherPiece;
  return pass == Pass::All || isLarge == (pass == Pass::Large);
}

void ManyFiles::RunPass(Pass pass, std::size_t threads, std::size_t threadsOfFile) {
  PlanReader reader(plan_);
  const std::size_t most = std::max<std::size_t>(MostOpenOutputs() / threads, 1);
  RunOnThreads(threads, [&] {
    try {
      OutputGroup group(SyncOf(work_.options.sync), most, results_);
      WipedBytes buffer(kCipherPiece + work_.key.MostAdded() + 1);
      for (PlannedFile file; !isStopped_ && reader.Next(file);) {
        if (IsIn(pass, file)) Process(file, group, buffer, threadsOfFile);
      }
      group.NameAll();
      group.FlushNames();
    } catch (...) {
      isStopped_ = true;
      throw;
    }
  });
}

void ManyFiles::Process(PlannedFile& file, OutputGroup& group, WipedBytes& buffer,
                        std::size_t threads) {
  if (file.kind == PlannedKind::Folder) return;
  if (file.kind != PlannedKind::File) {
    return results_.AddFailed(file, file.WhyNot(work_.options.suffix));
  }
  try {
    if (IsSkipped(file)) return results_.AddSkipped(file);
    Transform(file, group, buffer, threads);
  } catch (const FileError& error) {
    Failure failure = FailureOf(error);
    if (!failure.hint.empty()) {
      failure.hint = "use --skip-existing to leave such outputs as they are, or --force";
    }
    results_.AddFailed(file, failure);
  } catch (const CommandError& error) {
    results_.AddFailed(file, error.Get());
  }
}

// Only regular files are replaced: a link could lead to one of the inputs.
bool ManyFiles::IsSkipped(const PlannedFile& file) const {
  const FileKind existing = StateOf(file.output, Links::Keep).kind;
  if (existing == FileKind::Nothing) return false;
  if (work_.options.skipExisting) return true;
  if (!work_.replaces || existing == FileKind::File) return false;
  throw CommandError(Failure{.text = "cannot replace: not a regular file", .file = file.output});
}

void ManyFiles::Transform(PlannedFile& file, OutputGroup& group, WipedBytes& buffer,
                          std::size_t threads) {
  std::optional<InputFile> input(std::in_place, file.input);
  auto output = std::make_unique<OutputFile>(file.output, work_.replaces, work_.readers);
  const bool isShort = file.size <= kCipherPiece;
  std::optional<ByteCounts> counts;
  if (isShort) counts = TransformBytes(*input, *output, buffer, 0);
  if (isShort && !counts) input.emplace(file.input);  // it has grown
  if (!counts) counts = TransformBytes(*input, *output, buffer, threads);
  if (work_.options.keepTimes) output->SetTimes(input->Times());
  input.reset();
  group.Add(std::move(output), std::move(file), *counts);
}

std::optional<ByteCounts> ManyFiles::TransformBytes(InputFile& file, OutputFile& output,
                                                    WipedBytes& buffer, std::size_t threads) {
  DataReader data(file, work_.from, [&](std::size_t bytes) { results_.Advance(bytes); });
  CiphertextInput input([&](std::span<std::uint8_t> bytes) { return data.Read(bytes); },
                        work_.key.Settings(), work_.spaces);
  DataWriter writer(work_.to, [&](std::span<const std::uint8_t> bytes) { output.Write(bytes); });
  try {
    if (threads == 0) return TransformWhole(input, file.Name(), writer, buffer);
    return work_.stream(file, input, writer, threads);
  } catch (const CommandError& error) {
    const std::string length = input.LengthHint();
    throw CommandError(WithDecryptionHint(error.Get(), length.empty() ? work_.hint : length));
  }
}

std::optional<ByteCounts> ManyFiles::TransformWhole(CiphertextInput& input, const std::string& name,
                                                    DataWriter& output, WipedBytes& buffer) {
  const std::size_t count = input.Read(std::span(buffer).first(kCipherPiece + 1));
  if (count > kCipherPiece) return {};
  auto length = NarrowTo<std::uint32_t>(count);
  if (!work_.key.Transform(work_.direction, buffer, length)) {
    throw CommandError(FailureAt(SitesOf(work_.direction).cipher, name));
  }
  output.Write(std::span(buffer).first(length));
  output.Finish();
  return ByteCounts{count, length};
}

}  // namespace

void RunManyFiles(const ManyFilesWork& work, const FilePlan& plan, FileResults& results) {
  FailBeyondSizeLimit();
  plan.PrepareFolders();
  ManyFiles(work, plan, results).Run();
}

}  // namespace latchkey::cli
