// Several threads carry the pieces of a stream through reading, work and writing.
//
// A thread keeps its piece through all three, so that the bytes stay in the cache of its processor
// and nothing is handed over; the threads take turns at what must happen in order. While one waits
// for the system, or works, the others go on.
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

struct Piece {
  InlineBytes bytes;
  std::uint64_t number = 0;  // from 0, in the order of the stream
  std::size_t consumed = 0;  // bytes of the stream that it was read from
  std::size_t length = 0;    // of what stands in `bytes` now, at a place that the stages know
  bool isLast = false;
};

// What is done with each piece. The relay calls Read, and Write, for one piece after another and
// never for two at once, and Work too where WorksInOrder; the calls come from different threads.
// Each but StopReading may raise whatever it likes.
class PieceStages {
 public:
  PieceStages() = default;
  PieceStages(const PieceStages&) = delete;
  PieceStages& operator=(const PieceStages&) = delete;
  virtual ~PieceStages() = default;

  // Whether a piece can be worked on only behind the one before it.
  [[nodiscard]] virtual bool WorksInOrder() const noexcept = 0;

  // Fills in the next piece, all but its number, which is set. Its bytes are those of an earlier
  // piece of the thread, or none yet. Not called again behind the last one.
  virtual void Read(Piece& piece) = 0;

  // `worker` is the number of the thread, below the number of workers.
  virtual void Work(Piece& piece, std::size_t worker) = 0;

  virtual void Write(const Piece& piece) = 0;

  // Makes a Read that waits end soon, whatever it has; called beside it, when its piece is not
  // wanted any more.
  virtual void StopReading() noexcept = 0;
};

// The pieces pass one after another, by their numbers.
class Gate {
 public:
  // Waits until all earlier pieces have passed; false when the gate was closed instead.
  [[nodiscard]] bool Await(std::uint64_t number);

  // Lets the piece behind the one that awaited its turn come.
  void Pass();

  // Nothing passes any more.
  void Close();

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::uint64_t next_ = 0;
  bool closed_ = false;
};

// Used once.
class PieceRelay {
 public:
  explicit PieceRelay(PieceStages& stages) noexcept : stages_(stages) {}

  // Carries all pieces through with up to `workers` threads, of which the calling one is the first.
  // The others start when a piece is there that is not the last, and have ended when Run returns;
  // where the system gives fewer threads, fewer do. A failure raised at a piece comes when the
  // earlier ones are written, as if one thread did everything, and is raised again by Run.
  void Run(std::size_t workers);

 private:
  // All that a thread does; lets nothing out.
  void Work(std::size_t worker) noexcept;
  void CarryPieces(std::size_t worker);
  [[nodiscard]] bool ReadAndWork(Piece& piece, std::size_t worker);
  [[nodiscard]] bool Read(Piece& piece);
  void StartOthers();
  void Stop(const std::exception_ptr& failure) noexcept;

  PieceStages& stages_;
  std::size_t workers_ = 1;
  std::vector<std::thread> others_;

  std::mutex reading_;  // held over Read, with these two
  std::uint64_t piecesRead_ = 0;
  bool atEnd_ = false;

  Gate working_;
  Gate writing_;

  std::mutex failing_;
  std::exception_ptr failure_;  // the first one
};

}  // namespace latchkey::cli
