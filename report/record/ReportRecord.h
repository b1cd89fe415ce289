#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "TonerRecord.h"

namespace tinyxml2 {
class XMLElement;
}  // namespace tinyxml2

namespace zt {

struct ElementMessage;

// ReportRecord is what the print-volume and the product-protection report about one printer share: the device values,
// the toners, the document that the printer may have delivered itself, and the frame of the XML document. Texts are
// bytes and stand in the report as they are, without escaping.
//
// Reading operations append their findings, each beginning with "/", to the caller's `messages`. What could be read is
// kept whatever they answer, except that a document that does not parse changes nothing. The order of the virtual
// operations is part of the interface.
class ReportRecord {
 public:
  // ReadTonerXml reads one `Toner` element and adds the toner; one without a valid colour is not added. True when it
  // appended no message.
  virtual bool ReadTonerXml(const tinyxml2::XMLElement& element, std::string& messages) = 0;
  virtual ~ReportRecord() = default;

  // ToText answers the report as it is posted.
  virtual std::string ToText() const = 0;

  // ReadXml and ReadCountsAndSupplies read a document of the printer into the record; the derived records say which
  // parts of it, and when they answer true.
  virtual bool ReadXml(std::string_view document, std::string& messages) = 0;
  virtual bool ReadCountsAndSupplies(std::string_view document, std::string& messages) = 0;

  // SetValue sets one device-level element. An element set to empty text is written, too.
  void SetValue(std::string_view element, std::string_view text);

  void SetModelName(std::string_view text) { SetValue("MDL", text); }
  void SetSerialNumber(std::string_view text) { SetValue("GeneralSerialNumber", text); }
  void SetInstalledDate(std::string_view text) { SetValue("SystemInstalledDate", text); }
  void SetHostVersion(std::string_view text) { SetValue("HostVersion", text); }
  void SetCountryIndex(std::string_view text) { SetValue("CountryIndex", text); }

  // AddToner appends a toner. One whose colour is not 1 to 4 leaves an unclosed element in the document.
  void AddToner(TonerRecord toner) { toners_.push_back(std::move(toner)); }

  // SetDeviceDocument keeps the document that the printer delivered whole. It does not read it.
  void SetDeviceDocument(std::string document) { deviceDocument_ = std::move(document); }
  const std::string& DeviceDocument() const { return deviceDocument_; }

  const ElementValues& DeviceValues() const { return deviceValues_; }
  const std::vector<TonerRecord>& Toners() const { return toners_; }

  // IsValidDate tells whether a date text (`SystemInstalledDate`, `InstalledDate`) follows the rules of ParseTimeText.
  // The setters do not ask it.
  static bool IsValidDate(std::string_view text);

 protected:
  ReportRecord() = default;
  ReportRecord(const ReportRecord&) = default;
  ReportRecord(ReportRecord&&) = default;
  ReportRecord& operator=(const ReportRecord&) = default;
  ReportRecord& operator=(ReportRecord&&) = default;

  // ElementLines writes one line per element, in the order of the names, each ending in LF.
  static std::string ElementLines(const ElementValues& values);

  // BuildDocument writes the frame, the device values and the toners, with lines of the derived record's own before
  // and after the supplies. Every line ends in LF.
  std::string BuildDocument(std::string_view beforeSupplies, std::string_view afterSupplies) const;

  // ReadReport parses a document of the printer and hands its `ZOLT` element, null when there is none, to `read`. True
  // when neither of them appended a message; a document that does not parse is not handed on.
  static bool ReadReport(std::string_view document, std::string& messages,
                         const std::function<void(const tinyxml2::XMLElement* report)>& read);

  // ReadDeviceValues copies those of the elements that stand in the report.
  void ReadDeviceValues(const tinyxml2::XMLElement* report, std::span<const char* const> elements);

  // ReadToners gives each `Toner` of the report's `Supplies` to ReadTonerXml.
  void ReadToners(const tinyxml2::XMLElement* report, std::string& messages);

  // ReadTonerColour answers 1 to 4; 0, with its message, when the colour is missing or unknown.
  static std::int32_t ReadTonerColour(const tinyxml2::XMLElement& toner, std::string& messages);

  // ReadTonerTexts copies the elements into the toner, with the message of each that is missing.
  static void ReadTonerTexts(const tinyxml2::XMLElement& element, std::span<const ElementMessage> texts,
                             TonerRecord& toner, std::string& messages);

 private:
  std::string deviceDocument_;
  ElementValues deviceValues_;
  std::vector<TonerRecord> toners_;
};

}  // namespace zt
