// A thread with a watched error record, on a machine whose answers are the test's.
#pragma once

#include <gtest/gtest.h>

#include "latchkey/cls_main.h"
#include "tests/support/call_journal.h"
#include "tests/support/fake_probe.h"
#include "tests/support/module_scope.h"
#include "tests/support/record_spy.h"

namespace latchkey::test {

// The fixture of tests that look at what an operation writes into the record.
class WatchedModule : public testing::Test {
 protected:
  WatchedModule() { scope.Services().probe = &probe; }

  // The record as an earlier failure of each kind left it: no field holds its first value.
  void LeaveEarlierFailure() {
    SetValues(record, kEarlierFailure);
    journal.Clear();
  }

  const RecordValues kEarlierFailure{410, 1, 150, "earlier message", 13, "earlier fault", true, 7};

  ModuleScope scope;
  CallJournal journal;
  FakeProbe probe;
  clsMain main;
  RecordSpy spy{journal};
  clsErrorObject& record = ErrorRecord();
};

}  // namespace latchkey::test
