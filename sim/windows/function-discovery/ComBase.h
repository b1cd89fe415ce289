#pragma once

#include <objbase.h>

#include <atomic>

inline std::atomic<long> livingObjects = 0;

// ComBase: counts references, and objects alive; knows IUnknown and nothing else.
template <class Interface>
class ComBase : public Interface {
 public:
  ComBase() { ++livingObjects; }
  virtual ~ComBase() { --livingObjects; }
  ComBase(const ComBase&) = delete;
  ComBase& operator=(const ComBase&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, OwnInterface()) ? this : nullptr;
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 private:
  virtual IID OwnInterface() const { return IID_IUnknown; }

  std::atomic<ULONG> references_ = 1;
};
