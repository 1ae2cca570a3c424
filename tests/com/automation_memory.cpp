#include "tests/com/automation_memory.h"

#include <objbase.h>

#include <atomic>
#include <stdexcept>

namespace latchkey::test {
namespace {

// Stays registered until the process ends: COM calls a spy while any block lives that was allocated
// under it.
class AllocationSpy final : public IMallocSpy {
 public:
  std::atomic<int> left{0};
  std::atomic<DWORD> thread{0};
  std::atomic<long> live{0};
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

  // A size of 0 makes the allocation fail.
  STDMETHODIMP_(SIZE_T) PreAlloc(SIZE_T size) override { return Fails() ? 0 : size; }
  STDMETHODIMP_(void*) PostAlloc(void* block) override {
    if (block != nullptr) ++live;
    return block;
  }
  STDMETHODIMP_(SIZE_T)
  PreRealloc(void* block, SIZE_T size, void** result, BOOL /*spied*/) override {
    *result = block;
    return Fails() ? 0 : size;
  }
  STDMETHODIMP_(void*) PostRealloc(void* block, BOOL /*spied*/) override { return block; }
  STDMETHODIMP_(void*) PreFree(void* block, BOOL spied) override {
    if (block != nullptr && spied) --live;
    Look(block);
    return block;
  }
  STDMETHODIMP_(void) PostFree(BOOL /*spied*/) override {}
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

  bool Fails() { return left > 0 && thread == GetCurrentThreadId() && --left == 0; }
};

// Makes freed strings return to the allocator at once. The function for this is in no header.
void TurnOffStringCache() {
  const HMODULE automation = LoadLibraryW(L"oleaut32.dll");
  const auto turnOff = reinterpret_cast<void(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(automation, "SetOaNoCache")));
  if (turnOff == nullptr) throw std::runtime_error("the string cache cannot be turned off");
  turnOff();
}

AllocationSpy& Spy() {
  static AllocationSpy spy;
  static const bool ready = [] {
    TurnOffStringCache();
    if (FAILED(CoRegisterMallocSpy(&spy))) throw std::runtime_error("no spy can be registered");
    return true;
  }();
  static_cast<void>(ready);
  return spy;
}

}  // namespace

void FailAutomationAllocation(int nth) {
  Spy().thread = GetCurrentThreadId();
  Spy().left = nth;
}

bool AutomationFailurePending() { return Spy().left > 0; }

long LiveAutomationBlocks() { return Spy().live; }

SecretWatch::SecretWatch(std::string_view secret) {
  AllocationSpy& spy = Spy();
  spy.freed = 0;
  spy.freedWithSecret = 0;
  spy.secret = secret;
}

SecretWatch::~SecretWatch() { Spy().secret = {}; }

int SecretWatch::Freed() const { return Spy().freed; }

int SecretWatch::FreedWithSecret() const { return Spy().freedWithSecret; }

}  // namespace latchkey::test
