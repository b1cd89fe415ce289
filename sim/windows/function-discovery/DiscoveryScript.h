#pragma once

#include <string>
#include <vector>

// DiscoveredDevice: one device that the simulated Function Discovery knows.
struct DiscoveredDevice {
  std::wstring pnpxID;
  std::wstring form;                // string, vector, number or none: how the address is given
  std::vector<std::wstring> words;  // the addresses; of the form "fails" the step that fails
};

// FindDevices: the devices of the script with that identifier, in order. The script is the UTF-8 file named by the
// environment variable ZT_DISCOVERY_SCRIPT, else function-discovery.ini beside this library; it is read at each call.
// One line for each device, "#" opens a line of comment:
//   urn:uuid:4509a320 = string 192.168.1.20
//   urn:uuid:4509a321 = vector 192.168.1.20 fe80::1
//   urn:uuid:4509a322 = number
//   urn:uuid:4509a323 = none
//   urn:uuid:4509a324 = fails OpenPropertyStore
std::vector<DiscoveredDevice> FindDevices(const std::wstring& pnpxID);

// Fails: whether the script orders that step to fail for this device.
bool Fails(const DiscoveredDevice& device, const wchar_t* step);

// OwnPath: the path of this library.
std::wstring OwnPath();
