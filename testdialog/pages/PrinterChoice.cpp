#include "PrinterChoice.h"

#include <string_view>

#include "Joined.h"
#include "Text.h"

namespace zt {
namespace {

struct KnownPort {
  std::wstring_view begin;
  Ascii why;
};
constexpr KnownPort kKnownPorts[] = {
    {L"USB", "no USB printer is plugged in at this port"},
    {L"FILE:", "the queue prints to a file"},
    {L"PORTPROMPT:", "the queue prints to a file"},
    {L"NUL", "the queue throws away what it prints"},
    {L"LPT", "a parallel port: a printer there cannot be asked"},
    {L"COM", "a serial port: a printer there cannot be asked"},
    {L"\\\\", "the printer of another computer: the agent must run there"},
};

bool BeginsWith(std::wstring_view text, std::wstring_view begin) {
  return EqualsIgnoringCase(text.substr(0, begin.size()), begin);
}

}  // namespace

std::wstring DescribeTarget(const PrinterChoice& choice) {
  if (choice.kind == ChoiceKind::Virtual) return Joined({"canned data"});
  switch (choice.target.kind) {
    case PortKind::TCPIP:
      return Joined({"network ", choice.target.address});
    case PortKind::WSD:
      return Joined({"WSD, at ", choice.target.address});
    case PortKind::USB:
      return Joined({"USB ", choice.target.address});
    case PortKind::None:
      break;
  }
  return choice.why;
}

std::wstring WhyNoTarget(const std::wstring& portName, bool looksLikeWSD) {
  if (portName.empty()) return Joined({"the queue has no port"});
  if (looksLikeWSD) return Joined({"WSD: the device is not found on the network"});
  for (const KnownPort& known : kKnownPorts) {
    if (BeginsWith(portName, known.begin)) return Joined({known.why});
  }
  return Joined({"the port tells no address: it is no standard TCP/IP port, or is not set up"});
}

}  // namespace zt
