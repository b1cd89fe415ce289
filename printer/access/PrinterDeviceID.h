#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "CodePage.h"
#include "ProtectionState.h"

namespace zt {

// PrinterDeviceID is a printer's parsed IEEE 1284 device ID, in the system ANSI code page.
struct PrinterDeviceID {
  std::string raw;           // the device ID as the printer gave it
  std::string model;         // MDL, MODEL
  std::string commandSet;    // CMD, COMMAND SET: comma-separated words, some of them the feature words below
  std::string manufacturer;  // MFG, MANUFACTURER
  std::string classInfo;     // CLI, CLASSINFO
  std::string deviceClass;   // CLS, CLASS
  std::string extendedRaw;   // the extended device ID as the printer gave it
  bool operator==(const PrinterDeviceID&) const = default;
};

// Words of the command set that tell what a printer offers.
inline constexpr std::string_view kZOLTCommand = "ZOLT";  // print-volume reporting
inline constexpr std::string_view kExtendedIDCommand = "EXT";
inline constexpr std::string_view kUsageDocumentCommand = "RDS";
inline constexpr std::string_view kFirmwareVersionCommand = "FWV";
inline constexpr std::string_view kModeRequestCommand = "MPS";

// LeadBytePredicate reports whether a byte opens a double-byte character.
using LeadBytePredicate = bool (*)(unsigned char byte);

// ParseDeviceID fills the record from a device ID, "KEY:value;KEY:value;…". The fields of the keys that occur are
// replaced, the last occurrence wins; the other fields keep their content. Keys and values are taken to the byte:
// nothing is trimmed, case counts. Malformed text never fails, it just leaves fields unfilled.
void ParseDeviceID(std::string_view text, PrinterDeviceID& id, LeadBytePredicate isLeadByte = IsLeadByte);

// MergeExtendedDeviceID adds an extended device ID to the record: command set, class and class information are appended
// to what is there, joined by ",". Its model and manufacturer are not looked at.
void MergeExtendedDeviceID(std::string_view text, PrinterDeviceID& id, LeadBytePredicate isLeadByte = IsLeadByte);

// HasCommand reports whether the comma-separated command set holds exactly this word.
bool HasCommand(const PrinterDeviceID& id, std::string_view keyword);

// SBXStateOf returns the protection state that the command set announces.
ProtectionState SBXStateOf(const PrinterDeviceID& id);

// FindCountryIndex returns what follows "CI_" in the first word of the command set that holds it; possibly empty.
std::optional<std::string> FindCountryIndex(const PrinterDeviceID& id);

}  // namespace zt
