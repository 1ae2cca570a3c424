#include "platform/command/stream_name.h"

namespace latchkey::platform {

bool IsStandardInput(const std::string& name) { return name == "-"; }

bool IsStandardOutput(const std::string& name) { return name == "-"; }

}  // namespace latchkey::platform
