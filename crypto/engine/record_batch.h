// Many messages in one call, in the layout of a binary column of Apache Arrow: one buffer, and
// offsets into it.
#pragma once

#include <cstdint>
#include <span>
#include <type_traits>
#include <vector>

#include "crypto/engine/derived_key.h"

namespace latchkey {

// Offsets of 32 or 64 bits: record i begins at offset i and ends before offset i + 1.
template <class Narrow, class Wide>
class OffsetsOf {
 public:
  OffsetsOf() = default;
  explicit OffsetsOf(Narrow* offsets) noexcept : narrow_(offsets) {}
  explicit OffsetsOf(Wide* offsets) noexcept : wide_(offsets) {}

  [[nodiscard]] std::int64_t Get(std::size_t i) const noexcept {
    return wide_ != nullptr ? wide_[i] : narrow_[i];
  }
  void Set(std::size_t i, std::size_t offset) const noexcept {
    if (wide_ != nullptr) {
      wide_[i] = static_cast<Wide>(offset);
    } else {
      narrow_[i] = static_cast<Narrow>(offset);
    }
  }

  // Fills `lengths` with the lengths of the records from record i on, which must fit 32 bits.
  void GetLengths(std::size_t i, std::span<std::uint32_t> lengths) const noexcept {
    OnArray([&](const auto* offsets) {
      for (std::size_t n = 0; n < lengths.size(); ++n) {
        lengths[n] = static_cast<std::uint32_t>(offsets[i + n + 1] - offsets[i + n]);
      }
    });
  }
  // Sets the ends of the records from record i on, which begins at `offset`. Returns the last end.
  [[nodiscard]] std::size_t SetEnds(std::size_t i, std::size_t offset,
                                    std::span<const std::uint32_t> lengths) const noexcept {
    OnArray([&](auto* offsets) {
      for (std::size_t n = 0; n < lengths.size(); ++n) {
        offset += lengths[n];
        offsets[i + n + 1] = static_cast<std::remove_reference_t<decltype(*offsets)>>(offset);
      }
    });
    return offset;
  }

 private:
  template <class Work>
  void OnArray(Work&& work) const noexcept {
    wide_ != nullptr ? work(wide_) : work(narrow_);
  }

  Narrow* narrow_ = nullptr;
  Wide* wide_ = nullptr;
};

using Offsets = OffsetsOf<const std::int32_t, const std::int64_t>;
using ResultOffsets = OffsetsOf<std::int32_t, std::int64_t>;

struct Records {
  std::size_t count = 0;
  Offsets offsets;  // count + 1
  std::span<const std::uint8_t> data;

  // False if offsets decrease or lie outside the data.
  [[nodiscard]] bool AreGood() const noexcept;
  // The bytes of the records from `first` up to, but not including, `end`. Requires AreGood.
  [[nodiscard]] std::span<const std::uint8_t> Between(std::size_t first,
                                                      std::size_t end) const noexcept {
    const auto begin = static_cast<std::size_t>(offsets.Get(first));
    return data.subspan(begin, static_cast<std::size_t>(offsets.Get(end)) - begin);
  }
  // Record i. Requires AreGood.
  [[nodiscard]] std::span<const std::uint8_t> operator[](std::size_t i) const noexcept {
    return Between(i, i + 1);
  }
};

// TooLong: the result may not fit into 32 bits.
enum class RecordStatus { Done, CipherFailed, TooLong };

// The numbers that a caller uses for the statuses.
struct StatusCodes {
  std::int32_t done;
  std::int32_t cipherFailed;
  std::int32_t tooLong;

  [[nodiscard]] std::int32_t Of(RecordStatus status) const noexcept {
    if (status == RecordStatus::Done) return done;
    return status == RecordStatus::TooLong ? tooLong : cipherFailed;
  }
};

struct Results {
  ResultOffsets offsets;             // room for count + 1
  std::span<std::uint8_t> data;      // RoomNeeded bytes, which do not overlap the records
  std::span<std::int32_t> statuses;  // count, or none
  StatusCodes codes{};
};

// Encrypts or decrypts records. The result of a record that fails has length 0.
class RecordBatch {
 public:
  // The arguments must outlive the batch. The records must be good.
  RecordBatch(const DerivedKey& key, CipherDirection direction, const Records& records);

  // The number of bytes that is always enough for all results together.
  [[nodiscard]] std::size_t RoomNeeded() const noexcept { return roomNeeded_; }

  // Runs on up to `threads` threads; 0 means one for each usable processor. The room after the
  // results is filled with zeros; after a fault, which is passed to the caller, all of the room.
  // Call it once.
  void Run(std::size_t threads, const Results& results);

  [[nodiscard]] std::size_t FailedCount() const noexcept { return failed_; }
  [[nodiscard]] RecordStatus FirstFailure() const noexcept { return firstFailure_; }
  // The sum of the results' lengths.
  [[nodiscard]] std::size_t Length() const noexcept { return length_; }

 private:
  // Records that one thread takes at a time. Their results are first written together at `start`.
  struct Chunk {
    std::size_t start = 0;
    std::size_t room = 0;
    std::size_t length = 0;
    std::size_t failed = 0;
    RecordStatus firstFailure = RecordStatus::Done;

    [[nodiscard]] std::size_t End() const noexcept { return start + length; }
  };

  struct Work;  // the working memory of a thread

  // The room for one record; 0 if it is too long.
  [[nodiscard]] std::uint32_t RoomFor(std::size_t recordLength) const noexcept;
  [[nodiscard]] std::uint64_t RoomForAll(std::size_t first, std::size_t end) const noexcept;
  [[nodiscard]] std::size_t FirstTooLong(std::size_t first, std::size_t end) const noexcept;
  void RunChunk(std::size_t number, const Results& results, Work& work);
  void RunRecords(std::size_t first, std::size_t end, Chunk& chunk, const Results& results,
                  Work& work) const;
  static void NoteStatus(std::size_t record, RecordStatus status, Chunk& chunk,
                         const Results& results);
  void JoinChunks(const Results& results) noexcept;

  const DerivedKey& key_;
  const CipherDirection direction_;
  const Records& records_;
  std::vector<Chunk> chunks_;
  std::size_t roomNeeded_ = 0;
  std::size_t length_ = 0;
  std::size_t failed_ = 0;
  RecordStatus firstFailure_ = RecordStatus::Done;
};

}  // namespace latchkey
