#include "XcvPort.h"

#include <windows.h>
#include <winspool.h>

#include <algorithm>

#include "Trace.h"

namespace zt {
namespace {

// The name under which the spooler opens the monitor side of a port.
std::wstring HandleName(std::wstring_view portName, std::wstring_view serverName) {
  std::wstring name(serverName);
  name += serverName.empty() ? L",XcvPort " : L"\\,XcvPort ";
  return name.append(portName);
}

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

XcvPort::XcvPort(std::wstring_view portName, std::wstring_view serverName, Access access) : portName_(portName) {
  std::wstring name = HandleName(portName, serverName);
  PRINTER_DEFAULTSW defaults{nullptr, nullptr, SERVER_ACCESS_ENUMERATE};
  if (OpenPrinterW(name.data(), port_.Receive(), access == Access::ServerEnumerate ? &defaults : nullptr)) return;
  const DWORD error = GetLastError();
  ZT_TRACE(Warning, "port " << portName_ << ": its monitor cannot be opened, error " << error);
}

bool XcvPort::Request(const wchar_t* command, std::span<const std::byte> input, std::span<std::byte> output) {
  if (!port_) return false;
  const DWORD error = Call(port_.Get(), command, input, output).error;
  if (error != ERROR_SUCCESS) TraceRefusal(command, error);
  return error == ERROR_SUCCESS;
}

std::optional<std::wstring> XcvPort::RequestText(const wchar_t* command) {
  constexpr DWORD kMaximumSize = 64 * 1024 * sizeof(wchar_t);
  if (!port_) return std::nullopt;
  XcvReply reply = Call(port_.Get(), command, {}, {});
  std::wstring text;
  if (reply.error == ERROR_INSUFFICIENT_BUFFER && reply.needed <= kMaximumSize) {
    // A character for each of what was counted, and one more: monitors count bytes or characters.
    text.resize(reply.needed + 1);
    reply = Call(port_.Get(), command, {}, std::as_writable_bytes(std::span(text)));
  }
  if (reply.error != ERROR_SUCCESS) {
    TraceRefusal(command, reply.error);
    return std::nullopt;
  }
  text.resize(std::min(text.find(L'\0'), text.size()));
  return text;
}

void XcvPort::TraceRefusal(const wchar_t* command, std::uint32_t error) const {
  ZT_TRACE(Warning,
           "port " << portName_ << ": its monitor refused " << std::wstring_view(command) << ", error " << error);
}

}  // namespace zt
