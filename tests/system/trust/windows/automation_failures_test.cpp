// Failed allocations of strings and arrays, in every member that makes one: the client gets the
// fault for failed memory and no other result, no memory leaks, and the object works afterwards.
#include <cstdio>
#include <functional>

#include "tests/com/automation_memory.h"
#include "tests/com/late_bound/late_client.h"

namespace latchkey::test {
namespace {

constexpr int kMostAllocations = 2000;

class AutomationFailuresTest : public LateClientTest {
 protected:
  AutomationFailuresTest() {
    SAFEARRAY* input = MakeByteArray(TextArray("attack at dawn"));
    const UniqueSafeArray owner(input);
    SAFEARRAY* password = MakeByteArray(TextArray("a secret"));
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(Api()->put_InputData(&input), S_OK);
    EXPECT_EQ(Api()->put_Password(&password), S_OK);
    EXPECT_EQ(Api()->Encrypt(1, 1, &done), S_OK);
  }

  // Makes each allocation of a call fail in turn. `call` returns whether it succeeded, and checks
  // how it failed. Returns the number of failed calls.
  int FailEveryAllocation(const std::function<bool()>& call) {
    EXPECT_TRUE(call());  // makes objects that are made only once
    SetErrorInfo(0, nullptr);
    const long before = LiveAutomationBlocks();
    for (int nth = 1; nth < kMostAllocations; ++nth) {
      FailAutomationAllocation(nth);
      const bool succeeded = call();
      const bool none = AutomationFailurePending();
      FailAutomationAllocation(0);
      SetErrorInfo(0, nullptr);
      EXPECT_EQ(LiveAutomationBlocks(), before) << "allocation " << nth;
      EXPECT_EQ(succeeded, none) << "allocation " << nth;
      if (none) {
        failed_ += nth - 1;
        return nth - 1;
      }
      EXPECT_TRUE(call());
    }
    ADD_FAILURE() << "the allocations do not end";
    return kMostAllocations;
  }

  // Whether the operation itself had the failure: it then succeeds for COM and records the failure.
  bool IsRecorded() {
    VARIANT_BOOL exists = VARIANT_FALSE;
    LONG number = 0;
    EXPECT_EQ(Main()->get_ErrorExists(&exists), S_OK);
    EXPECT_EQ(Main()->get_RTErrorNumber(&number), S_OK);
    EXPECT_TRUE(exists == VARIANT_FALSE || number == 7) << number;
    return exists == VARIANT_TRUE;
  }

  // A member that returns a string or an array, bound early.
  template <class Result, class Call>
  int FailEarly(Call&& call) {
    return FailEveryAllocation([&] {
      Result result = nullptr;
      const HRESULT ended = call(&result);
      EXPECT_TRUE(ended == S_OK || ended == FaultCode(7)) << std::hex << ended;
      EXPECT_EQ(result != nullptr, ended == S_OK);
      const bool recorded = IsRecorded();
      EXPECT_TRUE(Take(result).empty() || !recorded);
      return ended == S_OK && !recorded;
    });
  }

  // The same bound late. Memory may also fail inside the system's own part of the call.
  int FailLate(const wchar_t* member, std::vector<VARIANT> arguments, WORD kind = DISPATCH_METHOD) {
    return FailLate(Api(), member, std::move(arguments), kind);
  }
  int FailLate(IDispatch* object, const wchar_t* member, std::vector<VARIANT> arguments,
               WORD kind) {
    const DISPID id = LateClient(object).IdOf(member);
    DISPID put = DISPID_PROPERTYPUT;
    const bool isPut = kind == DISPATCH_PROPERTYPUT;
    DISPPARAMS given = {arguments.data(), isPut ? &put : nullptr,
                        static_cast<UINT>(arguments.size()), isPut ? 1U : 0U};
    return FailEveryAllocation([&] {
      VARIANT result = OfType(VT_EMPTY);
      EXCEPINFO exception = {};
      const HRESULT ended = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &given, &result,
                                           &exception, nullptr);
      const HRESULT failure = ended == DISP_E_EXCEPTION ? exception.scode : ended;
      EXPECT_TRUE(failure == S_OK || failure == FaultCode(7) || failure == E_OUTOFMEMORY)
          << std::hex << failure;
      EXPECT_EQ(V_VT(&result) != VT_EMPTY, ended == S_OK && !isPut);
      VariantClear(&result);
      SysFreeString(exception.bstrSource);
      SysFreeString(exception.bstrDescription);
      return ended == S_OK && !IsRecorded();
    });
  }

  ~AutomationFailuresTest() override { std::printf("%d allocations failed\n", failed_); }

  UniqueBstr text = Bstr(L"attack at dawn");
  UniqueBstr hex = Bstr(L"616263");
  UniqueSafeArray array{MakeByteArray(TextArray("attack at dawn"))};

 private:
  int failed_ = 0;
};

TEST_F(AutomationFailuresTest, EveryMemberThatReturnsAStringReportsTheFailure) {
  EXPECT_GE(FailEarly<BSTR>([&](BSTR* result) {
              return Api()->CreateHash(text.Get(), 1, VARIANT_TRUE, VARIANT_TRUE, VARIANT_FALSE,
                                       result);
            }),
            1);
  EXPECT_GE(FailEarly<BSTR>([&](BSTR* result) {
              return Api()->CreateRandom(20, VARIANT_TRUE, VARIANT_TRUE, VARIANT_FALSE, result);
            }),
            1);
  EXPECT_GE(FailEarly<BSTR>([&](BSTR* result) {
              SAFEARRAY* bytes = array.Get();
              return Api()->ByteArrayToString(&bytes, result);
            }),
            1);
  EXPECT_GE(
      FailEarly<BSTR>([&](BSTR* result) { return Api()->ConvertStringFromHex(hex.Get(), result); }),
      1);
  EXPECT_GE(FailEarly<BSTR>([&](BSTR* result) {
              VARIANT_BOOL upper = VARIANT_TRUE;
              return Api()->ConvertStringToHex(text.Get(), &upper, result);
            }),
            1);
  EXPECT_GE(FailEarly<BSTR>([&](BSTR* result) { return Main()->get_AppErrorDescription(result); }),
            1);
  EXPECT_GE(FailEarly<BSTR>([&](BSTR* result) { return Main()->get_RTErrorDescription(result); }),
            1);
  EXPECT_GE(FailEarly<BSTR>([&](BSTR* result) {
              VARIANT salt = OfType(VT_EMPTY);
              const HRESULT ended = Api()->CreateSaltValue(2, VARIANT_TRUE, &salt);
              EXPECT_EQ(V_VT(&salt), ended == S_OK ? VT_BSTR : VT_EMPTY);
              if (ended == S_OK) *result = V_BSTR(&salt);
              return ended;
            }),
            1);
}

TEST_F(AutomationFailuresTest, EveryMemberThatReturnsAnArrayReportsTheFailure) {
  EXPECT_GE(
      FailEarly<SAFEARRAY*>([&](SAFEARRAY** result) { return Api()->get_OutputData(result); }), 2);
  EXPECT_GE(FailEarly<SAFEARRAY*>([&](SAFEARRAY** result) { return Api()->get_Password(result); }),
            2);
  EXPECT_GE(FailEarly<SAFEARRAY*>([&](SAFEARRAY** result) {
              VARIANT value = Value(text.Get());
              return Api()->StringToByteArray(&value, result);
            }),
            2);
  // The number becomes a string first.
  EXPECT_GE(FailEarly<SAFEARRAY*>([&](SAFEARRAY** result) {
              VARIANT value = Value(12);
              return Api()->StringToByteArray(&value, result);
            }),
            3);
}

TEST_F(AutomationFailuresTest, LateBoundResultsReportTheFailure) {
  EXPECT_GE(FailLate(L"CreateHash", {Value(true), Value(1), Value(text.Get())}), 1);
  EXPECT_GE(FailLate(L"CreateRandom", {Value(20)}), 1);
  EXPECT_GE(FailLate(L"CreateSaltValue", {Value(true), Value(2)}), 1);
  EXPECT_GE(FailLate(L"ConvertStringFromHex", {Value(hex.Get())}), 1);
  EXPECT_GE(FailLate(L"ConvertStringToHex", {Value(text.Get())}), 1);
  EXPECT_GE(FailLate(L"StringToByteArray", {Value(text.Get())}), 2);
  EXPECT_GE(FailLate(L"OutputData", {}, DISPATCH_PROPERTYGET), 2);
  EXPECT_GE(FailLate(L"Password", {}, DISPATCH_PROPERTYGET), 2);
  EXPECT_GE(FailLate(Main(), L"AppErrorDescription", {}, DISPATCH_PROPERTYGET), 1);
  EXPECT_GE(FailLate(Main(), L"RTErrorDescription", {}, DISPATCH_PROPERTYGET), 1);
}

TEST_F(AutomationFailuresTest, LateBoundArgumentsThatAreCopiedReportTheFailure) {
  EXPECT_GE(FailLate(L"ByteArrayToString", {Value(array.Get())}), 3);
  EXPECT_GE(FailLate(L"InputData", {Value(array.Get())}, DISPATCH_PROPERTYPUT), 2);
  EXPECT_GE(FailLate(L"Password", {Value(array.Get())}, DISPATCH_PROPERTYPUT), 2);
  EXPECT_GE(FailLate(L"ConvertStringToHex", {Value(1234567)}), 2);
}

}  // namespace
}  // namespace latchkey::test
