// Plays random sequences of calls on a component and records everything that a client sees.
#pragma once

#include <string>

#include "tests/system/trust/component.h"
#include "tests/system/trust/random_source.h"
#include "tests/system/trust/transcript.h"

namespace latchkey::test {

// After each call the transcript has its outcome, OutputData, Password and the whole record. Random
// results (random data, salts, a hash over random letters) are recorded by their shape only. The
// calls depend only on the random source and on the results of earlier calls: two components with
// the same results write the same transcript.
class CasePlayer {
 public:
  CasePlayer(Component& component, RandomSource random, Transcript& transcript)
      : component_(component), random_(random), transcript_(transcript) {}

  // A case: a fresh service object and a few calls, sometimes with another service object or entry
  // object in between, or without an entry object. Returns the number of calls.
  std::uint64_t Play();

  // One call. Requires a service object.
  void Step();

  // Makes a fresh service object and, if missing, an entry object.
  void Begin();

 private:
  using Member = std::string (CasePlayer::*)();
  struct Weighted {
    unsigned weight;
    Member member;
  };
  static const Weighted kSteps[];

  // Each draws its arguments, makes one call and returns the outcome in readable form.
  std::string PutInputData();
  std::string ReturnOutput();
  std::string PutPassword();
  std::string PutEnhancedProvider();
  std::string PutUseDefaultPwd();
  std::string CreateHash();
  std::string CreateRandom();
  std::string CreateSaltValue();
  std::string Encrypt();
  std::string Decrypt();
  std::string ByteArrayToString();
  std::string StringToByteArray();
  std::string ConvertStringFromHex();
  std::string ConvertStringToHex();

  Member DrawStep();
  std::int16_t DrawNumber();
  void ChangeObjects();
  void WriteState();

  Component& component_;
  RandomSource random_;
  Transcript& transcript_;
  bool usesDefaultPassword_ = true;
  std::int16_t lastHash_ = 0;  // of the last Encrypt
  std::int16_t lastCipher_ = 0;
};

}  // namespace latchkey::test
