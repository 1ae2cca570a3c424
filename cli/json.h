// The JSON library, with members in the order of insertion.
#pragma once

#include <nlohmann/json.hpp>

namespace latchkey::cli {

using Json = nlohmann::ordered_json;

}  // namespace latchkey::cli
