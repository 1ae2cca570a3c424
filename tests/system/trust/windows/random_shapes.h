// Variants of every shape that a late-bound client could send, each with its expected value.
#pragma once

#include <deque>
#include <memory>

#include "tests/com/late_bound/late_client.h"
#include "tests/system/trust/random_source.h"

namespace latchkey::test {

// The shape of an array for a member that takes bytes.
// NoElementZero: one dimension of bytes whose bounds exclude element 0, or without any element.
enum class ArrayKind { Readable, NoElementZero, WrongShape, NoBytes };

struct Shape {
  VARIANT value = {};    // to be sent
  VARIANT plain = {};    // the value it refers to, itself not a reference; owned by the maker
  bool readable = true;  // whether it has a value: no null or circular reference, a known type
  bool leftOut = false;
  ArrayKind array = ArrayKind::NoBytes;
};

// An object that only counts its references, for variants of objects.
class CountedObject final : public IDispatch {
 public:
  [[nodiscard]] ULONG References() const { return references_; }

  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override { return --references_; }
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    return DISP_E_MEMBERNOTFOUND;
  }

 private:
  ULONG references_ = 1;
};

// Makes shapes and owns all values that they refer to.
class ShapeMaker {
 public:
  ShapeMaker(RandomSource& random, CountedObject& object) : random_(random), object_(object) {}
  ShapeMaker(const ShapeMaker&) = delete;
  ShapeMaker& operator=(const ShapeMaker&) = delete;
  ~ShapeMaker();

  Shape Make();

  // Whether every remaining array has only the locks it was made with.
  [[nodiscard]] bool LocksAreAsMade() const;

 private:
  struct OwnedArray {
    SAFEARRAY* array;
    ULONG locks;
  };

  Shape MakeScalar();
  Shape MakeText();
  Shape MakeArray();
  Shape MakeUnreadable();
  Shape ThroughReferences(Shape shape);
  SAFEARRAY* NewArray(VARTYPE type);

  RandomSource& random_;
  CountedObject& object_;
  std::deque<VARIANT> variables_;
  std::deque<OwnedArray> arrays_;
  std::deque<BSTR> texts_;
};

}  // namespace latchkey::test
