#include "PrinterDeviceID.h"

#include <algorithm>

#include "Text.h"

namespace zt {
namespace {

struct Key {
  std::string_view text;
  std::string PrinterDeviceID::*field;
};

// A key is known by its exact bytes, ':' included. A blank after ';' belongs to the next key, so " MDL:" is no model,
// on purpose.
constexpr Key kKeys[] = {
    {"MDL:", &PrinterDeviceID::model},        {"MODEL:", &PrinterDeviceID::model},
    {"MFG:", &PrinterDeviceID::manufacturer}, {"MANUFACTURER:", &PrinterDeviceID::manufacturer},
    {"CMD:", &PrinterDeviceID::commandSet},   {"COMMAND SET:", &PrinterDeviceID::commandSet},
    {"CLS:", &PrinterDeviceID::deviceClass},  {"CLASS:", &PrinterDeviceID::deviceClass},
    {"CLI:", &PrinterDeviceID::classInfo},    {"CLASSINFO:", &PrinterDeviceID::classInfo},
};

std::string PrinterDeviceID::*FieldOf(std::string_view key) {
  for (const Key& known : kKeys) {
    if (key == known.text) return known.field;
  }
  return nullptr;
}

// DeviceIDScanner walks a device ID segment by segment. The second byte of a double-byte character is no delimiter,
// whatever its value.
class DeviceIDScanner {
 public:
  DeviceIDScanner(std::string_view text, LeadBytePredicate isLeadByte)
      : text_(text.substr(0, text.find('\0'))), isLeadByte_(isLeadByte) {}

  // Next moves on to the next "key:value" segment; false when there is none.
  bool Next(std::string_view& key, std::string_view& value) {
    const std::optional<std::size_t> colon = Find(':');
    if (!colon || *colon == text_.size()) return false;
    key = text_.substr(position_, *colon + 1 - position_);
    position_ = *colon + 1;

    const std::optional<std::size_t> semicolon = Find(';');
    if (!semicolon) return false;
    value = text_.substr(position_, *semicolon - position_);
    position_ = *semicolon < text_.size() ? *semicolon + 1 : text_.size();
    return true;
  }

 private:
  // Find returns where the next delimiter stands, the end of the text when there is none, and nothing when the text
  // breaks off within a double-byte character: that ends the whole parse.
  std::optional<std::size_t> Find(char delimiter) const {
    for (std::size_t at = position_; at < text_.size(); ++at) {
      if (isLeadByte_(static_cast<unsigned char>(text_[at]))) {
        if (++at == text_.size()) return std::nullopt;
      } else if (text_[at] == delimiter) {
        return at;
      }
    }
    return text_.size();
  }

  std::string_view text_;
  LeadBytePredicate isLeadByte_;
  std::size_t position_ = 0;
};

}  // namespace

void ParseDeviceID(std::string_view text, PrinterDeviceID& id, LeadBytePredicate isLeadByte) {
  id.raw = text;
  DeviceIDScanner scanner(text, isLeadByte);
  for (std::string_view key, value; scanner.Next(key, value);) {
    if (std::string PrinterDeviceID::*const field = FieldOf(key)) id.*field = value;
  }
}

void MergeExtendedDeviceID(std::string_view text, PrinterDeviceID& id, LeadBytePredicate isLeadByte) {
  id.extendedRaw = text;
  DeviceIDScanner scanner(text, isLeadByte);
  for (std::string_view key, value; scanner.Next(key, value);) {
    if (!key.starts_with('C')) continue;
    if (std::string PrinterDeviceID::*const field = FieldOf(key)) {
      if (!(id.*field).empty()) id.*field += ',';
      id.*field += value;
    }
  }
}

bool HasCommand(const PrinterDeviceID& id, std::string_view keyword) {
  // Blanks do not separate: in "PJL, ZOLT" the second word is " ZOLT".
  const std::vector<std::string_view> words = SplitAny(id.commandSet, ",");
  return std::ranges::find(words, keyword) != words.end();
}

ProtectionState SBXStateOf(const PrinterDeviceID& id) {
  if (HasCommand(id, "SBXON")) return ProtectionState::On;
  if (HasCommand(id, "SBXOFF")) return ProtectionState::Off;
  if (HasCommand(id, "SBXOT")) return ProtectionState::OT;
  return ProtectionState::None;
}

std::optional<std::string> FindCountryIndex(const PrinterDeviceID& id) {
  constexpr std::string_view kPrefix = "CI_";
  for (const std::string_view word : SplitAny(id.commandSet, ",; ")) {
    const std::size_t at = word.find(kPrefix);
    if (at != std::string_view::npos) return std::string(word.substr(at + kPrefix.size()));
  }
  return std::nullopt;
}

}  // namespace zt
