// Watches what COM's allocator gives back while a test runs.
#pragma once

#include <string_view>

namespace latchkey::test {

// For as long as it lives, counts the blocks that still hold `secret` at the moment they are freed.
// One at a time.
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
