// The C interface: keys.
#include <memory>
#include <optional>

#include "c/objects.h"
#include "crypto/default_password.h"

namespace latchkey::c {
namespace {

std::optional<ProviderChoice> ChoiceOf(std::int32_t provider) noexcept {
  switch (provider) {
    case LATCHKEY_ANY_PROVIDER:
      return ProviderChoice::Any;
    case LATCHKEY_BASE:
      return ProviderChoice::Base;
    case LATCHKEY_ENHANCED:
      return ProviderChoice::Enhanced;
    default:
      return std::nullopt;
  }
}

Outcome OpenKey(const latchkey_settings* settings, const Memory& password, latchkey_key** key) {
  if (settings == nullptr || settings->size != sizeof *settings || !password.IsGood()) {
    return LATCHKEY_BAD_ARGUMENT;
  }
  const std::optional<ProviderChoice> provider = ChoiceOf(settings->provider);
  const bool usesDefault = settings->flags == LATCHKEY_DEFAULT_PASSWORD;
  const bool hasTwo = usesDefault && !password.Bytes().empty();
  if (!provider || hasTwo || (settings->flags != 0 && !usesDefault)) return LATCHKEY_BAD_ARGUMENT;

  const KeySettings wanted{settings->hash, settings->cipher, *provider, settings->key_bits,
                           settings->rc2_effective_bits};
  auto object = std::make_unique<latchkey_key>();
  const CheckSite* const failed =
      usesDefault ? object->derived.Derive(wanted, DefaultPassword().TextElements())
                  : object->derived.Derive(wanted, password.Bytes());
  if (failed != nullptr) return *failed;
  *key = object.release();
  return LATCHKEY_OK;
}

}  // namespace

void ReleaseKey(const latchkey_key* key) noexcept {
  if (--key->owners == 0) delete key;
}

}  // namespace latchkey::c

using namespace latchkey::c;  // NOLINT(google-build-using-namespace): their parts

int32_t latchkey_key_open(const latchkey_settings* settings, const uint8_t* password,
                          size_t password_length, latchkey_key** key, latchkey_failure* failure) {
  if (key != nullptr) *key = nullptr;
  return Call(failure, latchkey::trap::kEncryptData, [&]() -> Outcome {
    if (key == nullptr) return LATCHKEY_BAD_ARGUMENT;
    return OpenKey(settings, Memory(password, password_length), key);
  });
}

int32_t latchkey_key_share(latchkey_key* key) {
  if (!IsA(latchkey_mark::Key, key)) return LATCHKEY_BAD_OBJECT;
  ++key->owners;
  return LATCHKEY_OK;
}

int32_t latchkey_key_close(latchkey_key* key) {
  if (key == nullptr) return LATCHKEY_OK;
  if (!IsA(latchkey_mark::Key, key)) return LATCHKEY_BAD_OBJECT;
  const latchkey::platform::CancellationHold hold;
  ReleaseKey(key);
  return LATCHKEY_OK;
}
