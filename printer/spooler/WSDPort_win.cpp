#include "WSDPort.h"

#include <windows.h>
#include <winspool.h>

#include <algorithm>

#include "FunctionDiscovery.h"
#include "LocationUrl.h"
#include "RegistryKey.h"
#include "SpoolerBlock.h"
#include "Trace.h"
#include "XcvPort.h"

namespace zt {
namespace {

constexpr std::wstring_view kWSDMark = L"WSD";

// The device's key in the registry's tree of devices: "System\CurrentControlSet\Enum\<enumerator>\UMB\<instance>".
// `deviceID` is the path of a device instance, of which the first part is the enumerator and the last the instance.
std::wstring AddressFromRegistry(std::wstring_view deviceID) {
  const std::size_t first = deviceID.find(L'\\');
  if (first == std::wstring_view::npos) return {};
  const std::wstring_view instance = deviceID.substr(deviceID.rfind(L'\\') + 1);
  if (instance.empty()) return {};
  std::wstring path = L"System\\CurrentControlSet\\Enum\\";
  path.append(deviceID.substr(0, first)).append(L"\\UMB\\").append(instance);
  // The registry itself finds the subkey whatever the case of its letters.
  const auto location = RegistryKey::Open(path, KEY_READ).ReadString(L"LocationInformation");
  return location ? std::wstring(HostFromLocationUrl(*location)) : std::wstring();
}

}  // namespace

bool IsWSDPort(std::wstring_view portName) {
  if (portName.find(kWSDMark) == std::wstring_view::npos) return false;
  DWORD count = 0;
  const std::optional<SpoolerBlock> block = SpoolerBlock::Read(
      [&](BYTE* buffer, DWORD size, DWORD* needed) { return EnumPortsW(nullptr, 2, buffer, size, needed, &count); });
  if (!block) return false;
  const auto ports = block->Items<PORT_INFO_2W>(count);
  const auto port = std::find_if(ports.begin(), ports.end(),
                                 [&](const PORT_INFO_2W& info) { return block->Text(info.pPortName) == portName; });
  return port != ports.end() && block->Text(port->pMonitorName).find(kWSDMark) != std::wstring_view::npos;
}

std::wstring ResolveWSDAddress(std::wstring_view portName, std::wstring_view serverName) {
  XcvPort port(portName, serverName, XcvPort::Access::Default);
  const std::optional<std::wstring> deviceID = port.RequestText(L"DeviceID");
  const std::optional<std::wstring> pnpxID = port.RequestText(L"PnPXID");
  if (!deviceID || !pnpxID) return {};
  std::wstring address = DiscoverAddress(*pnpxID);
  if (address.empty()) address = AddressFromRegistry(*deviceID);
  if (address.empty()) ZT_TRACE(Warning, "port " << portName << ": no address of device " << *pnpxID);
  return address;
}

}  // namespace zt
