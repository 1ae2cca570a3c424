// latchkey identify.
#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <utility>

#include "cli/ciphertext_sample.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/group_lists.h"
#include "cli/identification.h"
#include "cli/identify_answers.h"
#include "crypto/engine/on_threads.h"
#include "platform/processors.h"

namespace latchkey::cli {
namespace {

struct Options {
  PasswordOptions password;
  std::vector<std::string> files;
  std::optional<std::string> lists;  // a folder
  bool records = false;
};

// The answer for this many records is as certain as for more.
constexpr std::size_t kMostRecords = 10'000;

// The memory for the beginnings of all files, and the least for each.
constexpr std::size_t kAllHeads = std::size_t{1} << 24;
constexpr std::size_t kLeastHead = 4096;

std::vector<SampleBytes> ReadAll(const Options& options, const Report& report) {
  std::vector<SampleBytes> samples;
  const std::size_t share = kAllHeads / options.files.size() / kLeastHead * kLeastHead;
  const std::size_t head = std::clamp(share, kLeastHead, CiphertextSample::kHeadLength);
  for (const std::string& file : options.files) {
    if (samples.size() >= kMostRecords && options.records) break;
    InputFile input(file);
    if (options.records) {
      ReadRecords(input, kMostRecords, samples);
    } else {
      samples.push_back(ReadSample(input, DataForm::Bytes, report.IsQuiet(), head));
    }
  }
  return samples;
}

CommandError NothingFits(const std::string& file) {
  return CommandError(Failure{
      .text = "no provider, hash and cipher fit under this password",
      .file = file,
      .hint =
          "try another password; 'latchkey hex -d' converts a ciphertext kept as text to bytes"});
}

ExitStatus ReportSorted(const SortedAnswer& sorted, std::size_t tried, const Options& options,
                        const Report& report) {
  if (options.lists) WriteLists(*options.lists, sorted.Groups(), sorted.NotIdentified());
  report.Text(sorted.Text());
  report.Result(sorted.Object(tried));
  return sorted.IsComplete() ? ExitStatus::Done : ExitStatus::Guessed;
}

// All files are one group if the answer is certain; otherwise all are in "others".
void WriteJointLists(const Identification& identification, const Candidates& joint,
                     const Options& options) {
  if (!options.lists) return;
  if (!joint.IsCertain()) return WriteLists(*options.lists, {}, options.files);
  const FileGroup all{identification.OptionsFor(joint.fitting.front()), options.files};
  WriteLists(*options.lists, std::array{all}, {});
}

using Answers = std::vector<std::optional<Candidate>>;

std::optional<Candidate> BestOf(Candidates candidates) {
  if (candidates.fitting.empty()) return std::nullopt;
  return std::move(candidates.fitting.front());
}

bool IsCertain(const std::optional<Candidate>& answer) { return answer && answer->IsCertain(); }

Answers Each(const CandidateSearch& search, std::span<const CiphertextSample> samples) {
  Answers answers(samples.size());
  std::atomic<std::size_t> next{0};
  RunOnThreads(std::min(platform::UsableProcessors(), samples.size()), [&] {
    for (std::size_t i = next++; i < samples.size(); i = next++) {
      answers[i] = BestOf(search.Find(samples.subspan(i, 1)));
    }
  });
  return answers;
}

// Returns the best candidate for each sample, in order; nothing for a sample that no key fits. Each
// sample is first judged alone under all keys. A sample without a certain answer is then judged
// under only the keys that are certain for other samples; the prior of all keys is divided among
// these.
Answers Sort(const CandidateSearch& search, std::span<const CiphertextSample> samples) {
  Answers answers = Each(search, samples);
  std::set<std::size_t> certain;
  for (const auto& answer : answers) {
    if (IsCertain(answer)) certain.insert(answer->key);
  }
  const std::vector<std::size_t> keys(certain.begin(), certain.end());
  for (std::size_t i = 0; i < samples.size() && !keys.empty(); ++i) {
    if (IsCertain(answers[i])) continue;
    std::optional<Candidate> answer = BestOf(search.Find(samples.subspan(i, 1), keys));
    if (answer) answers[i] = std::move(answer);
  }
  return answers;
}

// Searches for settings that all samples share. If none are certain, judges each sample alone.
ExitStatus Answer(const Identification& identification, std::span<const SampleBytes> samples,
                  const Options& options, const Report& report) {
  std::vector<CiphertextSample> views;
  for (const SampleBytes& sample : samples) views.push_back(sample.Sample());
  const Candidates joint = identification.Search().Find(views);
  if (!joint.IsCertain() && samples.size() > 1) {
    const SortedAnswer sorted(identification, samples, Sort(identification.Search(), views));
    if (sorted.HasGroups()) return ReportSorted(sorted, joint.tried, options, report);
  }
  if (joint.fitting.empty()) {
    throw NothingFits(samples.size() == 1 ? samples.front().file : std::string());
  }
  WriteJointLists(identification, joint, options);
  const JointAnswer answer(identification, joint);
  report.Text(answer.Text());
  report.Result(answer.Object(samples));
  return joint.IsCertain() ? ExitStatus::Done : ExitStatus::Guessed;
}

// The lists are for decrypt, which opens the files by name and refuses to take one twice.
void CheckLists(const Options& options) {
  if (!options.lists) return;
  if (std::ranges::find(options.files, "-") != options.files.end()) {
    throw WrongUsage("--lists needs names of files, not standard input");
  }
  std::vector<std::string> names = options.files;
  std::ranges::sort(names);
  const auto twice = std::ranges::adjacent_find(names);
  if (twice != names.end())
    throw WrongUsage("--lists takes each file once; named twice: " + *twice);
  RequireNewFolder(*options.lists);
}

ExitStatus RunIdentify(const Options& options, const Report& report) {
  CheckLists(options);
  for (const std::string& file : options.files) RequireOwnSource(options.password, file);
  const std::vector<SampleBytes> samples = ReadAll(options, report);
  if (samples.empty()) throw NothingFits(options.files.front());
  const Identification identification(options.password);
  return Answer(identification, samples, options, report);
}

}  // namespace

void AddIdentifyCommand(CommandLine& commandLine) {
  const auto options = std::make_shared<Options>();
  CLI::App& command = commandLine.Add(
      "identify", "Find the provider, hash and cipher that ciphertexts were made with",
      "latchkey identify --password-file secret.txt report.lk",
      [options](Report& report) { return RunIdentify(*options, report); });
  AddPasswordOptions(command, options->password);
  CLI::Option* const records = command.add_flag(
      "--records", options->records, "Read a ciphertext from each line, as hexadecimal digits");
  command
      .add_option(
          "--lists", options->lists,
          "Make this folder: a list of files for each group, for decrypt --files0-from, and "
          "a file named options with a line for each group")
      ->type_name("DIR")
      ->excludes(records);
  command
      .add_option("FILE", options->files,
                  "Read ciphertexts from these files; - is standard input. If no settings fit all, "
                  "sort them")
      ->required()
      ->type_name("");
}

}  // namespace latchkey::cli
