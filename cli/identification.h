// The search for the settings and the password's encoding that ciphertexts were made with.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "cli/json.h"
#include "cli/password_options.h"
#include "crypto/engine/candidates.h"

namespace latchkey::cli {

// The keys of all settings and of all forms of a password.
class Identification {
 public:
  explicit Identification(const PasswordOptions& options);

  [[nodiscard]] const CandidateSearch& Search() const noexcept { return search_; }

  // The form of the password that the candidate's key is made from.
  [[nodiscard]] const EncodedPassword& FormOf(const Candidate& candidate) const {
    return forms_.at(candidate.password);
  }

  // The options that decrypt with the candidate's key: "--provider base --hash md5 --cipher rc4".
  [[nodiscard]] std::string OptionsFor(const Candidate& candidate) const;

  // The candidate as a result in JSON.
  [[nodiscard]] Json ObjectOf(const Candidate& candidate) const;

 private:
  std::vector<EncodedPassword> forms_;
  CandidateSearch search_;
};

// How sure an answer is, in words.
[[nodiscard]] const char* Confidence(const Candidate& candidate) noexcept;

}  // namespace latchkey::cli
