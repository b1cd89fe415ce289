#pragma once

#include <objbase.h>
#include <propidl.h>
#include <propsys.h>
#include <servprov.h>

// The COM interfaces of Windows' Function Discovery, as far as they are needed to ask for devices: operations in the
// order of Windows' own tables. mingw-w64's header is not used: in IFunctionInstance it puts QueryService behind the
// other operations instead of before them, and it calls its layouts unverified itself.

namespace zt::discovery {

constexpr GUID kClassID{0xC72BE2EC, 0x8E90, 0x452C, {0xB2, 0x9A, 0xAB, 0x8F, 0xF1, 0xC0, 0x71, 0xFC}};
constexpr GUID kInterfaceID{0x4DF99B70, 0xE148, 0x4432, {0xB0, 0x04, 0x4C, 0x9E, 0xEB, 0x53, 0x5A, 0x5E}};

constexpr wchar_t kPnPCategory[] = L"Provider\\Microsoft.Base.PnP";

constexpr GUID kPnPXProperties{0x656A3BB3, 0xECC0, 0x43FD, {0x84, 0x77, 0x4A, 0xE0, 0x40, 0x4A, 0x96, 0xCD}};
constexpr PROPERTYKEY kPnPXIDKey{kPnPXProperties, 4101};
constexpr PROPERTYKEY kPnPXIPAddressKey{kPnPXProperties, 12297};

enum class PropertyConstraint : int { Equals = 0 };

struct IFunctionInstance : IServiceProvider {
  virtual HRESULT STDMETHODCALLTYPE GetID(wchar_t** identity) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetProviderInstanceID(wchar_t** identity) = 0;
  virtual HRESULT STDMETHODCALLTYPE OpenPropertyStore(DWORD access, IPropertyStore** store) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCategory(wchar_t** category, wchar_t** subcategory) = 0;
};

struct IFunctionInstanceCollection : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetCount(DWORD* count) = 0;
  virtual HRESULT STDMETHODCALLTYPE Get(const wchar_t* identity, DWORD* index, IFunctionInstance** instance) = 0;
  virtual HRESULT STDMETHODCALLTYPE Item(DWORD index, IFunctionInstance** instance) = 0;
  // Changing operations follow.
};

struct IFunctionInstanceCollectionQuery : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE AddQueryConstraint(const wchar_t* name, const wchar_t* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE AddPropertyConstraint(REFPROPERTYKEY key, const PROPVARIANT* value,
                                                          PropertyConstraint constraint) = 0;
  virtual HRESULT STDMETHODCALLTYPE Execute(IFunctionInstanceCollection** instances) = 0;
};

struct IFunctionDiscovery : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetInstanceCollection(const wchar_t* category, const wchar_t* subcategory,
                                                          BOOL allSubcategories,
                                                          IFunctionInstanceCollection** instances) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetInstance(const wchar_t* identity, IFunctionInstance** instance) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateInstanceCollectionQuery(const wchar_t* category, const wchar_t* subcategory,
                                                                  BOOL allSubcategories, IUnknown* notification,
                                                                  ULONGLONG* context,
                                                                  IFunctionInstanceCollectionQuery** query) = 0;
  // Queries for one instance and changing operations follow.
};

}  // namespace zt::discovery
