// The C interface: many messages in one call.
#include "c/records.h"

#include <algorithm>
#include <array>
#include <utility>

#include "c/objects.h"
#include "crypto/engine/record_batch.h"

namespace latchkey::c {
namespace {

// The memory of `count` numbers of `size` bytes each. It is not good if it is null, too large or
// not aligned.
Memory NumbersAt(const void* numbers, std::size_t count, std::size_t size) noexcept {
  const bool isGood = count < PTRDIFF_MAX / size && numbers != nullptr &&
                      reinterpret_cast<std::uintptr_t>(numbers) % size == 0;
  return isGood ? Memory(numbers, count * size) : Memory(nullptr, size);
}

bool IsOffsetSize(std::uint32_t size) noexcept {
  return size == sizeof(std::int32_t) || size == sizeof(std::int64_t);
}

template <class View, class Narrow, class Wide, class Pointer>
View OffsetsAt(Pointer offsets, std::uint32_t size) noexcept {
  return size == sizeof(Wide) ? View(static_cast<Wide*>(offsets))
                              : View(static_cast<Narrow*>(offsets));
}

// Where the results of a call are written.
struct ResultMemory {
  Memory offsets;
  Memory data;
  Memory statuses;
};

ResultMemory MemoryOf(const latchkey_results& results, std::size_t count) noexcept {
  return {NumbersAt(results.offsets, count + 1, results.offset_size),
          Memory(results.data, results.data_length),
          results.statuses == nullptr
              ? Memory(nullptr, 0)
              : NumbersAt(results.statuses, count, sizeof *results.statuses)};
}

bool AreGood(const latchkey_records& records, const latchkey_results& results) noexcept {
  if (results.size != sizeof results || !IsOffsetSize(results.offset_size)) return false;
  const ResultMemory out = MemoryOf(results, records.count);
  const auto inputs = InputsOf(records);
  const auto overlapsInput = [&](const Memory& output) {
    return std::ranges::any_of(inputs, [&](const Memory& in) { return output.Overlaps(in); });
  };
  const std::array outputs{out.offsets, out.data, out.statuses};
  return std::ranges::all_of(outputs, &Memory::IsGood) &&
         std::ranges::none_of(outputs, overlapsInput) && !out.offsets.Overlaps(out.data) &&
         !out.offsets.Overlaps(out.statuses) && !out.data.Overlaps(out.statuses);
}

constexpr StatusCodes kCodes{LATCHKEY_OK, LATCHKEY_CIPHER_FAILED, LATCHKEY_FAULT};

Results ResultsOf(const latchkey_results& results, std::size_t room, std::size_t count) noexcept {
  return {
      OffsetsAt<ResultOffsets, std::int32_t, std::int64_t>(results.offsets, results.offset_size),
      {results.data, room},
      {results.statuses, results.statuses == nullptr ? 0 : count},
      kCodes};
}

// Describes the first record that failed, if any, although the call succeeds.
void ReportFirst(latchkey_failure* failure, RecordStatus first, CipherDirection direction) {
  if (first == RecordStatus::TooLong) {
    Report(failure, Fault(FaultNumber::Overflow), SitesOf(direction).trap);
  } else if (first == RecordStatus::CipherFailed) {
    Report(failure, SitesOf(direction).cipher);
  }
}

Outcome RunBatch(const DerivedKey& key, CipherDirection direction, const Records& records,
                 std::uint32_t threads, latchkey_results& results, RecordStatus& first) {
  const std::size_t given = std::exchange(results.data_length, 0);
  RecordBatch batch(key, direction, records);
  const std::size_t room = batch.RoomNeeded();
  const bool isNarrow = results.offset_size == sizeof(std::int32_t);
  if (isNarrow && !std::in_range<std::int32_t>(room)) return LATCHKEY_BAD_ARGUMENT;
  if (given < room) {
    results.data_length = room;
    return LATCHKEY_BUFFER_TOO_SMALL;
  }
  batch.Run(threads, ResultsOf(results, room, records.count));
  results.data_length = batch.Length();
  results.failed = batch.FailedCount();
  first = batch.FirstFailure();
  return LATCHKEY_OK;
}

std::int32_t Run(const latchkey_key* key, CipherDirection direction, const latchkey_records* given,
                 std::uint32_t threads, latchkey_results* results,
                 latchkey_failure* failure) noexcept {
  RecordStatus first = RecordStatus::Done;
  const std::int32_t status = Call(failure, SitesOf(direction).trap, [&]() -> Outcome {
    Records records;
    if (results == nullptr || !ReadRecords(given, records) || !AreGood(*given, *results)) {
      return LATCHKEY_BAD_ARGUMENT;
    }
    if (!IsA(latchkey_mark::Key, key)) return LATCHKEY_BAD_OBJECT;
    return RunBatch(key->derived, direction, records, threads, *results, first);
  });
  if (status == LATCHKEY_OK) ReportFirst(failure, first, direction);
  return status;
}

}  // namespace

std::array<Memory, 2> InputsOf(const latchkey_records& records) noexcept {
  return {NumbersAt(records.offsets, records.count + 1, records.offset_size),
          Memory(records.data, records.data_length)};
}

bool ReadRecords(const latchkey_records* given, Records& records) noexcept {
  if (given == nullptr || given->size != sizeof *given || !IsOffsetSize(given->offset_size) ||
      given->count == SIZE_MAX || !std::ranges::all_of(InputsOf(*given), &Memory::IsGood)) {
    return false;
  }
  records = {given->count,
             OffsetsAt<Offsets, const std::int32_t, const std::int64_t>(given->offsets,
                                                                        given->offset_size),
             {given->data, given->data_length}};
  return records.AreGood();
}

}  // namespace latchkey::c

using namespace latchkey::c;  // NOLINT(google-build-using-namespace): their parts
using latchkey::CipherDirection;

int32_t latchkey_encrypt_records(const latchkey_key* key, const latchkey_records* records,
                                 uint32_t threads, latchkey_results* results,
                                 latchkey_failure* failure) {
  return Run(key, CipherDirection::Encrypt, records, threads, results, failure);
}

int32_t latchkey_decrypt_records(const latchkey_key* key, const latchkey_records* records,
                                 uint32_t threads, latchkey_results* results,
                                 latchkey_failure* failure) {
  return Run(key, CipherDirection::Decrypt, records, threads, results, failure);
}
