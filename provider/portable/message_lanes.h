// Encrypts many messages of a block cipher at once. A message's blocks must be encrypted one after
// another, but those of different messages are independent: each message has a lane of the kernel,
// and when it ends, the next message takes the lane.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "base/secure_memory.h"
#include "provider/block_size.h"
#include "provider/portable/kernels/lane_kernels.h"

namespace latchkey::provider {

// Encrypts in place.
class MessageLanes {
 public:
  // `data` has the messages one after another, padded, with these lengths.
  MessageLanes(std::span<const std::uint32_t> lengths, std::uint8_t* data) noexcept
      : waiting_(lengths), next_(data) {}

  // Does nothing if there are too few messages for the kernel, or if memory for the lanes is
  // lacking.
  template <class Key>
  void Run(const Key& key, const LaneKernels<Key>& kernel) noexcept {
    if (!Start(kernel.lanes, kernel.worthEncrypting)) return;
    const BlockSource source{
        [](void* lanes) noexcept { return static_cast<MessageLanes*>(lanes)->Next(); }, this};
    kernel.encrypt(key, source);
  }

  // Calls encrypt(data, length, feedback) for the blocks that Run left because too few lanes
  // remained.
  template <class Encrypt>
  void Complete(Encrypt&& encrypt) noexcept {
    std::array<std::uint8_t, kBlockSize> feedback{};
    for (std::size_t i = 0; i < used_; ++i) {
      const Lane& lane = room_->lanes[i];
      feedback = FeedbackOf(i);
      encrypt(lane.place, static_cast<std::size_t>(lane.end - lane.place), feedback.data());
    }
    for (const std::uint32_t length : waiting_) {
      feedback.fill(0);
      encrypt(next_, length, feedback.data());
      next_ += length;
    }
  }

 private:
  struct Lane {
    std::uint8_t* place;  // of the block that the kernel gets next
    std::uint8_t* end;    // of the message
  };

  // Not on the stack, which may be small. Wiped on destruction.
  struct Room {
    std::array<Lane, kMostLanes> lanes;
    std::array<std::uint64_t, kMostLanes> blocks;  // with the feedback added
    ~Room() { SecureWipe(blocks.data(), sizeof blocks); }
  };

  [[nodiscard]] bool Start(std::size_t lanes, std::size_t worthLanes) noexcept;
  [[nodiscard]] bool StartNext(std::size_t lane) noexcept;
  [[nodiscard]] std::uint8_t* Next() noexcept;
  [[nodiscard]] std::array<std::uint8_t, kBlockSize> FeedbackOf(std::size_t lane) const noexcept;

  std::span<const std::uint32_t> waiting_;
  std::uint8_t* next_;     // the first message that waits
  std::size_t used_ = 0;   // lanes in use, the first ones
  std::size_t worth_ = 0;  // with fewer lanes in use, the kernel stops
  bool isStarted_ = false;
  std::unique_ptr<Room> room_;
};

}  // namespace latchkey::provider
