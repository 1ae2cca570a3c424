#include "cli/records/block_transform.h"

#include <utility>

#include "crypto/text_codec.h"

namespace latchkey::cli {

RecordCounts& RecordCounts::operator+=(const RecordCounts& other) noexcept {
  records += other.records;
  changed += other.changed;
  failed += other.failed;
  completed += other.completed;
  return *this;
}

void BlockTransform::Run(ByteSpan block, std::uint64_t firstLine, BlockResult& result) {
  records_.clear();
  tools_.format->Scan(block, records_);
  DecodeFields(block);
  tools_.transform->Run({offsets_.size() - 1, Offsets(offsets_.data()), values_}, column_);
  WriteRecords(block, firstLine, result);
}

void BlockTransform::DecodeFields(ByteSpan block) {
  valueOf_.assign(records_.size(), kNoValue);
  undecoded_.clear();
  values_.clear();
  offsets_.assign(1, 0);
  missing_.clear();
  for (std::size_t i = 0; i < records_.size(); ++i) {
    const ScannedRecord& record = records_[i];
    if (record.state == FieldState::Nothing) continue;
    FieldFailure failure = DecodeField(block, record);
    if (failure) {
      undecoded_.emplace_back(i, std::move(*failure));
    } else if (offsets_.back() != std::ssize(values_) || tools_.transform->TakesEmpty()) {
      valueOf_[i] = missing_.size();
      AddValue();
    }
  }
}

FieldFailure BlockTransform::DecodeField(ByteSpan block, const ScannedRecord& record) {
  if (record.state == FieldState::Bad) return Failure{.text = record.fault};
  const ByteSpan source = record.source.Of(block);
  if (!record.isEscaped) return tools_.from->Decode(source, values_);
  unescaped_.clear();
  if (!tools_.format->Unescape(source, unescaped_)) {
    return Failure{.text = "a wrong escape in the field"};
  }
  return tools_.from->Decode(unescaped_, values_);
}

// The bytes after the last offset.
void BlockTransform::AddValue() {
  const auto length = values_.size() - static_cast<std::size_t>(offsets_.back());
  const std::size_t missing = tools_.transform->MissingBytes(length);
  values_.insert(values_.end(), missing, kSpace);
  missing_.push_back(static_cast<std::uint8_t>(missing));
  offsets_.push_back(std::ssize(values_));
}

void BlockTransform::WriteRecords(ByteSpan block, std::uint64_t firstLine, BlockResult& result) {
  result.text.clear();
  result.noted.clear();
  result.counts = {};
  result.isStopped = false;
  nextUndecoded_ = 0;
  for (std::size_t i = 0; i < records_.size() && !result.isStopped; ++i) {
    ++result.counts.records;
    FieldFailure failure = WriteRecord(block, i, result);
    const std::size_t missing = valueOf_[i] == kNoValue ? 0 : missing_[valueOf_[i]];
    if (!failure && missing == 0) continue;
    ++(failure ? result.counts.failed : result.counts.completed);
    result.isStopped = failure && tools_.onError == OnError::Stop;
    NotedRecord& noted = result.noted.emplace_back();
    noted.line = firstLine + records_[i].line;
    noted.missingBytes = missing;
    noted.failed = failure.has_value();
    if (!failure) continue;
    noted.failure = std::move(*failure);
    WriteFailed(block, records_[i], result.text);
  }
}

// Writes nothing if the record fails.
FieldFailure BlockTransform::WriteRecord(ByteSpan block, std::size_t number, BlockResult& result) {
  const ScannedRecord& record = records_[number];
  FieldFailure failure = FailureOf(number);
  if (failure) return failure;
  if (valueOf_[number] == kNoValue) {
    WriteUnchanged(block, record, result.text);
    return {};
  }
  encoded_.clear();
  failure = tools_.to->Encode(column_[valueOf_[number]], encoded_);
  if (failure) return failure;
  const std::size_t before = result.text.size();
  Append(RangeOf(record.all.begin, record.target.begin).Of(block), result.text);
  if (!tools_.format->Write(encoded_, record, result.text)) {
    result.text.resize(before);
    return Failure{.text = "the format cannot hold the result"};
  }
  Append(RangeOf(record.target.end, record.all.end).Of(block), result.text);
  ++result.counts.changed;
  return {};
}

FieldFailure BlockTransform::FailureOf(std::size_t number) {
  if (nextUndecoded_ < undecoded_.size() && undecoded_[nextUndecoded_].first == number) {
    return std::move(undecoded_[nextUndecoded_++].second);
  }
  const std::size_t value = valueOf_[number];
  if (value == kNoValue || column_.statuses[value] == 0) return {};
  return tools_.transform->FailureOfValue();
}

void BlockTransform::WriteUnchanged(ByteSpan block, const ScannedRecord& record,
                                    WipedBytes& text) const {
  if (!record.isAdded || !tools_.format->AddsToEvery()) {
    Append(record.all.Of(block), text);
    return;
  }
  Append(RangeOf(record.all.begin, record.target.begin).Of(block), text);
  tools_.format->WriteNothing(record, text);
  Append(RangeOf(record.target.end, record.all.end).Of(block), text);
}

void BlockTransform::WriteFailed(ByteSpan block, const ScannedRecord& record,
                                 WipedBytes& text) const {
  if (tools_.onError == OnError::Keep) WriteUnchanged(block, record, text);
  if (tools_.onError != OnError::Null) return;
  Append(RangeOf(record.all.begin, record.target.begin).Of(block), text);
  tools_.format->WriteNothing(record, text);
  Append(RangeOf(record.target.end, record.all.end).Of(block), text);
}

}  // namespace latchkey::cli
