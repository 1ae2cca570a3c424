// The digests of the files that latchkey hash reads.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "cli/file_digest.h"
#include "cli/json.h"
#include "cli/platform/file_error.h"
#include "cli/report.h"
#include "crypto/open_provider.h"

namespace latchkey::cli {

// Collects the results of files, and the failures, which do not end the command.
class HashRun {
 public:
  // With `silent`, failures are only in the JSON and in Failed. Raises CommandError without a
  // provider.
  HashRun(std::int16_t hash, bool silent, const Report& report);

  // Raises FileError if the file cannot be read.
  [[nodiscard]] std::string DigestOf(const std::string& file);

  // Adds the result of a file to the JSON.
  void Add(Json result) { results_.push_back(std::move(result)); }

  // Make Failed return true. The first also reports the failure, in the JSON or as a line.
  void Fail(const std::string& file, const Failure& failure);
  void Fail() noexcept { failed_ = true; }

  [[nodiscard]] std::int16_t Hash() const noexcept { return hash_; }
  [[nodiscard]] bool Failed() const noexcept { return failed_; }
  [[nodiscard]] const Json& Results() const noexcept { return results_; }

 private:
  const std::int16_t hash_;
  const bool silent_;
  const Report& report_;
  UniqueContext context_;
  Json results_ = Json::array();
  bool failed_ = false;
};

}  // namespace latchkey::cli
