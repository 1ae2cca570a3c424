// The last step of a message also writes over the start of the next result, which is written later.
// So the loop needs no branch for the rest of a message, which depends on its length.
#include "provider/portable/kernels/stream_messages.h"

#include <cstring>

namespace latchkey::provider {
namespace {

using Step = std::uint64_t __attribute__((vector_size(kStreamStep)));

Step Load(const std::uint8_t* from) noexcept {
  Step step;
  std::memcpy(&step, from, sizeof step);
  return step;
}

}  // namespace

void AddStreamToEach(const std::uint8_t* stream, std::span<const std::uint8_t> messages,
                     std::span<const std::uint32_t> lengths, std::uint8_t* results) noexcept {
  const std::uint8_t* message = messages.data();
  std::size_t left = messages.size();
  for (const std::uint32_t length : lengths) {
    std::size_t done = 0;
    for (; done < length && left - done >= kStreamStep; done += kStreamStep) {
      const Step sum = Load(message + done) ^ Load(stream + done);
      std::memcpy(results + done, &sum, sizeof sum);
    }
    for (; done < length; ++done) {
      results[done] = static_cast<std::uint8_t>(message[done] ^ stream[done]);
    }
    message += length;
    results += length;
    left -= length;
  }
}

}  // namespace latchkey::provider
