#include "DiscoveryScript.h"

#include <windows.h>

#include <sstream>

namespace {

std::wstring ScriptPath() {
  wchar_t path[MAX_PATH] = L"";
  const DWORD length = GetEnvironmentVariableW(L"ZT_DISCOVERY_SCRIPT", path, MAX_PATH);
  if (length > 0 && length < MAX_PATH) return path;
  const std::wstring library = OwnPath();
  return library.substr(0, library.rfind(L'\\') + 1) + L"function-discovery.ini";
}

std::wstring ReadScript() {
  const HANDLE file =
      CreateFileW(ScriptPath().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  std::string bytes(GetFileSize(file, nullptr), '\0');
  DWORD read = 0;
  if (!ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) read = 0;
  CloseHandle(file);
  std::wstring text(read, L'\0');
  text.resize(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(read), text.data(),
                                                      static_cast<int>(text.size()))));
  return text;
}

}  // namespace

std::wstring OwnPath() {
  HMODULE self = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&OwnPath), &self);
  wchar_t path[MAX_PATH] = L"";
  return std::wstring(path, GetModuleFileNameW(self, path, MAX_PATH));
}

std::vector<DiscoveredDevice> FindDevices(const std::wstring& pnpxID) {
  std::vector<DiscoveredDevice> devices;
  std::wistringstream script(ReadScript());
  for (std::wstring line; std::getline(script, line);) {
    std::wistringstream words(line);
    DiscoveredDevice device;
    std::wstring equals;
    words >> device.pnpxID >> equals >> device.form;
    if (equals != L"=" || device.pnpxID != pnpxID) continue;
    for (std::wstring word; words >> word;) device.words.push_back(word);
    devices.push_back(device);
  }
  return devices;
}

bool Fails(const DiscoveredDevice& device, const wchar_t* step) {
  return device.form == L"fails" && !device.words.empty() && device.words[0] == step;
}
