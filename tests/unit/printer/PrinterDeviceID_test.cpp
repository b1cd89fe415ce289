#include "PrinterDeviceID.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ModelFamily.h"

namespace zt {
namespace {

// As in code page 932: 0x81 to 0x9F and 0xE0 to 0xFC open a double-byte character.
bool IsShiftJISLeadByte(unsigned char byte) { return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC); }

PrinterDeviceID Parsed(std::string_view text) {
  PrinterDeviceID id;
  ParseDeviceID(text, id, IsShiftJISLeadByte);
  return id;
}

PrinterDeviceID WithCommands(const char* commandSet) {
  PrinterDeviceID id;
  id.commandSet = commandSet;
  return id;
}

// The fields that parsing fills, in the order model, command set, manufacturer, class information, class.
std::vector<std::string> Fields(const PrinterDeviceID& id) {
  return {id.model, id.commandSet, id.manufacturer, id.classInfo, id.deviceClass};
}

TEST(ParseDeviceID, Table) {
  const std::pair<std::string_view, std::vector<std::string>> rows[] = {
      {"MFG:Velnora;CMD:PJL,ZOLT;MDL:Velnora RV-2160 Series;CLS:PRINTER;CLI:X;",
       {"Velnora RV-2160 Series", "PJL,ZOLT", "Velnora", "X", "PRINTER"}},
      {"MANUFACTURER:M;COMMAND SET:C;MODEL:D;CLASS:S;CLASSINFO:I", {"D", "C", "M", "I", "S"}},
      {"", {"", "", "", "", ""}},
      {"MDL:B", {"B", "", "", "", ""}},                       // no ';' at the end
      {"MDL:B;MFG", {"B", "", "", "", ""}},                   // last segment without ':'
      {"MFG:A; MDL:B", {"", "", "A", "", ""}},                // the blank belongs to the key
      {"MANUFACTURER:X;MFG:Y;", {"", "", "Y", "", ""}},       // the last one wins
      {"MDL:A;MDL:;", {"", "", "", "", ""}},                  // even when it is empty
      {"MDL:a:b;", {"a:b", "", "", "", ""}},                  // only the first ':' ends the key
      {"mdl:B;MDLX:B;MD:B;MODELS:B;", {"", "", "", "", ""}},  // keys are exact
      {"noise;MDL:B;MFG:A", {"", "", "A", "", ""}},           // a segment without ':' swallows the next key
      {";;MDL:B;CMD:P", {"", "P", "", "", ""}},
      {":;MDL:B", {"B", "", "", "", ""}},
      {"MDL: B ;CMD:A ", {" B ", "A ", "", "", ""}},  // nothing is trimmed
      {std::string_view("MDL:B\0X;MFG:A", 13), {"B", "", "", "", ""}},
      // The second byte of a double-byte character is no delimiter.
      {"MDL:a\x83\x3B z;CMD:\x81\x3A;", {"a\x83\x3B z", "\x81\x3A", "", "", ""}},
      {"MFG\x81:MDL:B;CMD:P", {"", "P", "", "", ""}},
      // A first byte at the end of the text ends the parse: that segment is lost.
      {"MFG:A;MDL:B\x83", {"", "", "A", "", ""}},
      {"MFG:A;MDL\x83", {"", "", "A", "", ""}},
  };
  for (const auto& [text, fields] : rows) {
    EXPECT_EQ(Fields(Parsed(text)), fields) << text;
    EXPECT_EQ(Parsed(text).raw, text);
  }
}

TEST(MergeExtendedDeviceID, Table) {
  const struct {
    std::string_view base;
    std::string_view extended;
    std::vector<std::string> fields;
  } rows[] = {
      {"CMD:P", "CMD:A;CMD:B", {"", "P,A,B", "", "", ""}},
      {"", "CMD:A;COMMAND SET:B;", {"", "A,B", "", "", ""}},
      {"MDL:M;MFG:F", "MDL:X;MFG:Y;MANUFACTURER:Z", {"M", "", "F", "", ""}},  // identity is not taken from here
      {"CLI:i;CLS:s", "CLASSINFO:j;CLASS:t", {"", "", "", "i,j", "s,t"}},
      {"CMD:P", "CMD:;", {"", "P,", "", "", ""}},  // an empty value brings its comma, too
      {"CMD:P", "CMD:\x81", {"", "P", "", "", ""}},
  };
  for (const auto& row : rows) {
    PrinterDeviceID id = Parsed(row.base);
    MergeExtendedDeviceID(row.extended, id, IsShiftJISLeadByte);
    EXPECT_EQ(Fields(id), row.fields) << row.extended;
    EXPECT_EQ(id.raw, row.base);
    EXPECT_EQ(id.extendedRaw, row.extended);
  }
}

TEST(HasCommand, LooksForAWholeWord) {
  for (const char* text : {"PJL,ZOLT", "PJL,,ZOLT,", "ZOLT"}) EXPECT_TRUE(HasCommand(WithCommands(text), "ZOLT"));
  for (const char* text : {"PJL, ZOLT", "zolt", "ZOLTX", ""}) EXPECT_FALSE(HasCommand(WithCommands(text), "ZOLT"));
}

TEST(SBXStateOf, FirstStateDecides) {
  const std::pair<const char*, ProtectionState> rows[] = {{"CMD:SBXOT,SBXOFF,SBXON", ProtectionState::On},
                                                          {"CMD:SBXOT,SBXOFF", ProtectionState::Off},
                                                          {"CMD:SBXOT", ProtectionState::OT},
                                                          {"CMD:SBXONX", ProtectionState::None}};
  for (const auto& [text, state] : rows) EXPECT_EQ(SBXStateOf(Parsed(text)), state) << text;
}

TEST(FindCountryIndex, Table) {
  const std::pair<const char*, std::optional<std::string>> rows[] = {
      {"PJL,ZOLT,CI_12", "12"},  {"XCI_7 Y", "7"},        {"CI_", ""}, {"CI_1,CI_2", "1"}, {"CI_CI_4", "CI_4"},
      {"CI,ci_5", std::nullopt}, {"C;I_6", std::nullopt},
  };
  for (const auto& [text, index] : rows) EXPECT_EQ(FindCountryIndex(WithCommands(text)), index) << text;
}

TEST(ClassifyModelFamily, Table) {
  const struct {
    const char* model;
    ModelFamily family;
    const char* name;
  } rows[] = {
      {"Velnora RV-2160 Series", ModelFamily::RV, "RV"},
      {"Velnora PHT-10", ModelFamily::PHT, "PHT"},
      {"Velnora MFP 4", ModelFamily::PHZ, "PHZ"},
      {"Velnora MFP 4 DWB-1", ModelFamily::DWB, "DWB"},
      {"DWB-1 RV-1", ModelFamily::RV, "RV"},  // the order of the tests decides, not that of the name
      {"Velnora TJ-760P", ModelFamily::DWB, "DWB"},
      {"aYBc", ModelFamily::DWB, "DWB"},
      {"", ModelFamily::Unknown, ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ClassifyModelFamily(row.model), row.family) << row.model;
    EXPECT_EQ(ModelFamilyName(row.family), row.name);
  }
}

}  // namespace
}  // namespace zt
