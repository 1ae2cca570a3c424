#include "cli/records/field_codec.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/hex_digits.h"
#include "cli/platform/base64.h"
#include "cli/utf8.h"
#include "diagnostics/failure_table.h"

namespace latchkey::cli {
namespace {

bool IsSpace(std::uint8_t byte) {
  return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

// Room for `count` more bytes at the end.
std::span<std::uint8_t> Extend(WipedBytes& bytes, std::size_t count) {
  bytes.resize(bytes.size() + count);
  return std::span(bytes).last(count);
}

class HexCodec final : public FieldCodec {
 public:
  FieldFailure Decode(ByteSpan text, WipedBytes& bytes) override {
    text = WithoutPrefix(text);
    FieldFailure failure = DecodeDigits(text, bytes);
    if (!failure || !std::ranges::any_of(text, IsSpace)) return failure;
    WipedBytes digits(text.begin(), text.end());
    std::erase_if(digits, IsSpace);
    return DecodeDigits(WithoutPrefix(digits), bytes);
  }

  FieldFailure Encode(ByteSpan bytes, WipedBytes& text) override {
    for (; !bytes.empty(); bytes = bytes.subspan(std::min(bytes.size(), kStep / 2))) {
      const std::size_t count = std::min(bytes.size(), kStep / 2);
      hex_.encode(bytes.data(), count, digits_.data());
      std::copy_n(digits_.data(), 2 * count, Extend(text, 2 * count).begin());
    }
    return {};
  }

 private:
  static constexpr std::size_t kStep = 512;

  static ByteSpan WithoutPrefix(ByteSpan text) {
    const bool hasPrefix = text.size() >= 2 && ((text[0] == '\\' && text[1] == 'x') ||
                                                (text[0] == '0' && (text[1] | 0x20) == 'x'));
    return text.subspan(hasPrefix ? 2 : 0);
  }

  // Widens digits for the kernel, without a branch for each. Returns whether all are digits.
  [[nodiscard]] bool Widen(ByteSpan text) noexcept {
    unsigned wrong = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
      const unsigned digit = text[i];
      const unsigned letter = digit | 0x20U;
      wrong |= static_cast<unsigned>(digit - '0' > 9U) & static_cast<unsigned>(letter - 'a' > 5U);
      digits_[i] = static_cast<char16_t>(digit);
    }
    return wrong == 0;
  }

  FieldFailure DecodeDigits(ByteSpan text, WipedBytes& bytes) {
    const std::size_t before = bytes.size();
    bool isGood = true;
    for (ByteSpan rest = text; isGood && rest.size() > 1;) {
      const std::size_t count = std::min(rest.size(), kStep) / 2;
      isGood = Widen(rest.first(2 * count));
      hex_.decode(digits_.data(), count, Extend(bytes, count).data());
      rest = rest.subspan(2 * count);
    }
    if (isGood && text.size() % 2 == 0) return {};
    bytes.resize(before);
    if (isGood) return FailureAt(check::kHexLength);
    return Failure{.text = "not a hexadecimal digit in the field",
                   .hint = "--from base64 and --from text read other fields"};
  }

  const HexDigits& hex_ = FastestHexDigits();
  std::array<char16_t, kStep> digits_{};
  const WipeAtExit<decltype(digits_)> wipe_{digits_};
};

class Base64Codec final : public FieldCodec {
 public:
  FieldFailure Decode(ByteSpan text, WipedBytes& bytes) override {
    if (!std::ranges::any_of(text, IsSpace)) return DecodeText(text, bytes);
    WipedBytes characters(text.begin(), text.end());
    std::erase_if(characters, IsSpace);
    return DecodeText(characters, bytes);
  }

  FieldFailure Encode(ByteSpan bytes, WipedBytes& text) override {
    const std::size_t length = Base64Length(bytes.size());
    EncodeBase64(bytes, Extend(text, length + 1).first(length));
    text.pop_back();
    return {};
  }

 private:
  // The libraries differ in what else they take.
  static bool IsWellFormed(ByteSpan text) {
    const auto end = std::ranges::find(text, '=');
    const auto padding = static_cast<std::size_t>(text.end() - end);
    const auto isDigit = [](std::uint8_t byte) {
      const unsigned letter = byte | 0x20U;
      return (letter >= 'a' && letter <= 'z') || (byte >= '0' && byte <= '9') || byte == '+' ||
             byte == '/';
    };
    return text.size() % 4 == 0 && padding <= 2 && (padding < 2 || text.back() == '=') &&
           std::all_of(text.begin(), end, isDigit);
  }

  static FieldFailure DecodeText(ByteSpan text, WipedBytes& bytes) {
    const std::size_t before = bytes.size();
    if (IsWellFormed(text)) {
      const auto length = DecodeBase64(text, Extend(bytes, text.size() / 4 * 3));
      bytes.resize(before + length.value_or(0));
      if (length) return {};
    }
    return Failure{.text = "the field is not Base64",
                   .hint = "--from hex and --from text read other fields"};
  }
};

bool IsUtf8(ByteSpan text) {
  if (IsAscii(text)) return true;
  std::string_view rest(reinterpret_cast<const char*>(text.data()), text.size());
  while (!rest.empty()) {
    const std::size_t length = FirstCharacter(rest).length;
    if (length == 0) return false;
    rest.remove_prefix(length);
  }
  return true;
}

// Text that is the same bytes on both sides.
class SameTextCodec final : public FieldCodec {
 public:
  explicit SameTextCodec(bool takesAny) : takesAny_(takesAny) {}

  FieldFailure Decode(ByteSpan text, WipedBytes& bytes) override {
    return Copy(text, bytes, "the field is not UTF-8");
  }
  FieldFailure Encode(ByteSpan bytes, WipedBytes& text) override {
    return Copy(bytes, text, "the result is not UTF-8");
  }

 private:
  [[nodiscard]] FieldFailure Copy(ByteSpan from, WipedBytes& to, const char* refusal) const {
    if (!takesAny_ && !IsUtf8(from)) {
      return Failure{.text = refusal,
                     .hint =
                         "--text-encoding names the encoding of the encrypted text, for "
                         "example windows-1252"};
    }
    Append(from, to);
    return {};
  }

  bool takesAny_;
};

class TextCodec final : public FieldCodec {
 public:
  explicit TextCodec(const TextEncoding& encoding)
      : encoding_(encoding), sharesAscii_(encoding.Name() != "utf-16le") {}

  FieldFailure Decode(ByteSpan text, WipedBytes& bytes) override {
    return Convert(text, utf8_, encoding_, bytes,
                   "the field is not UTF-8, or has a character that the encoding lacks");
  }
  FieldFailure Encode(ByteSpan bytes, WipedBytes& text) override {
    return Convert(bytes, encoding_, utf8_, text, "the result is not text in the encoding");
  }

 private:
  [[nodiscard]] FieldFailure Convert(ByteSpan text, const TextEncoding& from,
                                     const TextEncoding& to, WipedBytes& result,
                                     const char* refusal) const {
    if (sharesAscii_ && IsAscii(text)) {
      Append(text, result);
      return {};
    }
    const auto converted = Converted(text, from, to);
    if (!converted) return Failure{.text = std::string(refusal) + " (" + encoding_.Name() + ")"};
    Append(*converted, result);
    return {};
  }

  TextEncoding utf8_{"utf-8"};
  TextEncoding encoding_;
  bool sharesAscii_;
};

}  // namespace

const std::vector<std::string>& FieldFormNames() {
  static const std::vector<std::string> names{"hex", "base64", "text"};
  return names;
}

FieldCodecs::FieldCodecs(const std::string& encoding) {
  if (encoding != kAnyBytes) encoding_.emplace(encoding);
}

std::unique_ptr<FieldCodec> FieldCodecs::Make(FieldForm form) const {
  if (form == FieldForm::Hex) return std::make_unique<HexCodec>();
  if (form == FieldForm::Base64) return std::make_unique<Base64Codec>();
  if (!encoding_ || encoding_->Name() == "utf-8") {
    return std::make_unique<SameTextCodec>(!encoding_);
  }
  return std::make_unique<TextCodec>(*encoding_);
}

}  // namespace latchkey::cli
