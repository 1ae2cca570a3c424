// Finds outputs with one name, and outputs that are inputs, among any number of files.
#pragma once

#include <cstdint>
#include <functional>

#include "cli/spool.h"

namespace latchkey::cli {

// What the hash of a fact is made from. Output and FolderOutput: the name of a file's or a folder's
// output. Input: the input's identity (FileState). ExistingOutput: the identity of the file that
// already has the output's name.
enum class FactKind : std::uint64_t { Output, FolderOutput, Input, ExistingOutput };

struct Fact {
  std::uint64_t hash = 0;
  std::uint64_t file = 0;  // a number that the caller chooses
  FactKind kind = FactKind::Output;
};

// Collects facts in a scratch file, and finds conflicts. Used by one thread. Raises FileError.
class NameConflicts {
 public:
  void Add(const Fact& fact) { facts_.Put(fact); }

  // Calls `report` for pairs of facts with equal hashes that conflict: an Output with an Output or
  // a FolderOutput, and an Input with an ExistingOutput. Reports at least one pair if any exists;
  // different values may have equal hashes. Memory is constant: many facts are read several times.
  void Find(const std::function<void(const Fact&, const Fact&)>& report);

 private:
  Spool facts_;
};

}  // namespace latchkey::cli
