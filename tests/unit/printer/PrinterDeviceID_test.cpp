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

// The fields that parsing fills, in the order model, command set, manufacturer, class information, class.
std::vector<std::string> Fields(const PrinterDeviceID& id) {
  return {id.model, id.commandSet, id.manufacturer, id.classInfo, id.deviceClass};
}

TEST(ParseDeviceID, Table) {
  const std::pair<std::string_view, std::vector<std::string>> rows[] = {
      {"MFG:Velnora;CMD:PJL,ZOLT;MDL:Velnora RV-2160 Series;CLS:PRINTER;CLI:X;",
       {"Velnora RV-2160 Series", "PJL,ZOLT", "Velnora", "X", "PRINTER"}},
      {"MANUFACTURER:M;COMMAND SET:C;MODEL:D;CLASS:S;CLASSINFO:I", {"D", "C", "M", "I", "S"}},
      {"MDL:B", {"B", "", "", "", ""}},                       // no ';' at the end
      {"MFG:A; MDL:B", {"", "", "A", "", ""}},                // the blank belongs to the key
      {"MANUFACTURER:X;MFG:Y;", {"", "", "Y", "", ""}},       // the last one wins
      {"MDL:A;MDL:;", {"", "", "", "", ""}},                  // even when it is empty
      {"MDL:a:b;", {"a:b", "", "", "", ""}},                  // only the first ':' ends the key
      {"mdl:B;MDLX:B;MD:B;MODELS:B;", {"", "", "", "", ""}},  // keys are exact
      {"noise;MDL:B;MFG:A", {"", "", "A", "", ""}},           // a segment without ':' swallows the next key
      {"MDL: B ;CMD:A ", {" B ", "A ", "", "", ""}},          // nothing is trimmed
      {std::string_view("MDL:B\0X;MFG:A", 13), {"B", "", "", "", ""}},
      // The second byte of a double-byte character is no delimiter.
      {"MDL:a\x83\x3B z;CMD:\x81\x3A;", {"a\x83\x3B z", "\x81\x3A", "", "", ""}},
      // A first byte at the end of the text ends the parse: that segment is lost.
      {"MFG:A;MDL:B\x83", {"", "", "A", "", ""}},
  };
  for (const auto& [text, fields] : rows) {
    EXPECT_EQ(Fields(Parsed(text)), fields) << text;
    EXPECT_EQ(Parsed(text).raw, text);
  }
}

TEST(MergeExtendedDeviceID, Table) {
  const std::tuple<std::string_view, std::string_view, std::vector<std::string>> rows[] = {
      {"CMD:P", "CMD:A;COMMAND SET:B", {"", "P,A,B", "", "", ""}},
      {"MDL:M;MFG:F", "CMD:A;MDL:X;MFG:Y;MANUFACTURER:Z", {"M", "A", "F", "", ""}},  // identity is not taken from here
      {"CLI:i;CLS:s", "CLASSINFO:j;CLASS:t", {"", "", "", "i,j", "s,t"}},
      {"CMD:P", "CMD:;", {"", "P,", "", "", ""}},  // an empty value brings its comma, too
      {"CMD:P", "CMD:\x81", {"", "P", "", "", ""}},
  };
  for (const auto& [base, extended, fields] : rows) {
    PrinterDeviceID id = Parsed(base);
    MergeExtendedDeviceID(extended, id, IsShiftJISLeadByte);
    EXPECT_EQ(Fields(id), fields) << extended;
    EXPECT_EQ(id.raw, base);
    EXPECT_EQ(id.extendedRaw, extended);
  }
}

TEST(CommandSet, WordsAreWhole) {
  for (const char* text : {"CMD:PJL,,ZOLT,", "CMD:ZOLT"}) EXPECT_TRUE(HasCommand(Parsed(text), "ZOLT"));
  for (const char* text : {"CMD:PJL, ZOLT", "CMD:zolt", "CMD:ZOLTX"}) EXPECT_FALSE(HasCommand(Parsed(text), "ZOLT"));
  const std::pair<const char*, ProtectionState> states[] = {{"CMD:SBXOT,SBXOFF,SBXON", ProtectionState::On},
                                                            {"CMD:SBXOT,SBXOFF", ProtectionState::Off},
                                                            {"CMD:SBXOT", ProtectionState::OT},
                                                            {"CMD:SBXONX", ProtectionState::None}};
  for (const auto& [text, state] : states) EXPECT_EQ(SBXStateOf(Parsed(text)), state) << text;
  const std::pair<const char*, std::optional<std::string>> countries[] = {
      {"CMD:XCI_7 Y", "7"}, {"CMD:CI_1,CI_2", "1"}, {"CMD:CI_CI_4", "CI_4"}, {"CMD:CI,ci_5,CI", std::nullopt}};
  for (const auto& [text, index] : countries) EXPECT_EQ(FindCountryIndex(Parsed(text)), index) << text;
}

TEST(ClassifyModelFamily, Table) {
  const std::tuple<const char*, ModelFamily, const char*> rows[] = {
      {"Velnora RV-2160 Series", ModelFamily::RV, "RV"},
      {"Velnora PHT-10", ModelFamily::PHT, "PHT"},
      {"Velnora PHZ-10", ModelFamily::PHZ, "PHZ"},
      {"Velnora MFP 4", ModelFamily::PHZ, "PHZ"},
      {"MFP DWB-1", ModelFamily::DWB, "DWB"},
      {"DWB-1 RV-1", ModelFamily::RV, "RV"},  // the order of the tests decides, not that of the name
      {"Velnora TJ-760P", ModelFamily::DWB, "DWB"},
      {"aYBc", ModelFamily::DWB, "DWB"},
      {"", ModelFamily::Unknown, ""},
  };
  for (const auto& [model, family, name] : rows) {
    EXPECT_EQ(ClassifyModelFamily(model), family) << model;
    EXPECT_EQ(ModelFamilyName(family), name);
  }
}

}  // namespace
}  // namespace zt
