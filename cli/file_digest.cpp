#include "cli/file_digest.h"

#include <algorithm>
#include <utility>

#include "cli/algorithm_names.h"
#include "cli/failure.h"
#include "cli/hex_text.h"
#include "crypto/algorithms.h"
#include "crypto/message_digest.h"

namespace latchkey::cli {

namespace {

void Require(bool done, const InputFile& input) {
  if (!done) throw CommandError(FailureAt(check::kHashProvider, input.Name()));
}

}  // namespace

std::string FileDigest(const UniqueContext& context, std::int16_t hash, InputFile& input,
                       Progress& progress) {
  const HashAlgorithm algorithm = FindHashAlgorithm(hash);
  MessageDigest digest;
  Require(digest.Begin(context, algorithm.id), input);
  WipedBytes piece(std::size_t{1} << 18);
  for (std::size_t count = piece.size(); count == piece.size();) {
    count = input.Read(piece);
    Require(digest.Add(std::span(piece).first(count)), input);
    progress.Advance(count);
  }
  WipedBytes value(static_cast<std::size_t>(algorithm.length));
  Require(digest.Read(value), input);
  return LowerHexOf(value);
}

ChecksumForm ChecksumFormOf(std::int16_t hash) {
  std::string tag = HashName(hash);
  for (char& letter : tag) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  return {std::move(tag), static_cast<std::size_t>(FindHashAlgorithm(hash).length) * 2};
}

}  // namespace latchkey::cli
