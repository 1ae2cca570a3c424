#include "tests/support/random_source_script.h"

#include <utility>

namespace latchkey::test {
namespace {

thread_local RandomSourceScript* current = nullptr;

}  // namespace

RandomSourceScript::RandomSourceScript(RandomAnswer answer) : answer_(std::move(answer)) {
  current = this;
}

RandomSourceScript::~RandomSourceScript() { current = nullptr; }

RandomSourceScript* RandomSourceScript::Current() noexcept { return current; }

}  // namespace latchkey::test
