#include "cli/records/column_transform.h"

#include "crypto/algorithms.h"
#include "crypto/message_digest.h"
#include "crypto/open_provider.h"

namespace latchkey::cli {
namespace {

class CipherTransform final : public ColumnTransform {
 public:
  CipherTransform(const ReadyKey& key, CipherDirection direction) noexcept
      : key_(key.key), hint_(key.hint), direction_(direction) {}

  // On one thread: other threads process other blocks.
  void Run(const Records& values, ColumnResult& result) override {
    RecordBatch batch(key_, direction_, values);
    result.Renew(values.count, batch.RoomNeeded());
    batch.Run(1, {ResultOffsets(result.offsets.data()), result.data.All(), result.statuses,
                  StatusCodes{0, 1, 1}});
  }

  [[nodiscard]] std::size_t MissingBytes(std::size_t length) const noexcept override {
    return Decrypts() ? key_.Settings().MissingBytes(length) : 0;
  }

  [[nodiscard]] bool TakesEmpty() const noexcept override { return !Decrypts(); }

  [[nodiscard]] Failure FailureOfValue() const override {
    return WithDecryptionHint(FailureAt(SitesOf(direction_).cipher), hint_);
  }

 private:
  [[nodiscard]] bool Decrypts() const noexcept { return direction_ == CipherDirection::Decrypt; }

  const DerivedKey& key_;
  const std::string& hint_;
  CipherDirection direction_;
};

class DigestTransform final : public ColumnTransform {
 public:
  explicit DigestTransform(std::int16_t hash)
      : algorithm_(FindHashAlgorithm(hash)), context_(OpenSharedProvider(false)) {
    if (!context_) throw CommandError(FailureOfValue());
  }

  void Run(const Records& values, ColumnResult& result) override {
    const auto length = static_cast<std::size_t>(algorithm_.length);
    result.Renew(values.count, values.count * length);
    for (std::size_t i = 0; i < values.count; ++i) {
      MessageDigest digest;
      const bool isDone = digest.Begin(context_, algorithm_.id) && digest.Add(values[i]) &&
                          digest.Read(result.data.All().subspan(i * length, length));
      if (!isDone) throw CommandError(FailureOfValue());
      result.offsets[i + 1] = static_cast<std::int64_t>((i + 1) * length);
    }
  }

  [[nodiscard]] Failure FailureOfValue() const override { return FailureAt(check::kHashProvider); }

 private:
  HashAlgorithm algorithm_;
  UniqueContext context_;
};

}  // namespace

void ColumnResult::Renew(std::size_t count, std::size_t room) {
  data.Renew(room);
  offsets.assign(count + 1, 0);
  statuses.assign(count, 0);
}

std::size_t ColumnTransform::MissingBytes(std::size_t /*length*/) const noexcept { return 0; }

std::unique_ptr<ColumnTransform> MakeCipherTransform(const ReadyKey& key,
                                                     CipherDirection direction) {
  return std::make_unique<CipherTransform>(key, direction);
}

std::unique_ptr<ColumnTransform> MakeDigestTransform(std::int16_t hash) {
  return std::make_unique<DigestTransform>(hash);
}

}  // namespace latchkey::cli
