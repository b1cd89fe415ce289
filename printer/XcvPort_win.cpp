#include <windows.h>
#include <winspool.h>

#include <algorithm>

#include "XcvHandleName.h"
#include "XcvPort.h"

namespace zt {
namespace {

struct XcvReply {
  DWORD error = ERROR_SUCCESS;  // of the call, or else the status that the monitor stored
  DWORD needed = 0;             // bytes
};

XcvReply Call(HANDLE port, const wchar_t* command, std::span<const std::byte> input, std::span<std::byte> output) {
  XcvReply reply;
  DWORD status = ERROR_SUCCESS;
  auto* in = reinterpret_cast<BYTE*>(const_cast<std::byte*>(input.data()));
  auto* out = reinterpret_cast<BYTE*>(output.data());
  SetLastError(ERROR_SUCCESS);
  if (XcvDataW(port, command, in, static_cast<DWORD>(input.size()), out, static_cast<DWORD>(output.size()),
               &reply.needed, &status)) {
    reply.error = status;
    return reply;
  }
  reply.error = GetLastError();
  // A failure without a reason must not pass for success.
  if (reply.error == ERROR_SUCCESS) reply.error = ERROR_GEN_FAILURE;
  return reply;
}

}  // namespace

XcvPort::XcvPort(std::wstring_view portName, std::wstring_view serverName, Access access) {
  std::wstring name = XcvHandleName(portName, serverName);
  PRINTER_DEFAULTSW defaults{nullptr, nullptr, SERVER_ACCESS_ENUMERATE};
  OpenPrinterW(name.data(), port_.Receive(), access == Access::ServerEnumerate ? &defaults : nullptr);
}

bool XcvPort::Request(const wchar_t* command, std::span<const std::byte> input, std::span<std::byte> output) {
  return port_ && Call(port_.Get(), command, input, output).error == ERROR_SUCCESS;
}

std::optional<std::wstring> XcvPort::RequestText(const wchar_t* command) {
  constexpr DWORD maximumSize = 64 * 1024 * sizeof(wchar_t);
  if (!port_) return std::nullopt;
  XcvReply reply = Call(port_.Get(), command, {}, {});
  std::wstring text;
  if (reply.error == ERROR_INSUFFICIENT_BUFFER && reply.needed <= maximumSize) {
    // One character for each byte, and one more: monitors differ in what they count.
    text.resize(reply.needed + 1);
    reply = Call(port_.Get(), command, {}, std::as_writable_bytes(std::span(text)).first(reply.needed));
  }
  if (reply.error != ERROR_SUCCESS) return std::nullopt;
  text.resize(std::min(text.find(L'\0'), text.size()));
  return text;
}

}  // namespace zt
