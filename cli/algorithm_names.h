// Names for the component's algorithm numbers on the command line.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace latchkey::cli {

// The numbers are those of clsCryptoAPI's operations: 1 md5, 2 md4, 3 md2, 4 sha1; 1 rc4, 2 rc2,
// 3 des, 4 3des, 5 3des-112.
[[nodiscard]] const std::vector<std::string>& HashNames();
[[nodiscard]] const std::vector<std::string>& CipherNames();
[[nodiscard]] const std::vector<std::string>& ProviderNames();  // base, enhanced

[[nodiscard]] const std::string& HashName(std::int32_t number);
[[nodiscard]] const std::string& CipherName(std::int32_t number);
[[nodiscard]] const std::string& ProviderName(bool enhanced);

// `name` must be in the list; the first name has the number 1.
[[nodiscard]] std::int16_t NumberOf(const std::string& name, std::span<const std::string> names);

}  // namespace latchkey::cli
