// A thread with a watched error record, on a machine whose answers the test sets.
#pragma once

#include <gtest/gtest.h>

#include "latchkey/cls_main.h"
#include "tests/support/call_journal.h"
#include "tests/support/fake_probe.h"
#include "tests/support/module_scope.h"
#include "tests/support/record_spy.h"

namespace latchkey::test {

// The fixture of tests that check what an operation writes to the record.
class WatchedModule : public testing::Test {
 protected:
  WatchedModule() { scope.Services().probe = &probe; }

  // Fills the record as after an earlier failure of each kind: no field has its initial value.
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
