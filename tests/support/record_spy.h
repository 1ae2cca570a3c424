// The values of an error record, and a spy that records the writes to it.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include "diagnostics/cls_error_object.h"
#include "tests/support/call_journal.h"
#include "tests/support/call_plan.h"

namespace latchkey::test {

// All values of a record, for comparison. The defaults are those of a new record.
struct RecordValues {
  std::int16_t location = 0;
  std::int32_t type = 2;
  std::int16_t appNumber = 0;
  std::string appText;
  std::int32_t rtNumber = 0;
  std::string rtText;
  bool exists = false;
  std::int16_t state = 0;

  friend bool operator==(const RecordValues&, const RecordValues&) = default;
};

[[nodiscard]] RecordValues ValuesOf(const clsErrorObject& record);
void SetValues(clsErrorObject& record, const RecordValues& values);
void PrintTo(const RecordValues& values, std::ostream* out);

// The writes that record a failure, in the order in which they must happen.
[[nodiscard]] CallJournal::Entries ApplicationWrites(int location, int number, std::string text,
                                                     int state = 0);
[[nodiscard]] CallJournal::Entries RunTimeWrites(int location, int number, std::string text,
                                                 int state = 0);

// The writes of failures in the journal: all writes to the record except Clear.
[[nodiscard]] CallJournal::Entries FailureWritesIn(const CallJournal& journal);

// During its life, records each write of the calling thread's operations to the record, and each
// Clear, in the journal: Call("ErrorLocationID", 709), Call("Clear"). Does not record the test's
// own writes.
class RecordSpy {
 public:
  explicit RecordSpy(CallJournal& journal);
  RecordSpy(const RecordSpy&) = delete;
  RecordSpy& operator=(const RecordSpy&) = delete;
  ~RecordSpy();

  // Makes the nth call from now on (or CallPlan::kEveryCall) throw; it is still recorded in the
  // journal.
  template <class Exception>
  void ThrowAt(std::string_view call, int nth, Exception exception) {
    plan_.At(call, nth, [exception] { throw exception; });
  }

  void Enter(const Call& call);

 private:
  CallJournal& journal_;
  CallPlan plan_;
};

// Replaces the record in the tests' build of error_trap.cpp (watched_error_trap.cpp). Passes each
// write to the thread's record after the spy, if any, has recorded it.
class SpiedRecord {
 public:
  void Clear();
  void ErrorLocationID(std::int16_t vData);
  void ErrorType(std::int32_t vData);
  void AppErrorDescription(TextView vData);
  void AppErrorNumber(std::int16_t vData);
  void RTErrorNumber(std::int32_t vData);
  void RTErrorDescription(TextView vData);
  void ErrorExists(bool vData);
  void MachineState(std::int16_t vData);
};

// Raises ObjectNotSet, as ErrorRecord does, on a thread without a record.
SpiedRecord& SpiedErrorRecord();

}  // namespace latchkey::test
