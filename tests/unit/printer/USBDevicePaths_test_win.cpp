#include "USBDevicePaths.h"

#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RegistryKey.h"

namespace zt {
namespace {

using testing::ElementsAre;

// The registry keys of USB printers as Windows lays them. No driver stands behind them, so that none of them opens.
class USBDevicePathsTest : public testing::Test {
 protected:
  ~USBDevicePathsTest() override { RegDeleteTreeW(HKEY_LOCAL_MACHINE, kClassKey.c_str()); }

  // Plugs a printer in and answers its device path.
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

  const std::wstring kClass = L"{28d78fad-5a12-11d1-ae5b-0000f803a8c2}";
  const std::wstring kClassKey = L"System\\CurrentControlSet\\Control\\DeviceClasses\\" + kClass;
};

TEST_F(USBDevicePathsTest, OnesWithANumber) {
  std::vector<std::wstring> paths = {L"before"};
  EXPECT_FALSE(EnumerateUSBPrinterPaths(paths));
  const std::wstring first = Plug(L"a", 1);
  Plug(L"b", std::nullopt);
  const std::wstring second = Plug(L"c", 1);
  EXPECT_TRUE(EnumerateUSBPrinterPaths(paths));
  EXPECT_THAT(paths, ElementsAre(L"before", first, second));
  EXPECT_EQ(FindUSBDevicePath(L"USB001"), std::nullopt);
}

}  // namespace
}  // namespace zt
