#include "cli/key_options.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/algorithm_names.h"
#include "cli/alternatives.h"
#include "cli/failure.h"

namespace latchkey::cli {
namespace {

void AddWords(CLI::App& command, KeyOptions& options) {
  AddChoice(command, "--hash", options.hash, "Derive the key with this hash", HashNames(),
            Numbers::Taken)
      ->required();
  AddChoice(command, "--cipher", options.cipher, "Use this cipher", CipherNames(), Numbers::Taken)
      ->required();
  AddChoice(command, "--provider", options.provider,
            "Use this provider's key lengths (default: base if it allows the cipher and key "
            "length, otherwise enhanced)",
            ProviderNames());
}

void AddBits(CLI::App& command, KeyOptions& options) {
  command
      .add_option("--key-bits", options.keyBits,
                  "Set the key length of RC2 or RC4, for data of other programs")
      ->check(CLI::Range(40, 128).description(""))
      ->type_name("N");
  command
      .add_option(
          "--rc2-effective-bits", options.rc2EffectiveBits,
          "Set RC2's effective key length, such as 40 for data from the enhanced provider of "
          "Windows 2000 or earlier; the default provider becomes enhanced")
      ->check(CLI::Range(1, 1024).description(""))
      ->type_name("N");
}

ProviderChoice ChoiceOf(const std::string& provider) {
  if (provider.empty()) return ProviderChoice::Any;
  return provider == ProviderName(true) ? ProviderChoice::Enhanced : ProviderChoice::Base;
}

void CheckBits(const KeyOptions& options) {
  if (options.rc2EffectiveBits != 0 && options.cipher != "rc2") {
    throw WrongUsage("--rc2-effective-bits requires --cipher rc2");
  }
  if (options.keyBits == 0) return;
  if (options.cipher != "rc2" && options.cipher != "rc4") {
    throw WrongUsage("--key-bits requires --cipher rc2 or rc4");
  }
  if (options.keyBits % 8 != 0) throw WrongUsage("--key-bits requires a multiple of 8");
}

}  // namespace

void AddKeyOptions(CLI::App& command, KeyOptions& options) {
  AddWords(command, options);
  AddBits(command, options);
}

KeySettings SettingsOf(const KeyOptions& options) {
  CheckBits(options);
  KeySettings settings;
  settings.hash = NumberOf(options.hash, HashNames());
  settings.cipher = NumberOf(options.cipher, CipherNames());
  settings.provider = ChoiceOf(options.provider);
  settings.keyBits = options.keyBits;
  settings.rc2EffectiveBits = options.rc2EffectiveBits;
  return settings;
}

std::string OptionsOf(const KeySettings& settings) {
  std::string options = "--provider " + ProviderName(settings.UsesEnhancedProvider()) + " --hash " +
                        HashName(settings.hash) + " --cipher " + CipherName(settings.cipher);
  if (settings.keyBits != 0) options += " --key-bits " + std::to_string(settings.keyBits);
  if (settings.rc2EffectiveBits != 0) {
    options += " --rc2-effective-bits " + std::to_string(settings.rc2EffectiveBits);
  }
  return options;
}

void AddSettings(Json& result, const KeySettings& settings) {
  result["provider"] = ProviderName(settings.UsesEnhancedProvider());
  result["hash"] = HashName(settings.hash);
  result["cipher"] = CipherName(settings.cipher);
  if (settings.keyBits != 0) result["key_bits"] = settings.keyBits;
  if (settings.rc2EffectiveBits != 0) result["rc2_effective_bits"] = settings.rc2EffectiveBits;
}

}  // namespace latchkey::cli
