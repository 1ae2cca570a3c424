// RC4's key stream, added to data eight bytes at a time.
#pragma once

#include <nettle/arcfour.h>

#include <cstdint>
#include <span>

namespace latchkey::provider {

// As Nettle's arcfour_crypt, over the state that its arcfour_set_key makes.
void AddRc4KeyStream(arcfour_ctx& state, std::span<std::uint8_t> data) noexcept;

}  // namespace latchkey::provider
