#include "tests/support/scripted_provider.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "tests/support/bytes.h"

namespace latchkey::test {
namespace {

// Longer data is entered by its length alone.
constexpr std::size_t kLongestShownData = 64;

std::string HexNumber(std::uint32_t number) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%04X", number);
  return text.data();
}

std::string Quoted(const char* text) {
  return text == nullptr ? "null" : "\"" + std::string(text) + "\"";
}

std::string Data(const std::uint8_t* data, std::uint32_t length) {
  if (length == 0) return "-";
  if (length > kLongestShownData) return "...";
  return Hex(std::span(data, length));
}

std::string Joined(const std::vector<std::string>& parts) {
  std::string joined;
  for (const std::string& part : parts) joined += (joined.empty() ? "" : ", ") + part;
  return joined;
}

}  // namespace

ScriptedProvider::~ScriptedProvider() {
  EXPECT_EQ(OpenHandles(), std::vector<std::string>()) << "handles left open";
}

void ScriptedProvider::FailAt(std::string_view call, int nth, std::uint32_t error) {
  plan_.At(call, nth, [this, error] { lastError_ = error; });
}

std::vector<std::string> ScriptedProvider::OpenHandles() const {
  std::vector<std::string> names;
  for (const auto& [number, handle] : open_) names.push_back(handle.name);
  return names;
}

std::string ScriptedProvider::NameOf(std::uintptr_t handle) const {
  if (handle == 0) return "0";
  const auto found = open_.find(handle);
  return found != open_.end() ? found->second.name : "unknown";
}

std::uintptr_t ScriptedProvider::RealOf(std::uintptr_t handle, Kind kind) const {
  const auto found = open_.find(handle);
  const bool known = found != open_.end() && found->second.kind == kind;
  EXPECT_TRUE(known) << "a handle that is not open: " << handle;
  return known ? found->second.real : 0;
}

bool ScriptedProvider::PassOn(bool result) {
  if (!result) lastError_ = real_->GetLastError();
  return result;
}

template <class Work>
bool ScriptedProvider::Perform(const char* call, const Arguments& arguments, Work&& work) {
  const std::string entry = std::string(call) + "(" + Joined(arguments) + ")";
  bool done = false;
  try {
    done = !plan_.Take(call) && work();
  } catch (...) {
    journal_.Add(entry + " threw");
    throw;
  }
  journal_.Add(done ? entry : entry + " failed");
  return done;
}

template <class Work>
bool ScriptedProvider::PerformClose(const char* call, Kind kind, std::uintptr_t handle,
                                    Arguments arguments, Work&& work) {
  bool closed = true;
  auto closing = closedByThrowing_.extract(handle);
  if (!closing) {
    const std::uintptr_t real = RealOf(handle, kind);
    closed = real_ == nullptr || PassOn(work(real));
    closing = open_.extract(handle);
  }
  arguments.insert(arguments.begin(), closing ? closing.mapped().name : "unknown");
  try {
    return Perform(call, arguments, [closed] { return closed; });
  } catch (...) {
    if (closing) closedByThrowing_.insert(std::move(closing));
    throw;
  }
}

template <class Work>
bool ScriptedProvider::PerformOpen(const char* call, Kind kind, const Arguments& arguments,
                                   std::uintptr_t* handle, Work&& work) {
  static constexpr std::array kNames{"context", "hash", "key"};
  std::uintptr_t real = 0;
  if (!Perform(call, arguments, [&] { return real_ == nullptr || PassOn(work(&real)); })) {
    return false;
  }
  const int number = ++made_[kind];
  const auto group = static_cast<std::size_t>(kind);
  *handle = (group + 1) * 0x10000 + static_cast<std::uintptr_t>(number);
  open_[*handle] = {kind, kNames.at(group) + std::to_string(number), real};
  journal_.AppendToLast(" = " + open_[*handle].name);
  return true;
}

bool ScriptedProvider::CryptAcquireContextA(HCRYPTPROV* phProv, const char* szContainer,
                                            const char* szProvider, std::uint32_t dwProvType,
                                            std::uint32_t dwFlags) {
  return PerformOpen(
      "CryptAcquireContextA", Kind::Context,
      {Quoted(szContainer), Quoted(szProvider), std::to_string(dwProvType), HexNumber(dwFlags)},
      phProv, [&](HCRYPTPROV* real) {
        return real_->CryptAcquireContextA(real, szContainer, szProvider, dwProvType, dwFlags);
      });
}

bool ScriptedProvider::CryptReleaseContext(HCRYPTPROV hProv, std::uint32_t dwFlags) {
  const auto outlives = [](const auto& entry) { return entry.second.kind != Kind::Context; };
  EXPECT_TRUE(std::none_of(open_.begin(), open_.end(), outlives))
      << "a hash or key outlives the provider";
  return PerformClose("CryptReleaseContext", Kind::Context, hProv, {std::to_string(dwFlags)},
                      [&](HCRYPTPROV real) { return real_->CryptReleaseContext(real, dwFlags); });
}

bool ScriptedProvider::CryptCreateHash(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTKEY hKey,
                                       std::uint32_t dwFlags, HCRYPTHASH* phHash) {
  const HCRYPTPROV provider = RealOf(hProv, Kind::Context);
  return PerformOpen("CryptCreateHash", Kind::Hash,
                     {NameOf(hProv), HexNumber(Algid), NameOf(hKey), std::to_string(dwFlags)},
                     phHash, [&](HCRYPTHASH* real) {
                       return real_->CryptCreateHash(provider, Algid, hKey, dwFlags, real);
                     });
}

bool ScriptedProvider::CryptHashData(HCRYPTHASH hHash, const std::uint8_t* pbData,
                                     std::uint32_t dwDataLen, std::uint32_t dwFlags) {
  const HCRYPTHASH hash = RealOf(hHash, Kind::Hash);
  return Perform(
      "CryptHashData",
      {NameOf(hHash), Data(pbData, dwDataLen), std::to_string(dwDataLen), std::to_string(dwFlags)},
      [&] {
        return real_ == nullptr || PassOn(real_->CryptHashData(hash, pbData, dwDataLen, dwFlags));
      });
}

bool ScriptedProvider::CryptGetHashParam(HCRYPTHASH hHash, std::uint32_t dwParam,
                                         std::uint8_t* pbData, std::uint32_t* pdwDataLen,
                                         std::uint32_t dwFlags) {
  const HCRYPTHASH hash = RealOf(hHash, Kind::Hash);
  return Perform("CryptGetHashParam",
                 {NameOf(hHash), std::to_string(dwParam), std::to_string(*pdwDataLen),
                  std::to_string(dwFlags)},
                 [&] {
                   if (digest_) {
                     const std::size_t room = std::min<std::size_t>(*pdwDataLen, digest_->size());
                     std::copy_n(digest_->begin(), room, pbData);
                     *pdwDataLen = static_cast<std::uint32_t>(digest_->size());
                     return true;
                   }
                   return real_ == nullptr || PassOn(real_->CryptGetHashParam(hash, dwParam, pbData,
                                                                              pdwDataLen, dwFlags));
                 });
}

bool ScriptedProvider::CryptDestroyHash(HCRYPTHASH hHash) {
  return PerformClose("CryptDestroyHash", Kind::Hash, hHash, {},
                      [&](HCRYPTHASH real) { return real_->CryptDestroyHash(real); });
}

bool ScriptedProvider::CryptDeriveKey(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTHASH hBaseData,
                                      std::uint32_t dwFlags, HCRYPTKEY* phKey) {
  const HCRYPTPROV provider = RealOf(hProv, Kind::Context);
  const HCRYPTHASH hash = RealOf(hBaseData, Kind::Hash);
  return PerformOpen(
      "CryptDeriveKey", Kind::Key,
      {NameOf(hProv), HexNumber(Algid), NameOf(hBaseData), std::to_string(dwFlags)}, phKey,
      [&](HCRYPTKEY* real) { return real_->CryptDeriveKey(provider, Algid, hash, dwFlags, real); });
}

bool ScriptedProvider::CryptDestroyKey(HCRYPTKEY hKey) {
  return PerformClose("CryptDestroyKey", Kind::Key, hKey, {},
                      [&](HCRYPTKEY real) { return real_->CryptDestroyKey(real); });
}

bool ScriptedProvider::CryptSetKeyParam(HCRYPTKEY hKey, std::uint32_t dwParam,
                                        const std::uint8_t* pbData, std::uint32_t dwFlags) {
  const HCRYPTKEY key = RealOf(hKey, Kind::Key);
  return Perform("CryptSetKeyParam",
                 {NameOf(hKey), std::to_string(dwParam), Data(pbData, sizeof(std::uint32_t)),
                  std::to_string(dwFlags)},
                 [&] {
                   return real_ == nullptr ||
                          PassOn(real_->CryptSetKeyParam(key, dwParam, pbData, dwFlags));
                 });
}

bool ScriptedProvider::CryptEncrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final,
                                    std::uint32_t dwFlags, std::uint8_t* pbData,
                                    std::uint32_t* pdwDataLen, std::uint32_t dwBufLen) {
  const HCRYPTKEY key = RealOf(hKey, Kind::Key);
  return Perform("CryptEncrypt",
                 {NameOf(hKey), NameOf(hHash), Final ? "final" : "more", std::to_string(dwFlags),
                  Data(pbData, *pdwDataLen), std::to_string(*pdwDataLen), std::to_string(dwBufLen)},
                 [&] {
                   return real_ == nullptr ||
                          PassOn(real_->CryptEncrypt(key, hHash, Final, dwFlags, pbData, pdwDataLen,
                                                     dwBufLen));
                 });
}

bool ScriptedProvider::CryptDecrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final,
                                    std::uint32_t dwFlags, std::uint8_t* pbData,
                                    std::uint32_t* pdwDataLen) {
  const HCRYPTKEY key = RealOf(hKey, Kind::Key);
  return Perform("CryptDecrypt",
                 {NameOf(hKey), NameOf(hHash), Final ? "final" : "more", std::to_string(dwFlags),
                  Data(pbData, *pdwDataLen), std::to_string(*pdwDataLen)},
                 [&] {
                   return real_ == nullptr || PassOn(real_->CryptDecrypt(key, hHash, Final, dwFlags,
                                                                         pbData, pdwDataLen));
                 });
}

bool ScriptedProvider::CryptGenRandom(HCRYPTPROV hProv, std::uint32_t dwLen,
                                      std::uint8_t* pbBuffer) {
  const HCRYPTPROV provider = RealOf(hProv, Kind::Context);
  return Perform(
      "CryptGenRandom", {NameOf(hProv), std::to_string(dwLen), Data(pbBuffer, dwLen)}, [&] {
        if (randomBytes_) {
          for (std::size_t i = 0; i < dwLen; ++i) {
            pbBuffer[i] = (*randomBytes_)[i % randomBytes_->size()];
          }
          return true;
        }
        return real_ == nullptr || PassOn(real_->CryptGenRandom(provider, dwLen, pbBuffer));
      });
}

}  // namespace latchkey::test
