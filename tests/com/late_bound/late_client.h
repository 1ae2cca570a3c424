// A late-bound client: calls by name through IDispatch, with arguments of any shape.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "tests/com/com_client.h"

namespace latchkey::test {

// The outcome of a call.
struct Outcome {
  HRESULT result = S_OK;
  HRESULT scode = S_OK;  // of the exception, like its source and description
  std::wstring source;
  std::wstring description;
  UINT badArgument = 0;
  std::wstring text;  // of a text result
  Bytes bytes;        // likewise
  VARTYPE type = VT_EMPTY;
  LONG number = 0;  // of a Boolean or an integer
};

// Checks that the call failed with this fault.
void ExpectException(const Outcome& outcome, int number, const wchar_t* description);

class LateClient {
 public:
  explicit LateClient(IDispatch* object) : object_(object) {}

  // Sets the locale of later calls.
  void Speak(LCID locale) { locale_ = locale; }

  // DISPID_UNKNOWN for an unknown name.
  [[nodiscard]] DISPID IdOf(const wchar_t* name) const;

  // Arguments are in the order of the member's declaration.
  [[nodiscard]] Outcome Call(const wchar_t* name, std::vector<VARIANT> arguments = {}) const;
  [[nodiscard]] Outcome Get(const wchar_t* name) const;
  [[nodiscard]] Outcome Put(const wchar_t* name, VARIANT value,
                            WORD kind = DISPATCH_PROPERTYPUT) const;

  // With arguments by name, given by their positions, before those by position.
  [[nodiscard]] Outcome CallNamed(const wchar_t* name,
                                  const std::vector<std::pair<DISPID, VARIANT>>& named,
                                  std::vector<VARIANT> arguments = {}) const;

  // Passes the arguments unchanged.
  [[nodiscard]] Outcome Invoke(DISPID member, WORD flags, DISPPARAMS* arguments) const;

 private:
  IDispatch* object_;
  LCID locale_ = LOCALE_USER_DEFAULT;
};

class LateClientTest : public ClientTest {
 protected:
  LateClient api{Api()};
  LateClient main{Main()};
};

}  // namespace latchkey::test
