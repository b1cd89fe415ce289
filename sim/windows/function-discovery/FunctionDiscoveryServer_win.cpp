// Function Discovery, as far as the agent asks it: a COM server that finds the devices of a script by their PnP-X
// identifier. "regsvr32 function-discovery.dll" makes it the Function Discovery of a Wine prefix, which has none.
#include <windows.h>

#include <cstring>
#include <string>

#include "ComBase.h"
#include "DiscoveryScript.h"
#include "FunctionDiscoveryInterfaces.h"

namespace {

using namespace zt::discovery;

wchar_t* CopyText(const std::wstring& text) {
  const size_t size = (text.size() + 1) * sizeof(wchar_t);
  return static_cast<wchar_t*>(std::memcpy(CoTaskMemAlloc(size), text.c_str(), size));
}

class Properties : public ComBase<IPropertyStore> {
 public:
  explicit Properties(DiscoveredDevice device) : device_(std::move(device)) {}

  HRESULT STDMETHODCALLTYPE GetCount(DWORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetAt(DWORD, PROPERTYKEY*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetValue(REFPROPERTYKEY key, PROPVARIANT* value) override {
    PropVariantInit(value);
    if (Fails(device_, L"GetValue")) return E_FAIL;
    // As property stores do: a property that is not there is an empty value.
    if (key.pid != kPnPXIPAddressKey.pid || !IsEqualGUID(key.fmtid, kPnPXIPAddressKey.fmtid)) return S_OK;
    if (device_.form == L"string" && !device_.words.empty()) {
      value->vt = VT_LPWSTR;
      value->pwszVal = CopyText(device_.words[0]);
    } else if (device_.form == L"vector") {
      value->vt = VT_VECTOR | VT_LPWSTR;
      value->calpwstr.cElems = static_cast<ULONG>(device_.words.size());
      value->calpwstr.pElems = static_cast<wchar_t**>(CoTaskMemAlloc(device_.words.size() * sizeof(wchar_t*)));
      for (size_t index = 0; index < device_.words.size(); ++index) {
        value->calpwstr.pElems[index] = CopyText(device_.words[index]);
      }
    } else if (device_.form == L"number") {
      value->vt = VT_UI4;
      value->ulVal = 0x0100007F;
    }
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetValue(REFPROPERTYKEY, REFPROPVARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Commit() override { return E_NOTIMPL; }

 private:
  DiscoveredDevice device_;
};

class Instance : public ComBase<IFunctionInstance> {
 public:
  explicit Instance(DiscoveredDevice device) : device_(std::move(device)) {}

  HRESULT STDMETHODCALLTYPE QueryService(REFGUID, REFIID, void**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetID(wchar_t** identity) override {
    *identity = CopyText(device_.pnpxID);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetProviderInstanceID(wchar_t**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OpenPropertyStore(DWORD access, IPropertyStore** store) override {
    if (access != STGM_READ || Fails(device_, L"OpenPropertyStore")) return E_FAIL;
    *store = new Properties(device_);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetCategory(wchar_t**, wchar_t**) override { return E_NOTIMPL; }

 private:
  DiscoveredDevice device_;
};

class Instances : public ComBase<IFunctionInstanceCollection> {
 public:
  explicit Instances(std::vector<DiscoveredDevice> devices) : devices_(std::move(devices)) {}

  HRESULT STDMETHODCALLTYPE GetCount(DWORD* count) override {
    *count = static_cast<DWORD>(devices_.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Get(const wchar_t*, DWORD*, IFunctionInstance**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Item(DWORD index, IFunctionInstance** instance) override {
    if (index >= devices_.size() || Fails(devices_[index], L"Item")) return E_FAIL;
    *instance = new Instance(devices_[index]);
    return S_OK;
  }

 private:
  std::vector<DiscoveredDevice> devices_;
};

class Query : public ComBase<IFunctionInstanceCollectionQuery> {
 public:
  HRESULT STDMETHODCALLTYPE AddQueryConstraint(const wchar_t*, const wchar_t*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AddPropertyConstraint(REFPROPERTYKEY key, const PROPVARIANT* value,
                                                  PropertyConstraint constraint) override {
    if (constraint != PropertyConstraint::Equals || value->vt != VT_LPWSTR || key.pid != kPnPXIDKey.pid ||
        !IsEqualGUID(key.fmtid, kPnPXIDKey.fmtid)) {
      return E_INVALIDARG;
    }
    pnpxID_ = value->pwszVal;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Execute(IFunctionInstanceCollection** instances) override {
    std::vector<DiscoveredDevice> devices = FindDevices(pnpxID_);
    if (!devices.empty() && Fails(devices[0], L"Execute")) return E_FAIL;
    *instances = new Instances(std::move(devices));
    return S_OK;
  }

 private:
  std::wstring pnpxID_;
};

class Discovery : public ComBase<IFunctionDiscovery> {
 public:
  HRESULT STDMETHODCALLTYPE GetInstanceCollection(const wchar_t*, const wchar_t*, BOOL,
                                                  IFunctionInstanceCollection**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetInstance(const wchar_t*, IFunctionInstance**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CreateInstanceCollectionQuery(const wchar_t* category, const wchar_t*, BOOL, IUnknown*,
                                                          ULONGLONG*,
                                                          IFunctionInstanceCollectionQuery** query) override {
    if (std::wstring(category) != kPnPCategory) return E_INVALIDARG;
    *query = new Query();
    return S_OK;
  }

 private:
  IID OwnInterface() const override { return kInterfaceID; }
};

class Factory : public ComBase<IClassFactory> {
 public:
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    auto* discovery = new Discovery();
    const HRESULT result = discovery->QueryInterface(id, object);
    discovery->Release();
    return result;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  IID OwnInterface() const override { return IID_IClassFactory; }
};

}  // namespace

STDAPI DllGetClassObject(REFCLSID id, REFIID wanted, void** object) {
  *object = nullptr;
  if (!IsEqualCLSID(id, kClassID)) return CLASS_E_CLASSNOTAVAILABLE;
  auto* factory = new Factory();
  const HRESULT result = factory->QueryInterface(wanted, object);
  factory->Release();
  return result;
}

STDAPI DllCanUnloadNow() { return livingObjects == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() {
  wchar_t name[40] = L"";
  StringFromGUID2(kClassID, name, 40);
  const std::wstring key = L"Software\\Classes\\CLSID\\" + std::wstring(name) + L"\\InprocServer32";
  const auto store = [&](const wchar_t* value, const std::wstring& text) {
    return RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), value, REG_SZ, text.c_str(),
                           static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
  };
  return store(nullptr, OwnPath()) && store(L"ThreadingModel", L"Both") ? S_OK : E_FAIL;
}
