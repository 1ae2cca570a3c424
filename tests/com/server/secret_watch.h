// Watches the blocks that COM's allocator frees during a test.
#pragma once

#include <string_view>

namespace latchkey::test {

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
