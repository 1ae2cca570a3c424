// COM's allocator, which makes Automation's strings and arrays: failing on demand, and watched for
// secrets. From the first use on the system does not cache strings.
#pragma once

#include <string_view>

namespace latchkey::test {

// Makes the nth allocation of the calling thread from now (the first is 1) fail; later ones succeed
// again. 0 cancels it.
void FailAutomationAllocation(int nth);

// Whether the allocation to fail has not happened yet.
[[nodiscard]] bool AutomationFailurePending();

// The number of blocks allocated since the first use and not freed.
[[nodiscard]] long LiveAutomationBlocks();

// During its life, counts the blocks that still hold `secret` when they are freed. One at a time.
class SecretWatch {
 public:
  explicit SecretWatch(std::string_view secret);
  SecretWatch(const SecretWatch&) = delete;
  SecretWatch& operator=(const SecretWatch&) = delete;
  ~SecretWatch();

  [[nodiscard]] int Freed() const;
  [[nodiscard]] int FreedWithSecret() const;
};

}  // namespace latchkey::test
