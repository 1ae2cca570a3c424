#include "cli/cipher_key.h"

#include <array>

#include "cli/ciphertext_sample.h"
#include "cli/failure.h"
#include "cli/identification.h"
#include "cli/platform/input_file.h"
#include "cli/platform/stream_name.h"
#include "cli/report.h"

namespace latchkey::cli {
namespace {

// Raises CommandError about `file` if a check failed.
void Require(const CheckSite* failed, const std::string& file) {
  if (failed != nullptr) throw CommandError(FailureAt(*failed, file));
}

bool HasAny(const KeyOptions& key) {
  return !(key.hash + key.cipher + key.provider).empty() || key.keyBits + key.rc2EffectiveBits != 0;
}

CommandError NotCertain(const Candidates& candidates, const std::string& file) {
  return CommandError(Failure{
      .text = candidates.fitting.empty() ? "no settings fit under this password"
                                         : "the settings are not certain",
      .file = file,
      .hint = candidates.fitting.empty()
                  ? "wrong password, or data that was not encrypted"
                  : "'latchkey identify' lists the guesses, also for several files at once; "
                    "choose one with --hash and --cipher"});
}

}  // namespace

void DeriveKey(ReadyKey& ready, const KeyOptions& settings, const PasswordOptions& password,
               CipherDirection direction, const std::string& file) {
  Require(ready.key.Open(SettingsOf(settings), SitesOf(direction)), file);
  const Prompt prompt = direction == CipherDirection::Encrypt ? Prompt::Twice : Prompt::Once;
  const WipedBytes bytes = ReadPassword(password, prompt);
  Require(ready.key.Derive(bytes), file);
  ready.hint = EncodingHint(password, bytes);
}

void FindKeyOf(ReadyKey& ready, const KeyOptions& settings, const PasswordOptions& password,
               const std::string& input, DataForm form, bool quiet) {
  if (InputDescriptor(input)) {
    throw WrongUsage("--auto requires a named file, since it reads the data twice");
  }
  if (HasAny(settings)) {
    throw WrongUsage("--auto finds the settings: leave out those that are given");
  }
  InputFile file(input);
  const SampleBytes sample = ReadSample(file, form, quiet);
  const Identification identification(password);
  const Candidates candidates = identification.Search().Find(std::array{sample.Sample()});
  if (!candidates.IsCertain()) throw NotCertain(candidates, sample.file);
  const Candidate& best = candidates.fitting.front();
  if (password.verbose) Report::Note("latchkey: certain: " + identification.OptionsFor(best));
  const WipedBytes& bytes = identification.FormOf(best).bytes;
  Require(ready.key.Derive(best.settings.front(), bytes, kDecryptionSites), file.Name());
  ready.spaces = best.evidence.restored > 0 ? Spaces::Restore : Spaces::Keep;
}

}  // namespace latchkey::cli
