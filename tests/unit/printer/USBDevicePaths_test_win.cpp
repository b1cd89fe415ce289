#include "USBDevicePaths.h"

#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RegistryKey.h"

namespace zt {
namespace {

const std::wstring kClass = L"{28d78fad-5a12-11d1-ae5b-0000f803a8c2}";
const std::wstring kClassKey = L"System\\CurrentControlSet\\Control\\DeviceClasses\\" + kClass;

// Plug makes the registry keys of a USB printer as Windows lays them, and returns its device path. No driver stands
// behind them, so that it does not open.
std::wstring Plug(const std::wstring& serial, std::optional<std::uint32_t> port) {
  const std::wstring instance = L"USB\\VID_1&PID_1\\" + serial;
  RegistryKey::OpenOrCreate(L"System\\CurrentControlSet\\Enum\\" + instance, KEY_WRITE)
      .WriteString(L"ClassGUID", L"{4d36e979-e325-11ce-bfc1-08002be10318}");
  const std::wstring interfaceKey = kClassKey + L"\\##?#USB#VID_1&PID_1#" + serial + L"#" + kClass;
  const std::wstring path = L"\\\\?\\usb#vid_1&pid_1#" + serial + L"#" + kClass;
  RegistryKey::OpenOrCreate(interfaceKey, KEY_WRITE).WriteString(L"DeviceInstance", instance);
  RegistryKey::OpenOrCreate(interfaceKey + L"\\#", KEY_WRITE).WriteString(L"SymbolicLink", path);
  RegistryKey::OpenOrCreate(interfaceKey + L"\\#\\Control", KEY_WRITE).WriteDword(L"Linked", 1);
  RegistryKey parameters = RegistryKey::OpenOrCreate(interfaceKey + L"\\#\\Device Parameters", KEY_WRITE);
  if (port) parameters.WriteDword(L"Port Number", *port);
  return path;
}

TEST(USBDevicePaths, OnesWithANumber) {
  std::vector<std::wstring> paths = {L"before"};
  EXPECT_FALSE(EnumerateUSBPrinterPaths(paths));
  const std::wstring first = Plug(L"a", 1);
  Plug(L"b", std::nullopt);
  const std::wstring second = Plug(L"c", 1);
  EXPECT_TRUE(EnumerateUSBPrinterPaths(paths));
  EXPECT_THAT(paths, testing::ElementsAre(L"before", first, second));
  EXPECT_EQ(FindUSBDevicePath(L"USB001"), std::nullopt);
  RegDeleteTreeW(HKEY_LOCAL_MACHINE, kClassKey.c_str());
}

}  // namespace
}  // namespace zt
