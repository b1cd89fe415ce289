#include "PrinterChoice.h"

#include <string_view>

#include "Text.h"

namespace zt {
namespace {

struct KnownPort {
  std::wstring_view begin;
  std::wstring_view why;
};
constexpr KnownPort kKnownPorts[] = {
    {L"USB", L"no USB printer is plugged in at this port"},
    {L"FILE:", L"the queue prints to a file"},
    {L"PORTPROMPT:", L"the queue prints to a file"},
    {L"NUL", L"the queue throws away what it prints"},
    {L"LPT", L"a parallel port: a printer there cannot be asked"},
    {L"COM", L"a serial port: a printer there cannot be asked"},
    {L"\\\\", L"the printer of another computer: the agent must run there"},
};

bool BeginsWith(std::wstring_view text, std::wstring_view begin) {
  return EqualsIgnoringCase(text.substr(0, begin.size()), begin);
}

}  // namespace

std::wstring DescribeTarget(const PrinterChoice& choice) {
  if (choice.kind == ChoiceKind::Virtual) return L"canned data";
  switch (choice.target.kind) {
    case PortKind::TCPIP:
      return L"network " + choice.target.address;
    case PortKind::WSD:
      return L"WSD, at " + choice.target.address;
    case PortKind::USB:
      return L"USB " + choice.target.address;
    case PortKind::None:
      break;
  }
  return choice.why;
}

std::wstring WhyNoTarget(const std::wstring& portName, bool looksLikeWSD) {
  if (portName.empty()) return L"the queue has no port";
  if (looksLikeWSD) return L"WSD: the device is not found on the network";
  for (const KnownPort& known : kKnownPorts) {
    if (BeginsWith(portName, known.begin)) return std::wstring(known.why);
  }
  return L"the port tells no address: it is no standard TCP/IP port, or is not set up";
}

}  // namespace zt
