// The component for clients of both kinds: the classes of the library, or the registered server
// through COM.
#pragma once

#include <cstdint>
#include <memory>

#include "latchkey/byte_array.h"
#include "latchkey/types.h"
#include "platform/variant_text.h"

namespace latchkey::test {

// The properties of clsMain.
struct SeenRecord {
  std::int16_t location = 0;
  std::int16_t type = 0;
  std::int32_t rtNumber = 0;
  Text rtDescription;
  std::int32_t appNumber = 0;
  Text appDescription;
  bool exists = false;
  std::int16_t machineState = 0;
};

// One service object on the calling thread, and any number of entry objects. Members have the names
// and meanings of the component's own. A fault that passes to the client is thrown as a Fault;
// other failures throw std::runtime_error.
class Component {
 public:
  Component() = default;
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;
  virtual ~Component() = default;

  virtual void CreateMain() = 0;
  // Destroys the oldest entry object, which must exist.
  virtual void DropMain() = 0;
  [[nodiscard]] virtual bool HasMain() const = 0;
  // Reads the record through the newest entry object, which must exist.
  virtual SeenRecord Record() = 0;

  // Replaces the service object by a new one.
  virtual void CreateService() = 0;

  virtual void InputData(const ByteArray& data) = 0;
  virtual ByteArray OutputData() = 0;
  virtual void EnhancedProvider(bool flag) = 0;
  virtual void Password(ByteArray& password) = 0;
  virtual ByteArray Password() = 0;
  virtual void UseDefaultPWD(bool flag) = 0;
  virtual Text CreateHash(const Text& text, std::int16_t hash, bool hex, bool appendPassword,
                          bool caseSensitive) = 0;
  virtual Text CreateRandom(std::int32_t length, bool exact, bool hex, bool upper) = 0;
  virtual Text CreateSaltValue(std::int32_t length, bool lettersOnly) = 0;
  virtual bool Decrypt(std::int16_t hash, std::int16_t cipher) = 0;
  virtual bool Encrypt(std::int16_t hash, std::int16_t cipher) = 0;
  virtual Text ByteArrayToString(const ByteArray& array) = 0;
  virtual ByteArray StringToByteArray(const Variant& value) = 0;
  virtual Text ConvertStringFromHex(const Text& hex) = 0;
  virtual Text ConvertStringToHex(const Text& text, bool upper) = 0;
};

// The component of this build: the library's classes on Linux, the registered server on Windows.
std::unique_ptr<Component> MakeComponent();

}  // namespace latchkey::test
