// The options that choose what a key is derived from, besides the password.
#pragma once

#include <cstdint>
#include <string>

#include "cli/json.h"
#include "crypto/engine/derived_key.h"

namespace CLI {
class App;
}

namespace latchkey::cli {

struct KeyOptions {
  std::string hash;
  std::string cipher;
  std::string provider;  // empty: any
  std::uint32_t keyBits = 0;
  std::uint32_t rc2EffectiveBits = 0;
};

// Adds --hash, --cipher, --provider, --key-bits and --rc2-effective-bits.
void AddKeyOptions(CLI::App& command, KeyOptions& options);

// Raises CommandError (wrong usage) for options that contradict each other.
[[nodiscard]] KeySettings SettingsOf(const KeyOptions& options);

// The options that choose these settings, such as "--provider base --hash md5 --cipher rc4".
[[nodiscard]] std::string OptionsOf(const KeySettings& settings);

// Adds the settings to a result in JSON.
void AddSettings(Json& result, const KeySettings& settings);

}  // namespace latchkey::cli
