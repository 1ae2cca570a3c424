// Ends a thread that used the DLL, the DLL and the process in the order that the argument names,
// with objects released in time or late. The exit status is 0 if the process ended normally.
//   ending_order ORDER   one of the names in kOrders
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <future>
#include <optional>
#include <thread>

#include "tests/com/server/loaded_server.h"
#include "tests/system/trust/program_start.h"
#include "tests/system/trust/windows/fatal_exceptions.h"

namespace latchkey::test {
namespace {

// The objects of one client.
struct Objects {
  UniqueInterface<_clsMain> main;
  UniqueInterface<_clsCryptoAPI> api;
};

void Require(bool condition, const char* what) {
  if (condition) return;
  std::printf("%s\n", what);
  std::fflush(stdout);
  TerminateProcess(GetCurrentProcess(), 2);
}

Objects UseServer(const LoadedServer& server) {
  Objects objects{server.Create<_clsMain>(CLSID_clsMain, IID__clsMain),
                  server.Create<_clsCryptoAPI>(CLSID_clsCryptoAPI, IID__clsCryptoAPI)};
  VARIANT_BOOL done = VARIANT_FALSE;
  objects.api.Get()->Encrypt(1, 1, &done);
  Require(done == VARIANT_TRUE, "Encrypt failed");
  Require(server.CanUnloadNow() == S_FALSE, "in use, and may be unloaded");
  return objects;
}

void Unload(LoadedServer& server) {
  Require(server.CanUnloadNow() == S_OK, "unused, and may not be unloaded");
  server.Unload();
  Require(GetModuleHandleW(L"latchkey.dll") == nullptr, "unloaded, and still there");
}

// A thread that uses the DLL, and then waits until it may end.
class User {
 public:
  explicit User(const LoadedServer& server)
      : thread_([this, &server] {
          const Apartment apartment;
          static_cast<void>(UseServer(server));
          used_.set_value();
          mayEnd_.get_future().wait();
        }) {
    used_.get_future().wait();
  }
  void End() {
    mayEnd_.set_value();
    thread_.join();
  }

 private:
  std::promise<void> used_;
  std::promise<void> mayEnd_;
  std::thread thread_;
};

[[noreturn]] void EndProcess() {
  Require(!testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed(), "did not work");
  std::puts("came to its end");
  std::fflush(stdout);
  std::exit(EXIT_SUCCESS);
}

// Both live until the process ends.
LoadedServer& Server() {
  static auto* const server = new LoadedServer;
  return *server;
}
User& Worker() {
  static auto* const user = new User(Server());
  return *user;
}

void ThreadModuleProcess() {
  Worker().End();
  Unload(Server());
}

void ModuleThreadProcess() {
  Worker();
  Unload(Server());
  Worker().End();
}

void ThreadProcess() { Worker().End(); }

// The thread is stopped at its current instruction.
void ModuleProcess() {
  Worker();
  Unload(Server());
}

void ProcessAlone() { Worker(); }

// The process ends on the thread that used the DLL.
void ProcessOnTheThread() {
  std::thread([] {
    const Apartment apartment;
    const Objects objects = UseServer(Server());
    EndProcess();
  }).join();
}

// Made on a thread that has ended.
void ReleasedAfterTheirThread() {
  Objects objects;
  std::thread([&] {
    const Apartment apartment;
    objects = UseServer(Server());
  }).join();
  Require(Server().CanUnloadNow() == S_FALSE, "alive, and the DLL may be unloaded");
  objects = {};
  Unload(Server());
}

void ReleasedAfterTheEntryObject() {
  Objects objects = UseServer(Server());
  objects.main.Reset();
  VARIANT_BOOL done = VARIANT_TRUE;
  Require(objects.api.Get()->Encrypt(1, 1, &done) == FaultCode(91), "no record, and no fault");
  objects.api.Reset();
  Unload(Server());
}

void ReleasedAfterTheApartment() {
  Objects objects;
  {
    const Apartment apartment;
    objects = UseServer(Server());
  }
  objects = {};
  Unload(Server());
}

// By an object of static duration, while the process ends.
void ReleasedWithTheProcess() {
  static Objects objects;
  objects = UseServer(Server());
}

void NeverReleased() {
  static auto* const objects = new Objects;
  *objects = UseServer(Server());
}

struct Order {
  const char* name;
  void (*play)();
};

constexpr Order kOrders[] = {{"thread_module_process", ThreadModuleProcess},
                             {"module_thread_process", ModuleThreadProcess},
                             {"thread_process", ThreadProcess},
                             {"module_process", ModuleProcess},
                             {"process_alone", ProcessAlone},
                             {"process_on_the_thread", ProcessOnTheThread},
                             {"released_after_their_thread", ReleasedAfterTheirThread},
                             {"released_after_the_entry_object", ReleasedAfterTheEntryObject},
                             {"released_after_the_apartment", ReleasedAfterTheApartment},
                             {"released_with_the_process", ReleasedWithTheProcess},
                             {"never_released", NeverReleased}};

}  // namespace
}  // namespace latchkey::test

int main(int count, char** arguments) {
  latchkey::test::SayThatItBegins("ending_order");
  for (const auto& order : latchkey::test::kOrders) {
    if (count != 2 || std::strcmp(arguments[1], order.name) != 0) continue;
    const latchkey::test::Apartment apartment;
    order.play();
    latchkey::test::EndProcess();
  }
  return EXIT_FAILURE;
}
