#include "cli/piece_relay.h"

#include <system_error>

namespace latchkey::cli {

bool Gate::Await(std::uint64_t number) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return closed_ || next_ == number; });
  return !closed_;
}

void Gate::Pass() {
  {
    const std::lock_guard lock(mutex_);
    ++next_;
  }
  changed_.notify_all();
}

void Gate::Close() {
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
  }
  changed_.notify_all();
}

void PieceRelay::Run(std::size_t workers) {
  workers_ = workers;
  Work(0);
  for (std::thread& other : others_) other.join();
  if (failure_) std::rethrow_exception(failure_);
}

void PieceRelay::Work(std::size_t worker) noexcept {
  try {
    CarryPieces(worker);
  } catch (...) {
    Stop(std::current_exception());
  }
}

// A failed piece waits for its turn too: earlier pieces may still be written, or fail first.
void PieceRelay::CarryPieces(std::size_t worker) {
  StreamPiece piece;
  for (;;) {
    std::exception_ptr failure;
    try {
      if (!ReadAndWork(piece, worker)) return;
    } catch (...) {
      failure = std::current_exception();
    }
    if (!writing_.Await(piece.number)) return;
    if (failure) std::rethrow_exception(failure);
    stages_.Write(piece);
    writing_.Pass();
  }
}

// After a piece fails in ordered work, no later piece is processed, since the gate stays closed.
bool PieceRelay::ReadAndWork(StreamPiece& piece, std::size_t worker) {
  if (!Read(piece)) return false;
  if (!stages_.WorksInOrder()) {
    stages_.Work(piece, worker);
    return true;
  }
  if (!working_.Await(piece.number)) return false;
  stages_.Work(piece, worker);
  working_.Pass();
  return true;
}

bool PieceRelay::Read(StreamPiece& piece) {
  const std::lock_guard lock(reading_);
  if (atEnd_) return false;
  piece.number = piecesRead_++;
  atEnd_ = true;  // also if Read throws
  stages_.Read(piece);
  atEnd_ = piece.isLast;
  if (piece.number == 0 && !atEnd_) StartOthers();
  return true;
}

// The threads do not block signals: a SIGPIPE or SIGXFSZ from a thread's write ends the command.
void PieceRelay::StartOthers() {
  try {
    others_.reserve(workers_);
    for (std::size_t worker = 1; worker < workers_; ++worker) {
      others_.emplace_back([this, worker] { Work(worker); });
    }
  } catch (const std::system_error&) {  // the threads that started do everything
  }
}

void PieceRelay::Stop(const std::exception_ptr& failure) noexcept {
  {
    const std::lock_guard lock(failing_);
    if (!failure_) failure_ = failure;
  }
  working_.Close();
  writing_.Close();
  stages_.StopReading();
  const std::lock_guard lock(reading_);
  atEnd_ = true;
}

}  // namespace latchkey::cli
