// The C interface: a thread, its error record, the connectivity probe, and the timer.
#include <string>

#include "c/objects.h"
#include "diagnostics/connectivity_probe.h"

namespace {

using namespace latchkey;  // NOLINT(google-build-using-namespace): all of it is the component's

// The record's texts are those of failure_table.h and fault.cpp, which are ASCII.
std::string ToUtf8(const Text& ascii) { return {ascii.begin(), ascii.end()}; }

int ReadDescription(const latchkey_thread* thread, char* text, std::size_t* length,
                    Text (clsErrorObject::*property)() const) {
  Output output(text, length);
  return WithOutput(output, {}, [&] {
    return WithObject<ThreadTable>(thread, [&](const ThreadObject&) {
      return output.DeliverText(ToUtf8((ErrorRecord().*property)()));
    });
  });
}

template <class Body>
int WithTimer(const latchkey_timer* timer, Body&& body) {
  return Guarded([&] {
    const auto object = TimerTable::Instance().Find(timer);
    if (object == nullptr) return LATCHKEY_BAD_HANDLE;
    std::forward<Body>(body)(*object);
    return LATCHKEY_OK;
  });
}

}  // namespace

int latchkey_thread_open(latchkey_thread** thread) { return OpenObject<ThreadTable>(thread); }

// On another thread the object's end would empty that thread's record.
int latchkey_thread_close(latchkey_thread* thread) {
  if (thread == nullptr) return LATCHKEY_OK;
  const int status = Guarded([&] {
    return WithObject<ThreadTable>(thread, [](const ThreadObject&) { return LATCHKEY_OK; });
  });
  return status == LATCHKEY_OK ? CloseObject<ThreadTable>(thread) : status;
}

int latchkey_error_read(const latchkey_thread* thread, latchkey_error* error) {
  if (error == nullptr) return LATCHKEY_BAD_ARGUMENT;
  *error = {};
  return Guarded([&] {
    return WithObject<ThreadTable>(thread, [&](const ThreadObject&) {
      const clsErrorObject& record = ErrorRecord();
      *error = {record.ErrorExists() ? 1 : 0, record.ErrorType(),     record.ErrorLocationID(),
                record.AppErrorNumber(),      record.RTErrorNumber(), record.MachineState()};
      return LATCHKEY_OK;
    });
  });
}

int latchkey_error_app_description(const latchkey_thread* thread, char* text, size_t* textLength) {
  return ReadDescription(thread, text, textLength, &clsErrorObject::AppErrorDescription);
}

int latchkey_error_rt_description(const latchkey_thread* thread, char* text, size_t* textLength) {
  return ReadDescription(thread, text, textLength, &clsErrorObject::RTErrorDescription);
}

int latchkey_connection_exists(const latchkey_thread* thread, int32_t* connected) {
  if (connected == nullptr) return LATCHKEY_BAD_ARGUMENT;
  *connected = 0;
  return Guarded([&] {
    return WithObject<ThreadTable>(thread, [&](const ThreadObject&) {
      *connected = QueryConnectionExists() ? 1 : 0;
      return LATCHKEY_OK;
    });
  });
}

int latchkey_timer_open(latchkey_timer** timer) { return OpenObject<TimerTable>(timer); }

int latchkey_timer_close(latchkey_timer* timer) { return CloseObject<TimerTable>(timer); }

int latchkey_timer_start(latchkey_timer* timer) {
  return WithTimer(timer, [](clsTimer& object) { object.Start(); });
}

int latchkey_timer_elapsed(latchkey_timer* timer, int32_t* milliseconds) {
  if (milliseconds == nullptr) return LATCHKEY_BAD_ARGUMENT;
  *milliseconds = 0;
  return WithTimer(timer, [&](clsTimer& object) { *milliseconds = object.GetElapsedTime(); });
}
