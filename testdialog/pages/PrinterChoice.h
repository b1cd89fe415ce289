#pragma once

#include <string>

#include "PrinterTarget.h"

namespace zt {

// ChoiceKind says what a line of the dialog's list of printers stands for.
enum class ChoiceKind {
  Queue,         // a print queue of this computer
  USBInterface,  // a USB printer to which no queue leads
  Network,       // a printer that was found on the network, or whose address was typed
  Virtual,       // the made-up printer
};

// PrinterChoice is one line of the list of printers.
struct PrinterChoice {
  ChoiceKind kind = ChoiceKind::Virtual;
  std::wstring name;    // the queue's; else what the list shows for it
  std::wstring driver;  // of a queue
  std::wstring port;    // of a queue
  PrinterTarget target;
  std::wstring why;  // why the queue leads nowhere
  bool operator==(const PrinterChoice&) const = default;
};

// DescribeTarget words where a choice leads: "network 192.0.2.7", "USB \\?\usb#…", "WSD, at 192.0.2.7", "canned data",
// or why it leads nowhere.
std::wstring DescribeTarget(const PrinterChoice& choice);

// WhyNoTarget words why a queue's port leads to no printer. `looksLikeWSD` is what IsWSDPort says of it.
std::wstring WhyNoTarget(const std::wstring& portName, bool looksLikeWSD);

}  // namespace zt
