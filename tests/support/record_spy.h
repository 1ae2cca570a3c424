// Watches the thread's error record.
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

// What recording a failure writes, as the spy's entries, in the order in which it must happen.
[[nodiscard]] CallJournal::Entries ApplicationWrites(int location, int number,
                                                     std::string_view text, int state = 0);
[[nodiscard]] CallJournal::Entries RunTimeWrites(int location, int number, std::string_view text,
                                                 int state = 0);

// The writes of failures that a spy entered: everything but Clear.
[[nodiscard]] CallJournal::Entries FailureWritesIn(const CallJournal& journal);

// A record that enters each write into a journal as "ErrorLocationID=709", "ErrorExists=True",
// "AppErrorDescription=Error creating hash", and each Clear as "Clear". Any write can be made to
// throw. The writes that Clear consists of are named "Clear.ErrorType" and so on; they are entered
// only when asked for.
class RecordSpy final : public clsErrorObject {
 public:
  explicit RecordSpy(CallJournal& journal) : journal_(journal) {}

  void LogClearSteps(bool log) { logClearSteps_ = log; }

  // Makes the nth call from now on (or CallPlan::kEveryCall) throw; it is entered all the same.
  template <class Exception>
  void ThrowAt(std::string_view call, int nth, Exception exception) {
    plan_.At(call, nth, [exception] { throw exception; });
  }

  using clsErrorObject::AppErrorDescription;
  using clsErrorObject::AppErrorNumber;
  using clsErrorObject::ErrorExists;
  using clsErrorObject::ErrorLocationID;
  using clsErrorObject::ErrorType;
  using clsErrorObject::MachineState;
  using clsErrorObject::RTErrorDescription;
  using clsErrorObject::RTErrorNumber;

  void Clear() override;
  void ErrorLocationID(std::int16_t vData) override;
  void ErrorType(std::int32_t vData) override;
  void AppErrorDescription(TextView vData) override;
  void AppErrorNumber(std::int16_t vData) override;
  void RTErrorNumber(std::int32_t vData) override;
  void RTErrorDescription(TextView vData) override;
  void ErrorExists(bool vData) override;
  void MachineState(std::int16_t vData) override;

 private:
  void Note(std::string_view member, const std::string& value);

  CallJournal& journal_;
  CallPlan plan_;
  bool clearing_ = false;
  bool logClearSteps_ = false;
};

// Makes a spy the calling thread's record. It ends when the record slot is emptied or replaced.
RecordSpy& InstallRecordSpy(CallJournal& journal);

}  // namespace latchkey::test
