#include "cli/platform/disk_flush.h"

namespace latchkey::cli {

// Flushing a volume requires an administrator's rights.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static): Linux has members
bool DiskFlush::Bytes(std::span<const std::unique_ptr<OutputFile>> /*outputs*/) { return false; }

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): as above
bool DiskFlush::Names() { return true; }

std::size_t MostOpenOutputs() noexcept { return 512; }

// Windows has no such limit.
void FailBeyondSizeLimit() noexcept {}

}  // namespace latchkey::cli
