#include "cli/data_form.h"

#include <algorithm>
#include <utility>

#include "cli/base64_text.h"
#include "cli/hex_text.h"

namespace latchkey::cli {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 16;

std::unique_ptr<TextReader> ReaderOf(DataForm form) {
  if (form == DataForm::Hex) return std::make_unique<HexReader>();
  if (form == DataForm::Base64) return std::make_unique<Base64Reader>();
  return nullptr;
}

std::unique_ptr<TextWriter> WriterOf(DataForm form) {
  if (form == DataForm::Hex) return std::make_unique<HexWriter>();
  if (form == DataForm::Base64) return std::make_unique<Base64Writer>();
  return nullptr;
}

}  // namespace

const std::vector<std::string>& TextFormNames() {
  static const std::vector<std::string> names{"hex", "base64"};
  return names;
}

DataForm DataFormOf(const std::string& name) {
  if (name.empty()) return DataForm::Bytes;
  return name == TextFormNames().front() ? DataForm::Hex : DataForm::Base64;
}

DataReader::DataReader(InputFile& file, DataForm form, std::function<void(std::size_t)> advance)
    : file_(file), advance_(std::move(advance)), reader_(ReaderOf(form)) {}

std::size_t DataReader::ReadFile(std::span<std::uint8_t> bytes) {
  const std::size_t count = file_.Read(bytes);
  advance_(count);
  return count;
}

void DataReader::Decode() {
  text_.resize(kPiece);
  const std::size_t length = ReadFile(text_);
  decoded_ = reader_->Read(std::span(text_).first(length), file_.Name());
  given_ = 0;
  hasEnded_ = length < text_.size();
  if (hasEnded_) reader_->Finish(file_.Name());
}

std::size_t DataReader::Read(std::span<std::uint8_t> bytes) {
  if (reader_ == nullptr) return ReadFile(bytes);
  std::size_t count = 0;
  for (;;) {
    const std::size_t more = std::min(bytes.size() - count, decoded_.size() - given_);
    std::copy_n(decoded_.begin() + static_cast<std::ptrdiff_t>(given_), more,
                bytes.begin() + static_cast<std::ptrdiff_t>(count));
    count += more;
    given_ += more;
    if (count == bytes.size() || hasEnded_) return count;
    Decode();
  }
}

DataWriter::DataWriter(DataForm form, std::function<void(std::span<const std::uint8_t>)> write)
    : write_(std::move(write)), writer_(WriterOf(form)) {}

void DataWriter::Write(std::span<const std::uint8_t> bytes) {
  if (writer_ == nullptr) return write_(bytes);
  while (!bytes.empty()) {
    const auto piece = bytes.first(std::min(bytes.size(), kPiece));
    writer_->Write(piece, text_);
    write_(text_);
    text_.clear();
    bytes = bytes.subspan(piece.size());
  }
}

void DataWriter::Finish() {
  if (writer_ == nullptr) return;
  writer_->Finish(text_);
  write_(text_);
  text_.clear();
}

}  // namespace latchkey::cli
