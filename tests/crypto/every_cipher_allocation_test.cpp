// Encrypt and Decrypt, with the first, second, ... of their allocations failing until they succeed:
// the record, the output and the password after each failure, and the operation afterwards.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <tuple>

#include "crypto/default_password.h"
#include "tests/support/cipher_direction.h"
#include "tests/support/every_allocation.h"

namespace latchkey::test {
namespace {

// The state of the object before the operation. A failure must replace the earlier output.
enum class Start { Password, NoPassword, EarlierOutput };

// One direction with one cipher.
struct Operation {
  [[nodiscard]] bool Run(clsCryptoAPI& object) const { return (object.*row.operation)(1, cipher); }

  void Prepare(clsCryptoAPI& object, const ByteArray& input) const;
  // The input of the operation.
  [[nodiscard]] ByteArray Input() const;
  // The output after a failure, instead of the earlier one.
  [[nodiscard]] ByteArray OutputAfterFailure() const;
  // The password after the nth failure since the provider was opened.
  [[nodiscard]] ByteArray PasswordAfterFailure(int nth) const;

  const DirectionRow& row;
  std::int16_t cipher;
  Start start;
};

void Operation::Prepare(clsCryptoAPI& object, const ByteArray& input) const {
  object.EnhancedProvider(true);
  if (start != Start::NoPassword) {
    ByteArray password = OwnPassword();
    object.Password(password);
  }
  if (start == Start::EarlierOutput) {
    // In separate memory, which is too small for the next output.
    object.InputData(ArrayOf(SampleBytes(300)));
    EXPECT_TRUE(object.Encrypt(1, 1));
  }
  object.InputData(input);
}

ByteArray Operation::Input() const {
  ByteArray plaintext = ArrayOf(SampleBytes(500));
  if (row.operation == kEncryptRow.operation) return plaintext;
  clsCryptoAPI source;
  Prepare(source, plaintext);
  EXPECT_TRUE(source.Encrypt(1, cipher));
  return source.OutputData();
}

ByteArray Operation::OutputAfterFailure() const {
  const Bytes& elements = row.outputAfterFailure;
  return elements.empty() ? ByteArray() : ByteArray(std::span(elements));
}

ByteArray Operation::PasswordAfterFailure(int nth) const {
  if (start != Start::NoPassword) return OwnPassword();
  // The first allocation makes the built-in password, which is stored before anything else.
  return nth > 1 ? DefaultPassword().ToByteArray() : ByteArray{0};
}

class EveryCipherAllocationTest
    : public EveryAllocationTest,
      public testing::WithParamInterface<std::tuple<DirectionRow, Start>> {
 protected:
  int SweepCipher(const Operation& operation) {
    const ByteArray input = operation.Input();
    ByteArray wanted;
    int failuresWithProvider = 0;
    return Sweep([&](int nth) {
      clsCryptoAPI object;
      operation.Prepare(object, input);
      bool done = false;
      const bool failed = RunFailing(nth, [&] { done = operation.Run(object); });
      EXPECT_EQ(done, !failed);
      if (nth == 0) wanted = object.OutputData();
      if (failed) {
        const RecordValues record = ValuesOf(ErrorRecord());
        ExpectOutOfMemory(record, operation.row.bodyTrap, operation.row.provider.location);
        EXPECT_EQ(object.OutputData(), operation.OutputAfterFailure());
        if (record.type == 1) ++failuresWithProvider;
        EXPECT_EQ(object.Password(), operation.PasswordAfterFailure(failuresWithProvider));
      }
      EXPECT_TRUE(operation.Run(object)) << "the call after the failure";
      EXPECT_FALSE(ErrorRecord().ErrorExists());
      EXPECT_EQ(object.OutputData(), wanted);
      return failed;
    });
  }
};

TEST_P(EveryCipherAllocationTest, FailuresAreRecorded) {
  const auto& [direction, start] = GetParam();
  for (std::int16_t cipher = 1; cipher <= 5; ++cipher) {
    SCOPED_TRACE("cipher " + std::to_string(cipher));
    EXPECT_GE(SweepCipher({direction, cipher, start}), 1);
  }
}

std::string NameOfCase(const testing::TestParamInfo<std::tuple<DirectionRow, Start>>& test) {
  static constexpr std::array kStarts{"WithPassword", "WithoutPassword", "WithEarlierOutput"};
  const auto& [direction, start] = test.param;
  return std::string(direction.name) + kStarts.at(static_cast<std::size_t>(start));
}

INSTANTIATE_TEST_SUITE_P(InEachDirection, EveryCipherAllocationTest,
                         testing::Combine(testing::Values(kEncryptRow, kDecryptRow),
                                          testing::Values(Start::Password, Start::NoPassword,
                                                          Start::EarlierOutput)),
                         NameOfCase);

}  // namespace
}  // namespace latchkey::test
