#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "IZOLTDataProvider.h"
#include "KVFPrinter.h"
#include "PrinterChoice.h"
#include "Row.h"

namespace zt {

// Reachability is what became of an attempt to reach a network printer in another way than by SNMP.
enum class Reachability {
  Unknown,  // not tried: the printer is none of the network
  NoName,   // its name leads to no address
  Silent,   // nothing came back
  Answers,  // a connection was made, or refused: something is there
};

// Reach tries it; a few seconds at most.
using Reach = std::function<Reachability(const std::wstring& address)>;

// WhySilent words why a printer that does not open is silent, as far as that can be told: switched off, another SNMP
// community, a name without an address, an interface that is gone or that somebody else holds.
std::wstring WhySilent(const PrinterTarget& target, Reachability reachability);

// Identity is the page of what a printer says about itself.
struct Identity {
  bool opened = false;
  std::vector<Row> rows;  // the failure as well, where there is one
};

// ReadIdentity opens the printer and reads the device ID as sent and taken apart, the family, each keyword of the
// command set with its meaning, serial number, firmware, installed date, country index, protection state and status.
// What could not be read has a row that says why.
Identity ReadIdentity(KVFPrinter& printer, const PrinterTarget& target, const Reach& reach);

// This one reads what the virtual printer, which has no access of that kind, says through the runs' interface.
Identity ReadIdentity(IZOLTDataProvider& provider);

// MeaningOf words what a keyword of a command set stands for; empty for one that this program does not know.
std::wstring MeaningOf(std::string_view keyword);

}  // namespace zt
