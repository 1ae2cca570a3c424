// Encrypts or decrypts many files on all processors.
#pragma once

#include <functional>
#include <string>

#include "cli/cipher_stream.h"
#include "cli/ciphertext_input.h"
#include "cli/data_form.h"
#include "cli/file_plan.h"
#include "cli/file_results.h"
#include "cli/many_file_options.h"
#include "cli/platform/input_file.h"
#include "cli/platform/output_file.h"
#include "crypto/engine/derived_key.h"

namespace latchkey::cli {

struct ManyFilesWork {
  const ManyFileOptions& options;
  const DerivedKey& key;
  CipherDirection direction = CipherDirection::Encrypt;
  Spaces spaces = Spaces::Keep;
  std::string hint;  // what to try if decryption fails
  Readers readers = Readers::Default;
  bool replaces = false;  // existing outputs
  DataForm from = DataForm::Bytes;
  DataForm to = DataForm::Bytes;
  // Runs the cipher over a file of any length with up to `threads` threads.
  std::function<ByteCounts(InputFile& file, CiphertextInput& input, DataWriter& output,
                           std::size_t threads)>
      stream;
};

// Processes the files of the plan. The failure of a file is reported in the results, and the others
// are processed. Exceptions that concern all files, such as lack of memory, pass through.
void RunManyFiles(const ManyFilesWork& work, const FilePlan& plan, FileResults& results);

}  // namespace latchkey::cli
