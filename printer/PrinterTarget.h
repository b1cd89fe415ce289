#pragma once

#include <string>

namespace zt {

// PortKind is the kind of port that leads to a printer.
enum class PortKind { None, WSD, USB, TCPIP };

// PrinterTarget is where a printer is.
struct PrinterTarget {
  PortKind kind = PortKind::None;
  std::wstring address;    // host name or network address; device path of a USB printer
  std::wstring community;  // SNMP community of a TCP/IP port; empty for "public"
  std::wstring port{};     // the name of the queue's port; empty where no queue leads there
  bool operator==(const PrinterTarget&) const = default;
};

}  // namespace zt
