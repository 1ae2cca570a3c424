#include "cli/cipher_key.h"

#include "cli/automatic_key.h"
#include "cli/failure.h"
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
  const AutomaticKey found = FindKey(ReadSample(file, form, quiet), password);
  if (password.verbose) Report::Note("latchkey: certain: " + found.options);
  Require(ready.key.Derive(found.settings, found.password, kDecryptionSites), file.Name());
  ready.spaces = found.restoresSpaces ? Spaces::Restore : Spaces::Keep;
}

}  // namespace latchkey::cli
