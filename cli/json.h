// The JSON library's type, with members in the order of insertion. Sources that use it include
// <nlohmann/json.hpp>.
#pragma once

#include <nlohmann/json_fwd.hpp>

namespace latchkey::cli {

using Json = nlohmann::ordered_json;

}  // namespace latchkey::cli
