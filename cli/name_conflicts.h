// Finds outputs with one name, and outputs that are inputs, among any number of files.
#pragma once

#include <cstdint>
#include <functional>

#include "cli/spool.h"

namespace latchkey::cli {

// What is hashed. Output and FolderOutput: the name of a file's or a folder's output. Input: the
// input's identity (FileState). ExistingOutput: the identity of the file that already has the
// output's name.
enum class FactKind : std::uint64_t { Output, FolderOutput, Input, ExistingOutput };

struct Fact {
  std::uint64_t hash = 0;
  std::uint64_t file = 0;  // a number that the caller chooses
  FactKind kind = FactKind::Output;
};

class NameConflicts {
 public:
  void Add(const Fact& fact) { facts_.Put(fact); }

  // Calls `report` for pairs of facts that contradict each other if equal hashes mean equal values,
  // at least one if there are any: Output and Output or FolderOutput, Input and ExistingOutput.
  // Memory is constant: the facts are read several times if there are many.
  void Find(const std::function<void(const Fact&, const Fact&)>& report);

 private:
  Spool facts_;
};

}  // namespace latchkey::cli
