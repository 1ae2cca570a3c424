#include "tests/support/record_spy.h"

#include <memory>
#include <utility>

#include "diagnostics/thread_state.h"

namespace latchkey::test {
namespace {

std::string BooleanText(bool value) { return value ? "True" : "False"; }

Text Widened(const std::string& text) { return {text.begin(), text.end()}; }

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
  record.AppErrorDescription(Widened(values.appText));
  record.RTErrorNumber(values.rtNumber);
  record.RTErrorDescription(Widened(values.rtText));
  record.ErrorExists(values.exists);
  record.MachineState(values.state);
}

void PrintTo(const RecordValues& values, std::ostream* out) {
  *out << "{location " << values.location << ", type " << values.type << ", application "
       << values.appNumber << " \"" << values.appText << "\", run-time " << values.rtNumber << " \""
       << values.rtText << "\", exists " << BooleanText(values.exists) << ", state " << values.state
       << "}";
}

CallJournal::Entries ApplicationWrites(int location, int number, std::string_view text, int state) {
  return {"ErrorExists=True",
          "MachineState=" + std::to_string(state),
          "ErrorType=2",
          "ErrorLocationID=" + std::to_string(location),
          "AppErrorNumber=" + std::to_string(number),
          "AppErrorDescription=" + std::string(text)};
}

CallJournal::Entries RunTimeWrites(int location, int number, std::string_view text, int state) {
  return {"ErrorExists=True",
          "MachineState=" + std::to_string(state),
          "ErrorType=1",
          "ErrorLocationID=" + std::to_string(location),
          "RTErrorNumber=" + std::to_string(number),
          "RTErrorDescription=" + std::string(text)};
}

CallJournal::Entries FailureWritesIn(const CallJournal& journal) {
  return journal.Named({"ErrorExists", "MachineState", "ErrorType", "ErrorLocationID",
                        "AppErrorNumber", "AppErrorDescription", "RTErrorNumber",
                        "RTErrorDescription"});
}

RecordSpy& InstallRecordSpy(CallJournal& journal) {
  auto spy = std::make_unique<RecordSpy>(journal);
  RecordSpy& installed = *spy;
  ThisThread().errorRecord = std::move(spy);
  return installed;
}

void RecordSpy::Note(std::string_view member, const std::string& value) {
  const std::string name = (clearing_ ? "Clear." : "") + std::string(member);
  if (!clearing_ || logClearSteps_) journal_.Add(name + "=" + value);
  plan_.Take(name);
}

void RecordSpy::Clear() {
  journal_.Add("Clear");
  plan_.Take("Clear");
  clearing_ = true;
  clsErrorObject::Clear();
  clearing_ = false;
}

void RecordSpy::ErrorLocationID(std::int16_t vData) {
  Note("ErrorLocationID", std::to_string(vData));
  clsErrorObject::ErrorLocationID(vData);
}

void RecordSpy::ErrorType(std::int32_t vData) {
  Note("ErrorType", std::to_string(vData));
  clsErrorObject::ErrorType(vData);
}

void RecordSpy::AppErrorDescription(TextView vData) {
  Note("AppErrorDescription", Printable(vData));
  clsErrorObject::AppErrorDescription(vData);
}

void RecordSpy::AppErrorNumber(std::int16_t vData) {
  Note("AppErrorNumber", std::to_string(vData));
  clsErrorObject::AppErrorNumber(vData);
}

void RecordSpy::RTErrorNumber(std::int32_t vData) {
  Note("RTErrorNumber", std::to_string(vData));
  clsErrorObject::RTErrorNumber(vData);
}

void RecordSpy::RTErrorDescription(TextView vData) {
  Note("RTErrorDescription", Printable(vData));
  clsErrorObject::RTErrorDescription(vData);
}

void RecordSpy::ErrorExists(bool vData) {
  Note("ErrorExists", BooleanText(vData));
  clsErrorObject::ErrorExists(vData);
}

void RecordSpy::MachineState(std::int16_t vData) {
  Note("MachineState", std::to_string(vData));
  clsErrorObject::MachineState(vData);
}

}  // namespace latchkey::test
