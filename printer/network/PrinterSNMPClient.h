#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ExchangeGate.h"
#include "ztsnmp/ReqRespPDU.h"
#include "ztsnmp/SNMPManager.h"
#include "ztsnmp/Target.h"
#include "ztsnmp/VarBind.h"

namespace zt {

// PrinterSNMPClient reads objects of one printer by SNMPv1. Objects are named by dotted text. It asks once and waits 3
// seconds, as community "public" unless told otherwise. Operations return whether they succeeded and leave their
// outputs alone if not. SNMPStartup must have been called.
class PrinterSNMPClient {
 public:
  using SteadyNow = std::function<std::chrono::steady_clock::time_point()>;

  explicit PrinterSNMPClient(SteadyNow now = std::chrono::steady_clock::now);

  // Initialize sets the printer's address: a host name or an IPv4 or IPv6 address. False for an empty one.
  bool Initialize(const std::string& address);

  // SetReadCommunity takes 1 to 25 characters; false, the old one kept, for anything else.
  bool SetReadCommunity(const std::string& community);

  // SetGate sets what is asked before each request; a closed gate is silence.
  void SetGate(ExchangeGate gate) { gate_ = std::move(gate); }

  // GetText reads an OCTET STRING as text, which ends at its first NUL: printers fill fields of a fixed size up with
  // NULs. An empty one is an answer, too. GetBytes reads all of its bytes.
  bool GetText(const char* name, std::string& text);
  bool GetBytes(const char* name, std::string& bytes);

  // GetInteger reads a number of any of the SNMP types, signed or unsigned as the type is.
  bool GetInteger(const char* name, std::int64_t& number);

  // GetSeveral reads several texts with one request. An object that the printer does not know, or that is no OCTET
  // STRING, has none. When the printer refuses the request for the sake of one object, the rest is asked for again;
  // when its answer is of no use for another reason, each object is asked for by itself. The results stand in the order
  // of the names. Nothing at all when the printer does not answer.
  std::optional<std::vector<std::optional<std::string>>> GetSeveral(std::span<const char* const> names);

  // WalkIntegers, WalkTexts and WalkBytes read a column of a table, in the order of its rows. A column without rows is
  // a success. They fail when the printer stops answering, or answers a value of another type, a name that does not
  // increase, more than 4096 rows, or rows for more than a minute.
  bool WalkIntegers(const char* column, std::vector<std::int64_t>& numbers);
  bool WalkTexts(const char* column, std::vector<std::string>& texts);
  bool WalkBytes(const char* column, std::vector<std::string>& bytes);

  // WalkAndJoin joins the bytes of a column's rows and reads them as one text.
  bool WalkAndJoin(const char* column, std::string& text);

 private:
  // `read` returns nothing for a value of another type.
  template <class Value>
  bool Get(const char* name, std::optional<Value> (*read)(const SNMPDataType& value), Value& value);
  template <class Value>
  bool Walk(const char* column, std::optional<Value> (*read)(const SNMPDataType& value), std::vector<Value>& values);

  // Ask sends the PDU to the printer by one of the manager's operations; a status of the library.
  int Ask(int (SNMPManager::*operation)(ReqRespPDU&, Target&) noexcept);

  SteadyNow now_;
  ExchangeGate gate_;
  SNMPManager manager_;
  Target target_;
  ReqRespPDU pdu_;
  VarBind binding_;
};

}  // namespace zt
