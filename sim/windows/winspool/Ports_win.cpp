// Ports: their list, and what their monitors answer.
#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <cstring>

#include "InfoBlock.h"
#include "SpoolCall.h"

namespace {

// The standard TCP/IP monitor's request and reply of "GetConfigInfo", version 1.
struct ConfigInfo {
  BYTE reserved[128];
  DWORD version;
};
static_assert(sizeof(ConfigInfo) == 132);

struct PortData {
  WCHAR portName[64];
  DWORD version;
  DWORD protocol;
  DWORD size;
  DWORD reserved;
  WCHAR hostAddress[49];
  WCHAR community[33];
  DWORD doubleSpool;
  WCHAR queue[33];
  WCHAR address[16];
  BYTE reserved2[540];
  DWORD portNumber;
  DWORD snmpEnabled;
  DWORD snmpDeviceIndex;
};
static_assert(sizeof(PortData) == 964);

// A text longer than its field fills it to the end, without a terminator: a monitor that lies can be scripted so.
template <size_t Size>
void Fill(WCHAR (&field)[Size], const std::wstring& text) {
  std::copy_n(text.begin(), std::min(text.size(), Size), field);
}

std::string BytesOf(const void* data, size_t size) { return std::string(static_cast<const char*>(data), size); }

std::string ConfigOf(const ScriptSection& port) {
  PortData data{};
  Fill(data.portName, port.name());
  data.version = 1;
  data.protocol = 1;
  data.size = sizeof(PortData);
  Fill(data.hostAddress, port.Text(L"host").value_or(L""));
  Fill(data.community, port.Text(L"community").value_or(L""));
  Fill(data.address, port.Text(L"address").value_or(L""));
  data.portNumber = 9100;
  data.snmpEnabled = port.Text(L"community") ? 1 : 0;
  data.snmpDeviceIndex = 1;
  return BytesOf(&data, sizeof(data));
}

std::string FromHex(const std::wstring& text) {
  std::string bytes;
  std::wstring digits;
  for (const wchar_t c : text) {
    if (c == L' ') continue;
    digits += c;
    if (digits.size() < 2) continue;
    bytes += static_cast<char>(wcstoul(digits.c_str(), nullptr, 16));
    digits.clear();
  }
  return bytes;
}

// What the port's monitor replies to a command: bytes given as "COMMAND.hex", or the configuration of a port that has
// an address, or the text given as "COMMAND". Absent when it knows no such command.
std::optional<std::string> ReplyTo(const std::wstring& command, const ScriptSection& port) {
  if (const auto hex = port.Text(command + L".hex")) return FromHex(*hex);
  if (command == L"GetConfigInfo" && (port.Text(L"address") || port.Text(L"host"))) return ConfigOf(port);
  if (const auto text = port.Text(command)) return BytesOf(text->c_str(), (text->size() + 1) * sizeof(wchar_t));
  return std::nullopt;
}

}  // namespace

extern "C" BOOL WINAPI EnumPortsW(LPWSTR name, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed,
                                  LPDWORD returned) {
  SpoolCall call(L"EnumPortsW",
                 L"name " + Quoted(name) + L" level " + std::to_wstring(level) + L" size " + std::to_wstring(size),
                 nullptr);
  if (call.FailsByScript()) return FALSE;
  if (level != 2) return call.Fail(ERROR_INVALID_LEVEL);

  InfoBlock<PORT_INFO_2W> block;
  for (const ScriptSection* port : SpoolScript::Instance().All(L"port")) {
    PORT_INFO_2W info{};
    info.fPortType = PORT_TYPE_READ | PORT_TYPE_WRITE;
    block.Add(info);
    block.Text(&PORT_INFO_2W::pPortName, port->name());
    block.Text(&PORT_INFO_2W::pMonitorName, port->Text(L"monitor"));
    block.Text(&PORT_INFO_2W::pDescription, L"Port " + port->name());
  }
  return block.Answer(call, buffer, size, needed, returned);
}

extern "C" BOOL WINAPI XcvDataW(HANDLE xcv, LPCWSTR command, PBYTE input, DWORD inputSize, PBYTE output,
                                DWORD outputSize, PDWORD needed, PDWORD status) {
  const SpoolHandle* handle = FindHandle(xcv);
  ScriptSection* port = handle && handle->xcv ? handle->target : nullptr;
  std::wstring what =
      Quoted(port ? port->name().c_str() : nullptr) + L" " + Quoted(command) + L" in " + std::to_wstring(inputSize);
  if (input && inputSize == sizeof(ConfigInfo)) {
    ConfigInfo request;
    std::memcpy(&request, input, sizeof(request));
    what += L" version " + std::to_wstring(request.version);
  }
  SpoolCall call(L"XcvDataW", what + L" out " + std::to_wstring(outputSize), port);
  if (!port || !command) return call.Fail(ERROR_INVALID_HANDLE);

  const std::optional<std::string> reply = ReplyTo(command, *port);
  DWORD result = reply ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
  const DWORD size = reply ? static_cast<DWORD>(reply->size()) : 0;
  const DWORD told = call.Scripted(command, L"needed").value_or(size);
  if (needed) *needed = told;
  if (reply && outputSize < size) result = ERROR_INSUFFICIENT_BUFFER;
  if (const auto scripted = call.Scripted(command, L"status")) result = *scripted;
  if (const auto error = call.Scripted(command, L"fail"); error && *error != ERROR_SUCCESS) {
    return call.Fail(*error, L", by script, needed " + std::to_wstring(told));
  }
  if (call.FailsByScript()) return FALSE;

  if (reply && output) std::memcpy(output, reply->data(), std::min<size_t>(reply->size(), outputSize));
  if (status) *status = result;
  return call.Succeed(L", status " + std::to_wstring(result) + L", needed " + std::to_wstring(told));
}
