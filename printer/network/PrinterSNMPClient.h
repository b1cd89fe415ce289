#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ztsnmp/ReqRespPDU.h"
#include "ztsnmp/SNMPManager.h"
#include "ztsnmp/Target.h"
#include "ztsnmp/VarBind.h"

namespace zt {

// PrinterSNMPClient reads objects of one printer by SNMPv1. Objects are named by dotted text. It asks once and waits 3
// seconds, as community "public" unless told otherwise. Operations answer whether they succeeded and leave their
// outputs alone if not. SNMPStartup must have been called.
class PrinterSNMPClient {
 public:
  using SteadyNow = std::function<std::chrono::steady_clock::time_point()>;

  explicit PrinterSNMPClient(SteadyNow now = std::chrono::steady_clock::now);

  // Initialize sets the printer's address: a host name or an IPv4 or IPv6 address. False for an empty one.
  bool Initialize(const std::string& address);

  // SetReadCommunity takes 1 to 25 characters; false, the old one kept, for anything else.
  bool SetReadCommunity(const std::string& community);

  // GetText reads an OCTET STRING; an empty one is an answer, too.
  bool GetText(const char* name, std::string& text);

  // GetInteger reads a number of any of the SNMP types, unsigned ones bit by bit.
  bool GetInteger(const char* name, std::int32_t& number);

  // GetSeveral reads several OCTET STRINGs with one request. An object that the printer does not know, or that is no
  // OCTET STRING, has no text; when the printer refuses the request for the sake of one object, the rest is asked for
  // again. The results stand in the order of the names.
  std::vector<std::optional<std::string>> GetSeveral(std::span<const char* const> names);

  // WalkIntegers and WalkTexts read a column of a table, in the order of its rows. A column without rows is a success.
  // They fail when the printer stops answering, or answers a value of another type, a name that does not increase, more
  // than 4096 rows, or rows for more than a minute.
  bool WalkIntegers(const char* column, std::vector<std::int32_t>& numbers);
  bool WalkTexts(const char* column, std::vector<std::string>& texts);

  // WalkAndJoin reads a column of texts and joins them.
  bool WalkAndJoin(const char* column, std::string& text);

 private:
  bool Get(const char* name);

  // `read` answers nothing for a value of another type.
  template <class Value>
  bool Walk(const char* column, std::optional<Value> (*read)(const SNMPDataType& value), std::vector<Value>& values);

  SteadyNow now_;
  SNMPManager manager_;
  Target target_;
  ReqRespPDU pdu_;
  VarBind binding_;
};

}  // namespace zt
