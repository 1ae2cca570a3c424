#include "tests/system/secrets/secret_search.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "platform/system_code_page.h"

namespace latchkey::test {
namespace {

constexpr std::size_t kStep = 8;
constexpr std::uint8_t kMask = Secret::kMask;
constexpr std::size_t kBeginning = 4;

// A hash of the first four bytes: the first two alone are zeros in many texts of 16-bit characters
// and in most of the memory.
std::size_t KeyOf(const std::uint8_t* beginning, std::uint32_t mask) {
  std::uint32_t all = 0;
  std::memcpy(&all, beginning, kBeginning);
  return (all ^ mask) * 0x9E3779B1U >> 16U;
}

}  // namespace

class SecretSearch::Comparison final : public MemoryVisitor {
 public:
  explicit Comparison(SecretSearch& search) noexcept : search_(search) {}
  void Visit(std::uintptr_t address, std::span<const std::uint8_t> piece,
             std::size_t owned) override {
    search_.Look(address, piece, owned);
  }

 private:
  SecretSearch& search_;
};

void SecretSearch::AddPart(std::size_t index, std::span<const std::uint8_t> masked, bool wide) {
  Part& part = parts_.at(partCount_++);
  std::copy(masked.begin(), masked.end(), part.masked.begin());
  part.size = masked.size();
  part.wide = wide;
  part.secret = index;
  beginnings_.set(KeyOf(masked.data(), kMask * 0x01010101U));
}

void SecretSearch::Add(std::size_t index, const Secret& secret, std::size_t partCharacters) {
  for (std::size_t at = 0; at + partCharacters <= secret.Size(); at += kStep) {
    std::array<std::uint8_t, kLongPart> bytes{};
    std::array<std::uint8_t, 2 * kLongPart> characters{};
    for (std::size_t i = 0; i < partCharacters; ++i) {
      bytes.at(i) = secret.Masked(at + i);
      const auto character = static_cast<std::uint32_t>(
          platform::SystemCodePage().CharacterOf(static_cast<std::uint8_t>(bytes.at(i) ^ kMask)));
      characters.at(2 * i) = static_cast<std::uint8_t>((character & 0xFFU) ^ kMask);
      characters.at(2 * i + 1) = static_cast<std::uint8_t>((character >> 8U) ^ kMask);
    }
    AddPart(index, std::span(bytes).first(partCharacters), false);
    AddPart(index, std::span(characters).first(2 * partCharacters), true);
  }
}

void SecretSearch::Compare(std::uintptr_t address, std::span<const std::uint8_t> here) {
  for (Part& part : std::span(parts_).first(partCount_)) {
    if (here.size() < part.size) continue;
    const auto equal = [](std::uint8_t masked, std::uint8_t byte) {
      return static_cast<std::uint8_t>(byte ^ kMask) == masked;
    };
    const std::span masked = std::span(part.masked).first(part.size);
    if (std::equal(masked.begin(), masked.end(), here.begin(), equal)) {
      ++part.found;
      part.last = address;
    }
  }
}

void SecretSearch::Look(std::uintptr_t address, std::span<const std::uint8_t> piece,
                        std::size_t owned) {
  bytesSearched_ += owned;
  for (std::size_t at = 0; at < owned && at + kBeginning <= piece.size(); ++at) {
    if (beginnings_[KeyOf(piece.data() + at, 0)]) Compare(address + at, piece.subspan(at));
  }
}

SecretSearch::Copies SecretSearch::Count() {
  bytesSearched_ = 0;
  for (Part& part : parts_) part.found = 0;
  Comparison comparison(*this);
  VisitProcessMemory(comparison);
  // The most frequent part of a form counts; the two forms are different copies.
  std::array<Copies, 2> most{};
  for (const Part& part : std::span(parts_).first(partCount_)) {
    int& form = most.at(part.wide ? 1 : 0).at(part.secret);
    form = std::max(form, part.found);
  }
  Copies copies{};
  for (std::size_t i = 0; i < copies.size(); ++i) copies.at(i) = most[0].at(i) + most[1].at(i);
  return copies;
}

void SecretSearch::PrintPlaces() const {
  for (std::size_t i = 0; i < partCount_; ++i) {
    const Part& part = parts_.at(i);
    if (part.found == 0) continue;
    std::printf("secret %zu, part %zu in %s form: %d found, the last at %zx\n", part.secret, i / 2,
                i % 2 == 0 ? "8-bit" : "16-bit", part.found, static_cast<std::size_t>(part.last));
  }
}

}  // namespace latchkey::test
