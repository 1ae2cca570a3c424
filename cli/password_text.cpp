#include "cli/password_text.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cli/failure.h"

namespace latchkey::cli {
namespace {

constexpr char16_t kMark = 0xFEFF;

// Code pages in the order of their likelihood: the first with all characters of a text is guessed.
constexpr std::array<const char*, 14> kByLikelihood{
    "windows-1252", "windows-1250", "windows-1251", "windows-1253", "windows-1254",
    "windows-1255", "windows-1256", "windows-1257", "windows-1258", "windows-874",
    "windows-932",  "windows-936",  "windows-949",  "windows-950"};

WipedBytes Swapped(std::span<const std::uint8_t> bytes) {
  WipedBytes swapped(bytes.begin(), bytes.end());
  for (std::size_t i = 0; i + 1 < swapped.size(); i += 2) std::swap(swapped[i], swapped[i + 1]);
  return swapped;
}

// A code page of the list that this system lacks has no characters.
std::optional<WipedBytes> Encoded(const WipedText& text, const std::string& name) {
  try {
    return TextEncoding(name).Encode(text);
  } catch (const CommandError&) {
    return std::nullopt;
  }
}

void AddForm(std::vector<EncodedPassword>& forms, EncodedPassword form) {
  const auto isSame = [&](const EncodedPassword& other) { return other.bytes == form.bytes; };
  if (std::ranges::none_of(forms, isSame)) forms.push_back(std::move(form));
}

}  // namespace

std::optional<WipedText> TextOfFile(std::span<const std::uint8_t> bytes) {
  std::optional<WipedText> text;
  if (BeginsWith(bytes, kUtf16Mark)) {
    text = TextEncoding("utf-16le").Decode(bytes);
  } else if (BeginsWith(bytes, kSwappedUtf16Mark)) {
    text = TextEncoding("utf-16le").Decode(Swapped(bytes));
  } else {
    text = TextEncoding("utf-8").Decode(bytes);
  }
  if (text && !text->empty() && text->front() == kMark) text->erase(text->begin());
  return text;
}

std::vector<EncodedPassword> AllForms(const WipedBytes& password,
                                      const std::optional<WipedText>& text) {
  std::vector<EncodedPassword> forms;
  const bool isAscii = IsAscii(password);
  if (isAscii) forms.push_back({password, kBytesEncoding});
  std::vector<std::string> names;
  if (text && !isAscii) names.assign(kByLikelihood.begin(), kByLikelihood.end());
  if (text) names.insert(names.end(), {"utf-8", "utf-16le"});
  for (const std::string& name : names) {
    std::optional<WipedBytes> bytes = Encoded(*text, name);
    if (bytes) AddForm(forms, {std::move(*bytes), name});
  }
  AddForm(forms, {password, kBytesEncoding});
  return forms;
}

void AppendNul(EncodedPassword& form) {
  form.bytes.insert(form.bytes.end(), form.encoding == "utf-16le" ? 2 : 1, 0);
  form.hasNul = true;
}

void AddFormsWithNul(std::vector<EncodedPassword>& forms) {
  const std::vector<EncodedPassword> plain = forms;
  for (EncodedPassword form : plain) {
    AppendNul(form);
    AddForm(forms, std::move(form));
  }
}

std::optional<std::string> LikelyPage(std::span<const std::uint8_t> password) {
  const std::optional<WipedText> text = TextOfFile(password);
  if (!text) return std::nullopt;
  for (const char* const name : kByLikelihood) {
    if (Encoded(*text, name)) return name;
  }
  return "utf-16le";
}

}  // namespace latchkey::cli
