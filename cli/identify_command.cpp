// latchkey identify.
#include <array>
#include <cstdio>
#include <memory>

#include "cli/algorithm_names.h"
#include "cli/ciphertext_sample.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/key_options.h"
#include "cli/password_options.h"

namespace latchkey::cli {
namespace {

struct Options {
  PasswordOptions password;
  std::string file;
};

const char* Confidence(double probability) {
  if (probability >= 0.9999) return "practically certain";
  if (probability >= 0.99) return "very likely";
  if (probability >= 0.9) return "likely";
  if (probability >= 0.5) return "more likely than not";
  return "no more than a guess";
}

std::string Percent(double probability) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%8.4f %%", probability * 100);
  return text.data();
}

std::string Providers(const Candidate& candidate, const char* separator) {
  std::string names;
  for (const KeySettings& settings : candidate.settings) {
    names += (names.empty() ? "" : separator) + ProviderName(settings.UsesEnhancedProvider());
  }
  return names;
}

std::string Padded(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size()), ' ');
  return text + "  ";
}

std::string Line(const Candidate& candidate) {
  const KeySettings& settings = candidate.settings.front();
  const std::string bits = settings.rc2EffectiveBits != 0
                               ? ", " + std::to_string(settings.rc2EffectiveBits) + " bits"
                               : std::string();
  return Padded(Percent(candidate.probability), 11) + Padded(Providers(candidate, ", "), 14) +
         Padded(HashName(settings.hash), 4) + Padded(CipherName(settings.cipher) + bits, 12) +
         (candidate.padding ? std::to_string(*candidate.padding) : "-") + "\n";
}

void PrintTable(const Candidates& candidates, const Report& report) {
  const Candidate& best = candidates.fitting.front();
  std::string text = "PROBABILITY  PROVIDER        HASH  CIPHER        PADDING\n";
  for (const Candidate& candidate : candidates.fitting) text += Line(candidate);
  text += Padded(Percent(candidates.noneProbability), 11) + "none of the " +
          std::to_string(candidates.tried) + " keys tried\n";
  text +=
      std::string(Confidence(best.probability)) + ": " + OptionsOf(best.settings.front()) + "\n";
  report.Text(text);
}

Json ObjectOf(const Candidate& candidate) {
  const KeySettings& settings = candidate.settings.front();
  Json providers = Json::array();
  for (const KeySettings& each : candidate.settings) {
    providers.push_back(ProviderName(each.UsesEnhancedProvider()));
  }
  Json object{{"providers", providers},
              {"hash", HashName(settings.hash)},
              {"cipher", CipherName(settings.cipher)}};
  if (settings.rc2EffectiveBits != 0) object["rc2_effective_bits"] = settings.rc2EffectiveBits;
  if (candidate.padding) object["padding"] = *candidate.padding;
  object["evidence_bits"] = candidate.evidenceBits;
  object["probability"] = candidate.probability;
  object["confidence"] = Confidence(candidate.probability);
  return object;
}

Json Result(const Options& options, const SampleBytes& sample, const Candidates& candidates) {
  Json list = Json::array();
  for (const Candidate& candidate : candidates.fitting) list.push_back(ObjectOf(candidate));
  return {{"file", options.file},
          {"bytes", sample.length},
          {"keys_tried", candidates.tried},
          {"candidates", list},
          {"none_probability", candidates.noneProbability}};
}

CommandError NothingFits(const std::string& file) {
  Failure failure;
  failure.text = "no provider, hash and cipher fit under this password";
  failure.file = file;
  failure.hint =
      "try another password; 'latchkey hex -d' converts a ciphertext kept as text to bytes";
  return CommandError(failure);
}

ExitStatus RunIdentify(const Options& options, const Report& report) {
  RequireOwnSource(options.password, options.file);
  InputFile input(options.file);
  const SampleBytes sample = ReadSample(input, report.IsQuiet());
  const Candidates candidates =
      FindCandidates(std::array{sample.Sample()}, ReadPassword(options.password, Prompt::Once));
  if (candidates.fitting.empty()) throw NothingFits(input.Name());
  PrintTable(candidates, report);
  report.Result(Result(options, sample, candidates));
  return ExitStatus::Done;
}

}  // namespace

void AddIdentifyCommand(CommandLine& commandLine) {
  const auto options = std::make_shared<Options>();
  CLI::App& command = commandLine.Add(
      "identify", "Find the provider, hash and cipher that a ciphertext was made with",
      "latchkey identify --password-file secret.txt report.lk",
      [options](Report& report) { return RunIdentify(*options, report); });
  AddPasswordOptions(command, options->password);
  command
      .add_option("FILE", options->file, "Read the ciphertext from this file; - is standard input")
      ->required()
      ->type_name("");
}

}  // namespace latchkey::cli
