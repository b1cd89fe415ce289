#include "FunctionDiscovery.h"

#include <windows.h>

#include "FunctionDiscoveryInterfaces.h"
#include "Handle.h"

namespace zt {
namespace {

template <class Interface>
struct ComTraits {
  using Type = Interface*;
  static Type Invalid() { return nullptr; }
  static void Close(Type object) { object->Release(); }
};
template <class Interface>
using ComObject = Handle<ComTraits<Interface>>;

class ComApartment {
 public:
  ComApartment() : result_(CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
  ~ComApartment() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

 private:
  HRESULT result_;
};

// The first device with that identifier; none when the discovery does not exist or finds nothing.
ComObject<discovery::IFunctionInstance> FindDevice(const std::wstring& pnpxID) {
  ComObject<discovery::IFunctionInstance> instance;
  ComObject<discovery::IFunctionDiscovery> finder;
  if (FAILED(CoCreateInstance(discovery::kClassID, nullptr, CLSCTX_INPROC_SERVER, discovery::kInterfaceID,
                              reinterpret_cast<void**>(finder.Receive()))) ||
      !finder) {
    return instance;
  }
  ComObject<discovery::IFunctionInstanceCollectionQuery> query;
  if (FAILED(finder.Get()->CreateInstanceCollectionQuery(discovery::kPnPCategory, nullptr, FALSE, nullptr, nullptr,
                                                         query.Receive())) ||
      !query) {
    return instance;
  }
  PROPVARIANT wanted{};
  wanted.vt = VT_LPWSTR;
  wanted.pwszVal = const_cast<wchar_t*>(pnpxID.c_str());  // stays ours: the query copies it
  if (FAILED(query.Get()->AddPropertyConstraint(discovery::kPnPXIDKey, &wanted, discovery::PropertyConstraint::Equals)))
    return instance;
  ComObject<discovery::IFunctionInstanceCollection> devices;
  if (FAILED(query.Get()->Execute(devices.Receive())) || !devices) return instance;
  DWORD count = 0;
  if (FAILED(devices.Get()->GetCount(&count)) || count == 0) return instance;
  devices.Get()->Item(0, instance.Receive());
  return instance;
}

// Some providers give one string, others a list of them.
std::wstring FirstText(const PROPVARIANT& value) {
  const wchar_t* text = nullptr;
  if (value.vt == VT_LPWSTR) text = value.pwszVal;
  if (value.vt == (VT_VECTOR | VT_LPWSTR) && value.calpwstr.cElems > 0) text = value.calpwstr.pElems[0];
  return text ? text : L"";
}

}  // namespace

std::wstring DiscoverAddress(const std::wstring& pnpxID) {
  const ComApartment apartment;
  const ComObject<discovery::IFunctionInstance> device = FindDevice(pnpxID);
  if (!device) return {};
  ComObject<IPropertyStore> properties;
  if (FAILED(device.Get()->OpenPropertyStore(STGM_READ, properties.Receive())) || !properties) return {};
  PROPVARIANT value{};
  if (FAILED(properties.Get()->GetValue(discovery::kPnPXIPAddressKey, &value))) return {};
  std::wstring address = FirstText(value);
  PropVariantClear(&value);
  return address;
}

}  // namespace zt
