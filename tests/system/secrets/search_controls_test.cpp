// The search must find a copy left on purpose, of each kind of secret, in each form and in each
// place where an operation could leave one.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <thread>

#include "tests/support/signal.h"
#include "tests/support/test_seed.h"
#include "tests/system/secrets/secret_search.h"

namespace latchkey::test {
namespace {

using Copies = SecretSearch::Copies;
using Look = std::function<void()>;

struct Kind {
  const char* name = nullptr;
  std::size_t length = 0;
  bool letters = false;  // or bytes that are other numbers as characters
  std::size_t part = 8;
};
constexpr std::array<Kind, 4> kKinds{{{"password", 48, true},
                                      {"plaintext", 48, true},
                                      {"digest", 20, false},
                                      {"salt", 24, true, SecretSearch::kLongPart}}};

Secret NewSecret(const Kind& kind) {
  if (kind.letters) return Secret::Random(kind.length);
  WipedBytes bytes(kind.length);
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(0x80U | (SeededEngine()() & 0x1FU));
  }
  return Secret(bytes);
}

// At the end of the block: the allocator overwrites the beginning of a freed block.
template <class Element>
void Leave(const Secret& secret, std::span<Element> room) {
  secret.CopyTo(room.last(secret.Size()));
  ForgetRegisters();
}

template <class Element>
using Room = std::array<Element, 64>;

template <class Element>
void InALiveBlock(const Secret& secret, const Look& look) {
  const auto block = std::make_unique<Room<Element>>();
  Leave<Element>(secret, *block);
  look();
}

template <class Element>
void InAFreedBlock(const Secret& secret, const Look& look) {
  InALiveBlock<Element>(secret, [] {});
  look();
}

template <class Element>
void OnTheStack(const Secret& secret, const Look& look) {
  Room<Element> frame{};
  Leave<Element>(secret, frame);
  look();
}

// Far enough down that later calls do not overwrite it.
template <class Element>
void BelowTheStack(const Secret& secret, const Look& look) {
  const Look leave = [&] {
    std::array<Element, 16384> frame{};
    Leave<Element>(secret, std::span(frame).first(secret.Size()));
  };
  leave();
  look();
}

template <class Element>
void OnTheStackOfAnotherThread(const Secret& secret, const Look& look) {
  Signal left;
  Signal looked;
  std::thread other([&] {
    OnTheStack<Element>(secret, [&] {
      left.Give();
      looked.Await();
    });
  });
  left.Await();
  look();
  looked.Give();
  other.join();
}

template <class Element>
void InStaticData(const Secret& secret, const Look& look) {
  static Room<Element> data;
  Leave<Element>(secret, data);
  look();
}

// Each copy is of a new secret, since the earlier ones remain.
template <class Element>
void ExpectFoundInEveryPlace(const Kind& kind, std::size_t index) {
  using Place = void (*)(const Secret&, const Look&);
  const std::array<std::pair<const char*, Place>, 6> places{
      {{"a live block", &InALiveBlock<Element>},
       {"a freed block", &InAFreedBlock<Element>},
       {"the stack", &OnTheStack<Element>},
       {"a frame that has ended", &BelowTheStack<Element>},
       {"another thread's stack", &OnTheStackOfAnotherThread<Element>},
       {"static data", &InStaticData<Element>}}};
  for (const auto& [name, leave] : places) {
    const Secret secret = NewSecret(kind);
    SecretSearch search;
    search.Add(index, secret, kind.part);
    EXPECT_EQ(search.Count(), Copies{}) << name << ", before the copy is made";
    Copies one{};
    one.at(index) = 1;
    leave(secret, [&, place = name] { EXPECT_EQ(search.Count(), one) << place; });
  }
}

TEST(SearchControlsTest, ALeftCopyOfEveryKindIsFoundInEveryPlace) {
  for (std::size_t index = 0; index < kKinds.size(); ++index) {
    const Kind& kind = kKinds.at(index);
    SCOPED_TRACE(kind.name);
    {
      SCOPED_TRACE("as bytes");
      ExpectFoundInEveryPlace<std::uint8_t>(kind, index);
    }
    {
      SCOPED_TRACE("as characters");
      ExpectFoundInEveryPlace<char16_t>(kind, index);
    }
  }
}

TEST(SearchControlsTest, CopiesOfBothFormsAndOfSeveralSecretsAreCounted) {
  const Secret first = Secret::Random(48);
  const Secret second = Secret::Random(48);
  SecretSearch search;
  search.Add(0, first);
  search.Add(1, second);
  {
    const auto bytes = first.Bytes();
    const auto moreBytes = first.Bytes();
    const auto characters = first.Characters();
    const auto other = second.Characters();
    ForgetRegisters();
    EXPECT_EQ(search.Count(), (Copies{3, 1}));
  }
  ForgetRegisters();
  EXPECT_EQ(search.Count(), Copies{}) << "what was wiped";
}

}  // namespace
}  // namespace latchkey::test
