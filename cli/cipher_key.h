// The key of latchkey encrypt, decrypt and records.
#pragma once

#include <string>

#include "cli/ciphertext_input.h"
#include "cli/data_form.h"
#include "cli/key_options.h"
#include "cli/password_options.h"
#include "crypto/cipher_sites.h"
#include "crypto/engine/derived_key.h"

namespace latchkey::cli {

// A key and how to decrypt with it.
struct ReadyKey {
  DerivedKey key;
  Spaces spaces = Spaces::Keep;
  std::string hint;  // what to try if decryption fails
};

// Reads the password and derives the key. The password is wiped on return. Sets the hint of
// `ready`. Raises CommandError about `file` if a check of the component fails.
void DeriveKey(ReadyKey& ready, const KeyOptions& settings, const PasswordOptions& password,
               CipherDirection direction, const std::string& file);

// Finds the settings of the ciphertext in the file `input`, which is in `form`, as identify does,
// and derives the key. Reads the whole file. Raises CommandError if the settings are not certain or
// if `settings` names any, FileError if the file cannot be read.
void FindKeyOf(ReadyKey& ready, const KeyOptions& settings, const PasswordOptions& password,
               const std::string& input, DataForm form, bool quiet);

}  // namespace latchkey::cli
