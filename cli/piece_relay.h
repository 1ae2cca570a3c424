// Several threads carry the pieces of a stream through reading, processing and writing.
//
// A thread keeps its piece through all three, so that the bytes stay in the cache of its processor.
// The threads take turns at the stages that must run in order. While one waits or processes, the
// others continue.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "base/wiped_buffer.h"

namespace latchkey::cli {

struct StreamPiece {
  InlineBytes bytes;
  std::uint64_t number = 0;  // from 0, in the order of the stream
  std::size_t consumed = 0;  // input bytes that the piece was read from
  std::size_t length = 0;    // bytes of data; the stages choose their offset in `bytes`
  bool isLast = false;
};

// The stages of each piece. Calls of Read are in the order of the pieces, one at a time, and so are
// calls of Write and, if WorksInOrder returns true, of Work. Different threads make the calls. All
// members but StopReading may throw any exception.
class PieceStages {
 public:
  PieceStages() = default;
  PieceStages(const PieceStages&) = delete;
  PieceStages& operator=(const PieceStages&) = delete;
  virtual ~PieceStages() = default;

  // Whether Work requires that the piece before was processed.
  [[nodiscard]] virtual bool WorksInOrder() const noexcept = 0;

  // Fills in the next piece; its number is already set. The piece has the buffer of an earlier
  // piece of the thread, or an empty one. Not called after the last piece.
  virtual void Read(StreamPiece& piece) = 0;

  // Processes a piece. `worker` is the number of the thread, from 0.
  virtual void Work(StreamPiece& piece, std::size_t worker) = 0;

  // Writes the result of a piece.
  virtual void Write(const StreamPiece& piece) = 0;

  // Makes a waiting Read return soon. Called from another thread when no more pieces are needed.
  virtual void StopReading() noexcept = 0;
};

// Admits pieces in the order of their numbers.
class Gate {
 public:
  // Waits until all earlier pieces have passed; returns false if the gate was closed.
  [[nodiscard]] bool Await(std::uint64_t number);

  // Lets the next piece pass.
  void Pass();

  // Stops all pieces.
  void Close();

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::uint64_t next_ = 0;
  bool closed_ = false;
};

// Carries one stream; Run may be called once.
class PieceRelay {
 public:
  explicit PieceRelay(PieceStages& stages) noexcept : stages_(stages) {}

  // Processes all pieces with up to `workers` threads, including the calling one. The other threads
  // start if the first piece is not the last, and have ended when Run returns. If the system
  // refuses threads, fewer run. An exception of a stage is rethrown after all earlier pieces are
  // written, as with a single thread.
  void Run(std::size_t workers);

 private:
  // The body of a thread; throws nothing.
  void Work(std::size_t worker) noexcept;
  void CarryPieces(std::size_t worker);
  [[nodiscard]] bool ReadAndWork(StreamPiece& piece, std::size_t worker);
  [[nodiscard]] bool Read(StreamPiece& piece);
  void StartOthers();
  void Stop(const std::exception_ptr& failure) noexcept;

  PieceStages& stages_;
  std::size_t workers_ = 1;
  std::vector<std::thread> others_;

  std::mutex reading_;  // guards the next two members; held while Read runs
  std::uint64_t piecesRead_ = 0;
  bool atEnd_ = false;

  Gate working_;
  Gate writing_;

  std::mutex failing_;
  std::exception_ptr failure_;  // the first one
};

}  // namespace latchkey::cli
