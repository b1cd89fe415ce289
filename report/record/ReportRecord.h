#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "DeviceDocument.h"
#include "TonerRecord.h"

namespace zt {

class Codes;
struct ElementCode;

// ReportRecord is what the print-volume and the product-protection report about one printer share: the device values,
// the toners, the document that the printer may have delivered itself, and the frame of the XML document. Texts are
// bytes and stand in the report as they are, without escaping.
//
// Reading operations add a code for each gap. What could be read is kept whatever they return, except that a document
// that does not parse changes nothing. The order of the virtual operations is part of the interface.
class ReportRecord {
 public:
  // ReadTonerXml reads one `Toner` element and adds the toner; one without a valid colour is not added.
  virtual void ReadTonerXml(const tinyxml2::XMLElement& element, Codes& codes) = 0;
  virtual ~ReportRecord() = default;

  // ToText returns the report as it is posted.
  virtual std::string ToText() const = 0;

  // ReadXml and ReadCountsAndSupplies read a document of the printer into the record; the derived records say which
  // parts of it, and when they return true.
  virtual bool ReadXml(const DeviceDocument& document, Codes& codes) = 0;
  virtual bool ReadCountsAndSupplies(const DeviceDocument& document, Codes& codes) = 0;

  // SetValue sets one device-level element. An element set to empty text is written, too.
  void SetValue(std::string_view element, std::string_view text);

  void SetModelName(std::string_view text) { SetValue("MDL", text); }
  void SetSerialNumber(std::string_view text) { SetValue("GeneralSerialNumber", text); }
  void SetInstalledDate(std::string_view text) { SetValue("SystemInstalledDate", text); }
  void SetHostVersion(std::string_view text) { SetValue("HostVersion", text); }
  void SetCountryIndex(std::string_view text) { SetValue("CountryIndex", text); }

  // AddToner appends a toner. One whose colour is none leaves an unclosed element in the document.
  void AddToner(TonerRecord toner) { toners_.push_back(std::move(toner)); }

  // SetDocument keeps the document that the printer delivered whole. It does not read it.
  void SetDocument(std::string text);
  const DeviceDocument& Document() const { return document_; }

  // DropDocumentTree keeps of the document only its text, once all of it that counts has been read.
  void DropDocumentTree() { document_.DropTree(); }

  const ElementValues& DeviceValues() const { return deviceValues_; }
  const std::vector<TonerRecord>& Toners() const { return toners_; }

  // IsValidDate reports whether a date text (`SystemInstalledDate`, `InstalledDate`) follows the rules of
  // ParseTimeText. The setters do not ask it. No caller in this program; part of the interface.
  static bool IsValidDate(std::string_view text);

 protected:
  ReportRecord() = default;
  ReportRecord(ReportRecord&&) = default;
  ReportRecord& operator=(ReportRecord&&) = default;

  // ElementLines writes one line per element, in the order of the names, each ending in LF.
  static std::string ElementLines(const ElementValues& values);

  // BuildDocument writes the frame, the device values and the toners, with lines of the derived record's own before
  // and after the supplies. Every line ends in LF.
  std::string BuildDocument(std::string_view beforeSupplies, std::string_view afterSupplies) const;

  // ReadReport hands the `ZOLT` element of a document, null when there is none, to `read`. True when neither of them
  // added a code; a document that does not parse is not handed on.
  static bool ReadReport(const DeviceDocument& document, Codes& codes,
                         const std::function<void(const tinyxml2::XMLElement* report)>& read);

  // ReadDeviceValues copies those of the elements that stand in the report.
  void ReadDeviceValues(const tinyxml2::XMLElement* report, std::span<const char* const> elements);

  // ReadToners gives each `Toner` of the report's `Supplies` to ReadTonerXml.
  void ReadToners(const tinyxml2::XMLElement* report, Codes& codes);

  // ReadTonerColour returns the colour; nothing, with its code, when it is missing or unknown.
  static std::optional<TonerColour> ReadTonerColour(const tinyxml2::XMLElement& toner, Codes& codes);

  // ReadTonerTexts copies the elements into the toner, with the code of each that is missing.
  static void ReadTonerTexts(const tinyxml2::XMLElement& element, std::span<const ElementCode> texts,
                             TonerRecord& toner, Codes& codes);

 private:
  DeviceDocument document_;
  ElementValues deviceValues_;
  std::vector<TonerRecord> toners_;
};

}  // namespace zt
