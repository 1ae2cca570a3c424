// The bytes that the text of a field means.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/records/record_format.h"

namespace latchkey::cli {

enum class FieldForm { Hex, Base64, Text };

[[nodiscard]] const std::vector<std::string>& FieldFormNames();  // hex, base64, text

// Nothing, or why a field cannot be converted. Never contains the field.
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

// Hexadecimal: reads digits of either case, after \x or 0x or nothing; writes upper case. Base64:
// with padding. Both skip spaces, tabs and line ends. Text: UTF-8 in the field, `encoding` in the
// bytes: a name of TextEncodingNames, or kAnyBytes for the bytes as they are.
[[nodiscard]] std::unique_ptr<FieldCodec> MakeFieldCodec(FieldForm form,
                                                         const std::string& encoding);

inline constexpr const char* kAnyBytes = "bytes";

}  // namespace latchkey::cli
