#include "PrinterSNMPClient.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "Text.h"
#include "Trace.h"
#include "ztsnmp/Numbers.h"
#include "ztsnmp/OID.h"
#include "ztsnmp/OctetString.h"

namespace zt {
namespace {

constexpr std::size_t kMaximumRows = 4096;
// A printer with a handful of supplies needs 15 seconds when each answer comes just in time. One that has thousands of
// rows to tell that slowly would hold the run, and all that wait for it, for hours.
constexpr std::chrono::minutes kLongestWalk{1};
constexpr int kTimeout = 3;  // seconds
// A little less than the time-out, so that no clock's rounding makes an answer of it.
constexpr std::chrono::milliseconds kSilence{kTimeout * 1000 - 100};
constexpr int kNoSuchName = 2;  // RFC 1157, section 4.1.2: no object of that name, or none behind it

std::optional<std::string> BytesOf(const SNMPDataType& value) {
  if (value.getDataType() != DataTypeOctetString) return std::nullopt;
  std::uint64_t length = 0;
  const unsigned char* bytes = static_cast<const OctetString&>(value).getValue(length);
  return std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

std::optional<std::string> TextOf(const SNMPDataType& value) {
  if (value.getDataType() != DataTypeOctetString) return std::nullopt;
  return value.toString();  // up to the first NUL
}

std::optional<std::int64_t> NumberOf(const SNMPDataType& value) {
  switch (value.getDataType()) {
    case DataTypeInteger:
      return static_cast<const Integer&>(value).getValue();
    case DataTypeCounter:
      return static_cast<const Counter&>(value).getValue();
    case DataTypeGauge:
      return static_cast<const Gauge&>(value).getValue();
    case DataTypeTimeTicks:
      return static_cast<const TimeTicks&>(value).getValue();
    default:
      return std::nullopt;
  }
}

// IsAnswered reports whether a get that failed was answered at all. It goes out without values: an error, or a value
// that could be read beside one that could not, has come with an answer.
bool IsAnswered(const ReqRespPDU& pdu) {
  if (pdu.getErrorStatus() > 0) return true;
  const std::span bindings(pdu.getVarBindList(), static_cast<std::size_t>(pdu.getVarBindCount()));
  return std::any_of(bindings.begin(), bindings.end(),
                     [](const VarBind& binding) { return binding.getValue().getDataType() != DataTypeNull; });
}

// ArcsOf returns the numbers of a dotted name; nothing when one of them is no 32-bit number.
std::vector<std::uint32_t> ArcsOf(std::string_view name) {
  std::vector<std::uint32_t> arcs;
  for (const std::string_view part : SplitAny(name, ".")) {
    std::uint32_t arc = 0;
    const char* const end = part.data() + part.size();
    const auto [stop, error] = std::from_chars(part.data(), end, arc);
    if (error != std::errc{} || stop != end) return {};
    arcs.push_back(arc);
  }
  return arcs;
}

bool IsUnder(std::string_view name, std::string_view column) {
  return name.size() > column.size() && name.starts_with(column) && name[column.size()] == '.';
}

}  // namespace

PrinterSNMPClient::PrinterSNMPClient(SteadyNow now) : now_(std::move(now)) {
  target_.setRetryCount(0);
  target_.setTimeout(kTimeout);
  target_.setReadCommunity("public");
}

bool PrinterSNMPClient::Initialize(const std::string& address) {
  // An empty name would be looked up as this computer.
  return !address.empty() && target_.setAgentAddress(address.c_str()) == StatusSuccess;
}

bool PrinterSNMPClient::SetReadCommunity(const std::string& community) {
  return target_.setReadCommunity(community.c_str()) == StatusSuccess;
}

bool PrinterSNMPClient::GetText(const char* name, std::string& text) { return Get(name, TextOf, text); }

bool PrinterSNMPClient::GetBytes(const char* name, std::string& bytes) { return Get(name, BytesOf, bytes); }

bool PrinterSNMPClient::GetInteger(const char* name, std::int64_t& number) { return Get(name, NumberOf, number); }

std::optional<std::vector<std::optional<std::string>>> PrinterSNMPClient::GetSeveral(
    std::span<const char* const> names) {
  std::vector<std::optional<std::string>> texts(names.size());
  std::vector<std::size_t> asked;  // index of the name behind each binding
  std::vector<VarBind> bindings;
  for (std::size_t i = 0; i < names.size(); ++i) {
    asked.push_back(i);
    bindings.emplace_back(OID(names[i]));
  }

  bool answered = false;
  while (!bindings.empty()) {
    if (pdu_.setVarBindList(bindings.data(), static_cast<int>(bindings.size())) != StatusSuccess) break;
    const auto begun = now_();
    const int status = Ask(&SNMPManager::get);
    if (status == StatusSuccess) {
      for (unsigned i = 0; i < asked.size(); ++i) texts[asked[i]] = TextOf(pdu_.getVarBind(i).getValue());
      return texts;
    }
    if (status != StatusOperationFailed) break;
    const bool anythingRead = IsAnswered(pdu_);
    answered = answered || anythingRead;
    // SNMPv1 refuses the whole request when it lacks one object, and says which (RFC 1157, section 4.1.2).
    const int index = pdu_.getErrorIndex();
    if (pdu_.getErrorStatus() == kNoSuchName && index >= 1 && static_cast<std::size_t>(index) <= bindings.size()) {
      bindings.erase(bindings.begin() + (index - 1));
      asked.erase(asked.begin() + (index - 1));
      continue;
    }
    // A value that cannot be read spoils the others, and so does one for which they don't fit into one message. Nothing
    // of such an answer may have been read, but it came in time.
    if (asked.size() == 1 || (!anythingRead && now_() - begun >= kSilence)) break;
    for (const std::size_t i : asked) {
      if (std::string text; GetText(names[i], text)) texts[i] = std::move(text);
      answered = answered || texts[i] || IsAnswered(pdu_);
    }
    break;
  }
  if (!answered) return std::nullopt;
  return texts;
}

bool PrinterSNMPClient::WalkIntegers(const char* column, std::vector<std::int64_t>& numbers) {
  return Walk(column, NumberOf, numbers);
}

bool PrinterSNMPClient::WalkTexts(const char* column, std::vector<std::string>& texts) {
  return Walk(column, TextOf, texts);
}

bool PrinterSNMPClient::WalkBytes(const char* column, std::vector<std::string>& bytes) {
  return Walk(column, BytesOf, bytes);
}

bool PrinterSNMPClient::WalkAndJoin(const char* column, std::string& text) {
  std::vector<std::string> rows;
  if (!WalkBytes(column, rows)) return false;
  std::string joined;
  for (const std::string& row : rows) joined += row;
  text = joined.substr(0, joined.find('\0'));
  return true;
}

int PrinterSNMPClient::Ask(int (SNMPManager::*operation)(ReqRespPDU&, Target&) noexcept) {
  return IsOpen(gate_) ? (manager_.*operation)(pdu_, target_) : StatusTimeout;
}

template <class Value>
bool PrinterSNMPClient::Get(const char* name, std::optional<Value> (*read)(const SNMPDataType& value), Value& value) {
  binding_.setOID(OID(name));
  if (pdu_.setVarBindList(&binding_, 1) != StatusSuccess || Ask(&SNMPManager::get) != StatusSuccess) return false;
  std::optional<Value> answer = read(pdu_.getVarBind(0).getValue());
  if (!answer) return false;
  value = *std::move(answer);
  return true;
}

template <class Value>
bool PrinterSNMPClient::Walk(const char* column, std::optional<Value> (*read)(const SNMPDataType& value),
                             std::vector<Value>& values) {
  binding_.setOID(OID(column));
  std::vector<std::uint32_t> last = ArcsOf(column);
  std::vector<Value> rows;
  const auto end = now_() + kLongestWalk;
  for (;;) {
    // The list is set anew for each row: the answer before has left its value in it, and an empty text is refused in a
    // request.
    if (pdu_.setVarBindList(&binding_, 1) != StatusSuccess) return false;
    if (Ask(&SNMPManager::getNext) != StatusSuccess) {
      if (pdu_.getErrorStatus() != kNoSuchName) return false;
      break;
    }
    const VarBind& row = pdu_.getVarBind(0);
    const std::string_view name = row.getOID().getValue();
    if (!IsUnder(name, column)) break;
    // A printer whose names don't increase would be walked forever.
    std::vector<std::uint32_t> arcs = ArcsOf(name);
    if (arcs <= last) {
      ZT_TRACE(Warning, "name does not increase in walk of " << column << " : " << name);
      return false;
    }
    if (rows.size() == kMaximumRows) {
      ZT_TRACE(Warning, "too many rows in walk of " << column);
      return false;
    }
    if (now_() > end) {
      ZT_TRACE(Warning, "too slow a walk of " << column << ", given up after rows: " << rows.size());
      return false;
    }
    std::optional<Value> value = read(row.getValue());
    if (!value) return false;
    rows.push_back(*std::move(value));
    binding_.setOID(row.getOID());
    last = std::move(arcs);
  }
  values = std::move(rows);
  return true;
}

}  // namespace zt
