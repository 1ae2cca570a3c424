#include "cli/records/field_codec.h"

#include <algorithm>
#include <utility>

#include "cli/base64_text.h"
#include "cli/hex_text.h"
#include "cli/utf8.h"
#include "diagnostics/failure_table.h"

namespace latchkey::cli {
namespace {

// Decodes a field that the fast path of a codec refuses, because it has white space or is
// malformed. For a malformed field, returns the component's failure or, without one, `wrong`, which
// contains no data.
template <class Reader>
FieldFailure ReadField(ByteSpan text, WipedBytes& bytes, const Failure& wrong) {
  try {
    Reader reader;
    const WipedBytes decoded = reader.Read(text, {});
    reader.Finish({});
    Append(decoded, bytes);
    return {};
  } catch (const CommandError& error) {
    return error.Get().location != 0 ? error.Get() : wrong;
  }
}

class HexCodec final : public FieldCodec {
 public:
  FieldFailure Decode(ByteSpan text, WipedBytes& bytes) override {
    const std::size_t before = bytes.size();
    const ByteSpan digits = WithoutPrefix(text);
    if (digits.size() % 2 == 0 && AppendBytes(converter_, digits, bytes)) return {};
    bytes.resize(before);
    return ReadField<HexReader>(text, bytes,
                                {.text = "not a hexadecimal digit in the field",
                                 .hint = "--from base64 and --from text read other fields"});
  }

  FieldFailure Encode(ByteSpan bytes, WipedBytes& text) override {
    AppendDigits(converter_, bytes, text);
    return {};
  }

 private:
  static ByteSpan WithoutPrefix(ByteSpan text) {
    const bool hasPrefix = text.size() >= 2 && ((text[0] == '\\' && text[1] == 'x') ||
                                                (text[0] == '0' && (text[1] | 0x20) == 'x'));
    return text.subspan(hasPrefix ? 2 : 0);
  }

  HexConverter converter_;
};

class Base64Codec final : public FieldCodec {
 public:
  FieldFailure Decode(ByteSpan text, WipedBytes& bytes) override {
    if (DecodeBase64Text(text, bytes)) return {};
    return ReadField<Base64Reader>(text, bytes,
                                   {.text = "the field is not Base64",
                                    .hint = "--from hex and --from text read other fields"});
  }

  FieldFailure Encode(ByteSpan bytes, WipedBytes& text) override {
    EncodeBase64Text(bytes, text);
    return {};
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
  if (encoding != kBytesEncoding) encoding_.emplace(encoding);
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
