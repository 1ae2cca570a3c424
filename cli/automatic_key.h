// The key of decrypt --auto.
#pragma once

#include "cli/ciphertext_sample.h"
#include "cli/password_options.h"
#include "crypto/engine/derived_key.h"

namespace latchkey::cli {

struct AutomaticKey {
  KeySettings settings;
  WipedBytes password;
  bool restoresSpaces = false;
  std::string options;  // the command-line options that choose this key
};

// Finds the settings and the form of the password that the sample was made with. Raises
// CommandError about the sample's file if no answer is certain.
[[nodiscard]] AutomaticKey FindKey(const SampleBytes& sample, const PasswordOptions& options);

}  // namespace latchkey::cli
