#include "tests/support/record_spy.h"

#include <utility>

#include "diagnostics/thread_state.h"

namespace latchkey::test {
namespace {

thread_local RecordSpy* spy = nullptr;

template <class Value>
Value Shown(Value value) {
  return value;
}
std::string Shown(TextView text) { return Printable(text); }

template <class Value>
void Write(const char* member, void (clsErrorObject::*property)(Value), Value value) {
  if (spy != nullptr) spy->Enter({member, Shown(value)});
  (ErrorRecord().*property)(value);
}

// The first writes of both kinds of failure.
CallJournal::Entries BeginningWrites(int type, int location, int state) {
  return {Call("ErrorExists", true), Call("MachineState", state), Call("ErrorType", type),
          Call("ErrorLocationID", location)};
}

}  // namespace

RecordValues ValuesOf(const clsErrorObject& record) {
  return {record.ErrorLocationID(), record.ErrorType(),
          record.AppErrorNumber(),  Printable(record.AppErrorDescription()),
          record.RTErrorNumber(),   Printable(record.RTErrorDescription()),
          record.ErrorExists(),     record.MachineState()};
}

void SetValues(clsErrorObject& record, const RecordValues& values) {
  record.ErrorLocationID(values.location);
  record.ErrorType(values.type);
  record.AppErrorNumber(values.appNumber);
  record.AppErrorDescription(Wide(values.appText));
  record.RTErrorNumber(values.rtNumber);
  record.RTErrorDescription(Wide(values.rtText));
  record.ErrorExists(values.exists);
  record.MachineState(values.state);
}

void PrintTo(const RecordValues& values, std::ostream* out) {
  *out << "{location " << values.location << ", type " << values.type << ", application "
       << values.appNumber << " \"" << values.appText << "\", run-time " << values.rtNumber << " \""
       << values.rtText << "\", exists " << (values.exists ? "True" : "False") << ", state "
       << values.state << "}";
}

CallJournal::Entries ApplicationWrites(int location, int number, std::string text, int state) {
  return Joined({BeginningWrites(2, location, state),
                 {Call("AppErrorNumber", number), Call("AppErrorDescription", std::move(text))}});
}

CallJournal::Entries RunTimeWrites(int location, int number, std::string text, int state) {
  return Joined({BeginningWrites(1, location, state),
                 {Call("RTErrorNumber", number), Call("RTErrorDescription", std::move(text))}});
}

CallJournal::Entries FailureWritesIn(const CallJournal& journal) {
  return journal.Named({"ErrorExists", "MachineState", "ErrorType", "ErrorLocationID",
                        "AppErrorNumber", "AppErrorDescription", "RTErrorNumber",
                        "RTErrorDescription"});
}

RecordSpy::RecordSpy(CallJournal& journal) : journal_(journal) { spy = this; }

RecordSpy::~RecordSpy() { spy = nullptr; }

void RecordSpy::Enter(const Call& call) {
  journal_.Add(call);
  plan_.Take(call.name);
}

SpiedRecord& SpiedErrorRecord() {
  static_cast<void>(ErrorRecord());
  static SpiedRecord record;
  return record;
}

void SpiedRecord::Clear() {
  if (spy != nullptr) spy->Enter("Clear");
  ErrorRecord().Clear();
}
void SpiedRecord::ErrorLocationID(std::int16_t vData) {
  Write("ErrorLocationID", &clsErrorObject::ErrorLocationID, vData);
}
void SpiedRecord::ErrorType(std::int32_t vData) {
  Write("ErrorType", &clsErrorObject::ErrorType, vData);
}
void SpiedRecord::AppErrorDescription(TextView vData) {
  Write("AppErrorDescription", &clsErrorObject::AppErrorDescription, vData);
}
void SpiedRecord::AppErrorNumber(std::int16_t vData) {
  Write("AppErrorNumber", &clsErrorObject::AppErrorNumber, vData);
}
void SpiedRecord::RTErrorNumber(std::int32_t vData) {
  Write("RTErrorNumber", &clsErrorObject::RTErrorNumber, vData);
}
void SpiedRecord::RTErrorDescription(TextView vData) {
  Write("RTErrorDescription", &clsErrorObject::RTErrorDescription, vData);
}
void SpiedRecord::ErrorExists(bool vData) {
  Write("ErrorExists", &clsErrorObject::ErrorExists, vData);
}
void SpiedRecord::MachineState(std::int16_t vData) {
  Write("MachineState", &clsErrorObject::MachineState, vData);
}

}  // namespace latchkey::test
