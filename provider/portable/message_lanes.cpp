#include "provider/portable/message_lanes.h"

#include <cstring>
#include <new>

namespace latchkey::provider {
namespace {

std::uint64_t Load(const std::uint8_t* place) noexcept {
  std::uint64_t block = 0;
  std::memcpy(&block, place, sizeof block);
  return block;
}

}  // namespace

bool MessageLanes::Start(std::size_t lanes, std::size_t worthLanes) noexcept {
  if (waiting_.size() < worthLanes) return false;
  room_.reset(new (std::nothrow) Room());
  if (!room_) return false;
  worth_ = worthLanes;
  while (used_ < lanes && StartNext(used_)) ++used_;
  return true;
}

// False if no message waits.
bool MessageLanes::StartNext(std::size_t lane) noexcept {
  if (waiting_.empty()) return false;
  room_->lanes[lane] = {next_, next_ + waiting_.front()};
  room_->blocks[lane] = Load(next_);
  next_ += waiting_.front();
  waiting_ = waiting_.subspan(1);
  return true;
}

// Stores the encrypted blocks and loads the next ones.
std::uint8_t* MessageLanes::Next() noexcept {
  for (std::size_t i = 0; isStarted_ && i < used_;) {
    Lane& lane = room_->lanes[i];
    std::memcpy(lane.place, &room_->blocks[i], kBlockSize);
    lane.place += kBlockSize;
    if (lane.place != lane.end) {
      room_->blocks[i++] ^= Load(lane.place);
    } else if (StartNext(i)) {
      ++i;
    } else {
      --used_;
      lane = room_->lanes[used_];
      room_->blocks[i] = room_->blocks[used_];
    }
  }
  isStarted_ = true;
  return used_ < worth_ ? nullptr : reinterpret_cast<std::uint8_t*>(room_->blocks.data());
}

std::array<std::uint8_t, kBlockSize> MessageLanes::FeedbackOf(std::size_t lane) const noexcept {
  const std::uint64_t feedback = room_->blocks[lane] ^ Load(room_->lanes[lane].place);
  std::array<std::uint8_t, kBlockSize> bytes{};
  std::memcpy(bytes.data(), &feedback, sizeof feedback);
  return bytes;
}

}  // namespace latchkey::provider
