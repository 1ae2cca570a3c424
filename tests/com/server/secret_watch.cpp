#include "tests/com/server/secret_watch.h"

#include <gtest/gtest.h>

#include "com/windows/automation_prelude.h"

namespace latchkey::test {
namespace {

// Stays registered until the process ends: COM calls a spy while any block lives that was allocated
// under it.
class MemorySpy final : public IMallocSpy {
 public:
  std::string_view secret;
  int freed = 0;
  int freedWithSecret = 0;

  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override {
    const bool known =
        IsEqualIID(interfaceId, IID_IUnknown) || IsEqualIID(interfaceId, IID_IMallocSpy);
    *object = known ? static_cast<IMallocSpy*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }

  STDMETHODIMP_(void*) PreFree(void* block, BOOL /*spied*/) override {
    Look(block);
    return block;
  }
  STDMETHODIMP_(SIZE_T)
  PreRealloc(void* block, SIZE_T size, void** result, BOOL /*spied*/) override {
    *result = block;
    return size;
  }
  STDMETHODIMP_(SIZE_T) PreAlloc(SIZE_T size) override { return size; }
  STDMETHODIMP_(void*) PostAlloc(void* block) override { return block; }
  STDMETHODIMP_(void) PostFree(BOOL /*spied*/) override {}
  STDMETHODIMP_(void*) PostRealloc(void* block, BOOL /*spied*/) override { return block; }
  STDMETHODIMP_(void*) PreGetSize(void* block, BOOL /*spied*/) override { return block; }
  STDMETHODIMP_(SIZE_T) PostGetSize(SIZE_T size, BOOL /*spied*/) override { return size; }
  STDMETHODIMP_(void*) PreDidAlloc(void* block, BOOL /*spied*/) override { return block; }
  STDMETHODIMP_(int) PostDidAlloc(void* /*block*/, BOOL /*spied*/, int result) override {
    return result;
  }
  STDMETHODIMP_(void) PreHeapMinimize() override {}
  STDMETHODIMP_(void) PostHeapMinimize() override {}

 private:
  // COM's allocator is the heap of the process.
  void Look(const void* block) {
    const SIZE_T size = secret.empty() ? 0 : HeapSize(GetProcessHeap(), 0, block);
    if (size == 0 || size == static_cast<SIZE_T>(-1)) return;
    const std::string_view content(static_cast<const char*>(block), size);
    ++freed;
    if (content.find(secret) != std::string_view::npos) ++freedWithSecret;
  }
};

MemorySpy& Spy() {
  static MemorySpy spy;
  static const HRESULT registered = CoRegisterMallocSpy(&spy);
  EXPECT_EQ(registered, S_OK);
  return spy;
}

}  // namespace

SecretWatch::SecretWatch(std::string_view secret) {
  MemorySpy& spy = Spy();
  spy.freed = 0;
  spy.freedWithSecret = 0;
  spy.secret = secret;
}

SecretWatch::~SecretWatch() { Spy().secret = {}; }

int SecretWatch::Freed() const { return Spy().freed; }

int SecretWatch::FreedWithSecret() const { return Spy().freedWithSecret; }

}  // namespace latchkey::test
