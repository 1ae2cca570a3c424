// Runs of records in memory, for tests and fuzzers.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/records/records_pipeline.h"

namespace latchkey::test {

// Gives each value back, or reversed.
class PlainTransform final : public cli::ColumnTransform {
 public:
  explicit PlainTransform(bool reverses) : reverses_(reverses) {}

  void Run(const Records& values, cli::ColumnResult& result) override {
    result.Renew(values.count, values.data.size());
    std::ranges::copy(values.data, result.data.data());
    for (std::size_t i = 0; i < values.count; ++i) {
      result.offsets[i + 1] = values.offsets.Get(i + 1);
      if (!reverses_) continue;
      const auto begin = static_cast<std::ptrdiff_t>(result.offsets[i]);
      const auto end = static_cast<std::ptrdiff_t>(result.offsets[i + 1]);
      std::reverse(result.data.data() + begin, result.data.data() + end);
    }
  }

  [[nodiscard]] cli::Failure FailureOfValue() const override { return {}; }

 private:
  bool reverses_;
};

struct RecordRun {
  std::string output;
  std::vector<std::pair<std::uint64_t, std::string>> failures;  // line and text
  cli::RecordCounts counts;
};

struct RecordRunOptions {
  std::size_t blockSize = cli::kRecordBlock;
  std::size_t workers = 1;
  bool reverses = false;
  cli::OnError onError = cli::OnError::Keep;
  cli::FieldForm form = cli::FieldForm::Text;
};

inline RecordRun RunRecordsOf(cli::RecordFormat& format, std::string_view input,
                              const RecordRunOptions& options = {}) {
  std::vector<cli::RecordTools> tools(options.workers);
  for (cli::RecordTools& each : tools) {
    each.format = &format;
    each.from = cli::FieldCodecs(cli::kBytesEncoding).Make(options.form);
    each.to = cli::FieldCodecs(cli::kBytesEncoding).Make(options.form);
    each.transform = std::make_unique<PlainTransform>(options.reverses);
    each.onError = options.onError;
  }
  RecordRun run;
  const cli::RecordStreams streams{
      [&](std::span<std::uint8_t> bytes) {
        const std::size_t count = std::min(bytes.size(), input.size());
        std::copy_n(input.begin(), count, bytes.begin());
        input.remove_prefix(count);
        return count;
      },
      [] {}, [&](cli::ByteSpan text, std::size_t) { run.output.append(text.begin(), text.end()); },
      [&](const cli::BlockResult& result) {
        for (const auto& noted : result.noted)
          run.failures.emplace_back(noted.line, noted.failure.text);
      }};
  run.counts = cli::RunRecords(format, std::move(tools), streams, "input", options.blockSize);
  return run;
}

inline cli::ByteSpan BytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

inline std::string TextOf(cli::ByteSpan bytes) { return {bytes.begin(), bytes.end()}; }

}  // namespace latchkey::test
