#include "tests/support/scripted_provider.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>

namespace latchkey::test {

ScriptedProvider::~ScriptedProvider() {
  EXPECT_EQ(OpenHandles(), std::vector<HandleName>()) << "handles left open";
}

void ScriptedProvider::FailAt(std::string_view call, int nth, std::uint32_t error) {
  plan_.At(call, nth, [this, error] { lastError_ = error; });
}

std::vector<HandleName> ScriptedProvider::OpenHandles() const {
  std::vector<HandleName> names;
  for (const auto& [number, handle] : open_) names.push_back(handle.name);
  return names;
}

Bytes ScriptedProvider::Data(const std::uint8_t* data, std::uint32_t length) const {
  return length <= longestData_ ? Bytes(data, data + length) : Bytes();
}

HandleName ScriptedProvider::NameOf(std::uintptr_t handle) const {
  for (const auto& handles : {std::cref(open_), std::cref(closedByThrowing_)}) {
    const auto found = handles.get().find(handle);
    if (found != handles.get().end()) return found->second.name;
  }
  EXPECT_EQ(handle, 0U) << "an unknown handle";
  return kNoHandle;
}

std::uintptr_t ScriptedProvider::RealOf(std::uintptr_t handle, Kind kind) const {
  const auto found = open_.find(handle);
  const bool known = found != open_.end() && found->second.name.kind == kind;
  EXPECT_TRUE(known) << "a handle that is not open: " << handle;
  return known ? found->second.real : 0;
}

template <class Work>
bool ScriptedProvider::Perform(const Call& call, Work&& work) {
  bool done = false;
  try {
    if (!plan_.Take(call.name)) {
      done = work();
      if (!done) lastError_ = real_.GetLastError();
    }
  } catch (...) {
    journal_.Add(call.Throws());
    throw;
  }
  journal_.Add(done ? call : call.Fails());
  return done;
}

template <class Work>
bool ScriptedProvider::PerformClose(const Call& call, Kind kind, std::uintptr_t handle,
                                    Work&& work) {
  bool closed = true;
  auto closing = closedByThrowing_.extract(handle);
  if (!closing) {
    closed = work(RealOf(handle, kind));
    closing = open_.extract(handle);
  }
  try {
    return Perform(call, [closed] { return closed; });
  } catch (...) {
    if (closing) closedByThrowing_.insert(std::move(closing));
    throw;
  }
}

template <class Work>
bool ScriptedProvider::PerformOpen(const Call& call, Kind kind, std::uintptr_t* handle,
                                   Work&& work) {
  const HandleName name{kind, made_[kind] + 1};
  std::uintptr_t real = 0;
  if (!Perform(call.Makes(name), [&] { return work(&real); })) return false;
  made_[kind] = name.number;
  *handle = static_cast<std::uintptr_t>(kind) * 0x10000 + static_cast<std::uintptr_t>(name.number);
  open_[*handle] = {name, real};
  return true;
}

bool ScriptedProvider::CryptAcquireContextA(HCRYPTPROV* phProv, const char* szContainer,
                                            const char* szProvider, std::uint32_t dwProvType,
                                            std::uint32_t dwFlags) {
  return PerformOpen({"CryptAcquireContextA", szContainer, szProvider, dwProvType, dwFlags},
                     Kind::Context, phProv, [&](HCRYPTPROV* real) {
                       return real_.CryptAcquireContextA(real, szContainer, szProvider, dwProvType,
                                                         dwFlags);
                     });
}

bool ScriptedProvider::CryptReleaseContext(HCRYPTPROV hProv, std::uint32_t dwFlags) {
  const auto outlives = [](const auto& entry) { return entry.second.name.kind != Kind::Context; };
  EXPECT_TRUE(std::none_of(open_.begin(), open_.end(), outlives))
      << "a hash or key outlives the provider";
  return PerformClose({"CryptReleaseContext", NameOf(hProv), dwFlags}, Kind::Context, hProv,
                      [&](HCRYPTPROV real) { return real_.CryptReleaseContext(real, dwFlags); });
}

bool ScriptedProvider::CryptCreateHash(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTKEY hKey,
                                       std::uint32_t dwFlags, HCRYPTHASH* phHash) {
  const HCRYPTPROV provider = RealOf(hProv, Kind::Context);
  return PerformOpen({"CryptCreateHash", NameOf(hProv), Algid, NameOf(hKey), dwFlags}, Kind::Hash,
                     phHash, [&](HCRYPTHASH* real) {
                       return real_.CryptCreateHash(provider, Algid, hKey, dwFlags, real);
                     });
}

bool ScriptedProvider::CryptHashData(HCRYPTHASH hHash, const std::uint8_t* pbData,
                                     std::uint32_t dwDataLen, std::uint32_t dwFlags) {
  const HCRYPTHASH hash = RealOf(hHash, Kind::Hash);
  return Perform({"CryptHashData", NameOf(hHash), Data(pbData, dwDataLen), dwDataLen, dwFlags},
                 [&] { return real_.CryptHashData(hash, pbData, dwDataLen, dwFlags); });
}

bool ScriptedProvider::CryptGetHashParam(HCRYPTHASH hHash, std::uint32_t dwParam,
                                         std::uint8_t* pbData, std::uint32_t* pdwDataLen,
                                         std::uint32_t dwFlags) {
  const HCRYPTHASH hash = RealOf(hHash, Kind::Hash);
  return Perform({"CryptGetHashParam", NameOf(hHash), dwParam, *pdwDataLen, dwFlags}, [&] {
    if (!digest_) return real_.CryptGetHashParam(hash, dwParam, pbData, pdwDataLen, dwFlags);
    std::copy_n(digest_->begin(), std::min<std::size_t>(*pdwDataLen, digest_->size()), pbData);
    *pdwDataLen = static_cast<std::uint32_t>(digest_->size());
    return true;
  });
}

bool ScriptedProvider::CryptDestroyHash(HCRYPTHASH hHash) {
  return PerformClose({"CryptDestroyHash", NameOf(hHash)}, Kind::Hash, hHash,
                      [&](HCRYPTHASH real) { return real_.CryptDestroyHash(real); });
}

bool ScriptedProvider::CryptDeriveKey(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTHASH hBaseData,
                                      std::uint32_t dwFlags, HCRYPTKEY* phKey) {
  const HCRYPTPROV provider = RealOf(hProv, Kind::Context);
  const HCRYPTHASH hash = RealOf(hBaseData, Kind::Hash);
  return PerformOpen(
      {"CryptDeriveKey", NameOf(hProv), Algid, NameOf(hBaseData), dwFlags}, Kind::Key, phKey,
      [&](HCRYPTKEY* real) { return real_.CryptDeriveKey(provider, Algid, hash, dwFlags, real); });
}

bool ScriptedProvider::CryptDestroyKey(HCRYPTKEY hKey) {
  return PerformClose({"CryptDestroyKey", NameOf(hKey)}, Kind::Key, hKey,
                      [&](HCRYPTKEY real) { return real_.CryptDestroyKey(real); });
}

bool ScriptedProvider::CryptDuplicateKey(HCRYPTKEY hKey, std::uint32_t* pdwReserved,
                                         std::uint32_t dwFlags, HCRYPTKEY* phKey) {
  const HCRYPTKEY key = RealOf(hKey, Kind::Key);
  return PerformOpen(
      {"CryptDuplicateKey", NameOf(hKey), dwFlags}, Kind::Key, phKey,
      [&](HCRYPTKEY* real) { return real_.CryptDuplicateKey(key, pdwReserved, dwFlags, real); });
}

bool ScriptedProvider::CryptSetKeyParam(HCRYPTKEY hKey, std::uint32_t dwParam,
                                        const std::uint8_t* pbData, std::uint32_t dwFlags) {
  const HCRYPTKEY key = RealOf(hKey, Kind::Key);
  return Perform(
      {"CryptSetKeyParam", NameOf(hKey), dwParam, Data(pbData, sizeof(std::uint32_t)), dwFlags},
      [&] { return real_.CryptSetKeyParam(key, dwParam, pbData, dwFlags); });
}

bool ScriptedProvider::CryptEncrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final,
                                    std::uint32_t dwFlags, std::uint8_t* pbData,
                                    std::uint32_t* pdwDataLen, std::uint32_t dwBufLen) {
  const HCRYPTKEY key = RealOf(hKey, Kind::Key);
  return Perform(
      {"CryptEncrypt", NameOf(hKey), NameOf(hHash), Final, dwFlags, Data(pbData, *pdwDataLen),
       *pdwDataLen, dwBufLen},
      [&] { return real_.CryptEncrypt(key, hHash, Final, dwFlags, pbData, pdwDataLen, dwBufLen); });
}

bool ScriptedProvider::CryptDecrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final,
                                    std::uint32_t dwFlags, std::uint8_t* pbData,
                                    std::uint32_t* pdwDataLen) {
  const HCRYPTKEY key = RealOf(hKey, Kind::Key);
  return Perform(
      {"CryptDecrypt", NameOf(hKey), NameOf(hHash), Final, dwFlags, Data(pbData, *pdwDataLen),
       *pdwDataLen},
      [&] { return real_.CryptDecrypt(key, hHash, Final, dwFlags, pbData, pdwDataLen); });
}

bool ScriptedProvider::CryptGenRandom(HCRYPTPROV hProv, std::uint32_t dwLen,
                                      std::uint8_t* pbBuffer) {
  const HCRYPTPROV provider = RealOf(hProv, Kind::Context);
  return Perform({"CryptGenRandom", NameOf(hProv), dwLen, Data(pbBuffer, dwLen)}, [&] {
    if (!randomBytes_) return real_.CryptGenRandom(provider, dwLen, pbBuffer);
    for (std::size_t i = 0; i < dwLen; ++i) {
      pbBuffer[i] = (*randomBytes_)[i % randomBytes_->size()];
    }
    return true;
  });
}

}  // namespace latchkey::test
