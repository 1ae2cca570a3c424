#include "tests/com/late_bound/late_client.h"

#include <algorithm>

namespace latchkey::test {
namespace {

void Read(VARIANT& result, Outcome& outcome) {
  outcome.type = V_VT(&result);
  if (outcome.type == VT_BSTR)
    outcome.text = {V_BSTR(&result), V_BSTR(&result) + SysStringLen(V_BSTR(&result))};
  if (outcome.type == (VT_ARRAY | VT_UI1)) outcome.bytes = ElementsOf(V_ARRAY(&result));
  if (outcome.type == VT_BOOL) outcome.number = V_BOOL(&result);
  if (outcome.type == VT_I2) outcome.number = V_I2(&result);
  if (outcome.type == VT_I4) outcome.number = V_I4(&result);
}

}  // namespace

void ExpectException(const Outcome& outcome, int number, const wchar_t* description) {
  EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
  EXPECT_EQ(outcome.scode, FaultCode(number));
  EXPECT_EQ(outcome.source, L"Latchkey.clsCryptoAPI");
  EXPECT_EQ(outcome.description, description);
}

DISPID LateClient::IdOf(const wchar_t* name) const {
  std::wstring writable = name;
  wchar_t* names = writable.data();
  DISPID id = 0;
  const HRESULT found = object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
  EXPECT_EQ(SUCCEEDED(found), id != DISPID_UNKNOWN);
  return id;
}

Outcome LateClient::Call(const wchar_t* name, std::vector<VARIANT> arguments) const {
  return CallNamed(name, {}, std::move(arguments));
}

Outcome LateClient::Get(const wchar_t* name) const {
  DISPPARAMS none = {};
  return Invoke(IdOf(name), DISPATCH_PROPERTYGET, &none);
}

Outcome LateClient::Put(const wchar_t* name, VARIANT value, WORD kind) const {
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS arguments = {&value, &put, 1, 1};
  return Invoke(IdOf(name), kind, &arguments);
}

Outcome LateClient::CallNamed(const wchar_t* name,
                              const std::vector<std::pair<DISPID, VARIANT>>& named,
                              std::vector<VARIANT> arguments) const {
  std::vector<DISPID> ids;
  std::vector<VARIANT> all;
  for (const auto& [id, value] : named) {
    ids.push_back(id);
    all.push_back(value);
  }
  all.insert(all.end(), arguments.rbegin(), arguments.rend());
  DISPPARAMS given = {all.data(), ids.data(), static_cast<UINT>(all.size()),
                      static_cast<UINT>(ids.size())};
  return Invoke(IdOf(name), DISPATCH_METHOD | DISPATCH_PROPERTYGET, &given);
}

Outcome LateClient::Invoke(DISPID member, WORD flags, DISPPARAMS* arguments) const {
  Outcome outcome;
  ScopedVariant result;
  EXCEPINFO exception = {};
  outcome.result = object_->Invoke(member, IID_NULL, locale_, flags, arguments, &result.Get(),
                                   &exception, &outcome.badArgument);
  outcome.scode = exception.scode;
  outcome.source = Take(exception.bstrSource);
  outcome.description = Take(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  Read(result.Get(), outcome);
  return outcome;
}

}  // namespace latchkey::test
