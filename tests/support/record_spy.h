// The values of an error record, and a watch over the writes into it.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include "diagnostics/cls_error_object.h"
#include "tests/support/call_journal.h"
#include "tests/support/call_plan.h"

namespace latchkey::test {

// All values of a record, to compare at once. The defaults are those of a new record.
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

// The writes of failures in the journal: those of the record but Clear.
[[nodiscard]] CallJournal::Entries FailureWritesIn(const CallJournal& journal);

// While it lives, enters what the calling thread's operations write into the record, and any Clear,
// as Call("ErrorLocationID", 709), Call("Clear"). What a test writes itself is not entered.
class RecordSpy {
 public:
  explicit RecordSpy(CallJournal& journal);
  RecordSpy(const RecordSpy&) = delete;
  RecordSpy& operator=(const RecordSpy&) = delete;
  ~RecordSpy();

  // Makes the nth call from now on (or CallPlan::kEveryCall) throw; it is entered all the same.
  template <class Exception>
  void ThrowAt(std::string_view call, int nth, Exception exception) {
    plan_.At(call, nth, [exception] { throw exception; });
  }

  void Enter(const Call& call);

 private:
  CallJournal& journal_;
  CallPlan plan_;
};

// Takes the record's place in the tests' build of error_trap.cpp (watched_error_trap.cpp): passes
// each write on to the thread's record after the spy, if any, has entered it.
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
