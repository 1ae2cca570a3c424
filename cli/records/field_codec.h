// Conversion between the text of a field and the bytes that it means.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/records/record_format.h"
#include "cli/text_encoding.h"

namespace latchkey::cli {

enum class FieldForm { Hex, Base64, Text };

[[nodiscard]] const std::vector<std::string>& FieldFormNames();  // hex, base64, text

// Why a field cannot be converted; nothing for success. Never contains the field's text.
using FieldFailure = std::optional<Failure>;

// Converts one field after another. Used by one thread.
class FieldCodec {
 public:
  FieldCodec() = default;
  FieldCodec(const FieldCodec&) = delete;
  FieldCodec& operator=(const FieldCodec&) = delete;
  virtual ~FieldCodec() = default;

  // Append the bytes of a text, and the text of bytes. After a failure nothing is appended.
  [[nodiscard]] virtual FieldFailure Decode(ByteSpan text, WipedBytes& bytes) = 0;
  [[nodiscard]] virtual FieldFailure Encode(ByteSpan bytes, WipedBytes& text) = 0;
};

// Makes codecs, which share the tables of an encoding.
class FieldCodecs {
 public:
  // A name of TextEncodingNames, or kBytesEncoding. Raises CommandError if the system lacks it.
  explicit FieldCodecs(const std::string& encoding);

  // Hexadecimal: reads what HexReader reads; writes upper case. Base64: reads what Base64Reader
  // reads; writes padding. Text: UTF-8 in the field, the encoding in the bytes; with kBytesEncoding
  // the bytes are unchanged.
  [[nodiscard]] std::unique_ptr<FieldCodec> Make(FieldForm form) const;

 private:
  std::optional<TextEncoding> encoding_;  // nothing: any bytes
};

}  // namespace latchkey::cli
