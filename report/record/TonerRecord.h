#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace zt {

// ElementValues maps element names to texts. Reports list their elements in its order, the byte order of the names.
using ElementValues = std::map<std::string, std::string, std::less<>>;

// TonerColour is the colour of a toner, with the number that the interfaces know it by. Another number is no colour.
enum class TonerColour : std::uint32_t { Cyan = 1, Magenta = 2, Yellow = 3, Black = 4 };

// ColourLetter returns the letter of a toner colour in the reports: "C", "M", "Y" or "K"; empty for what is no colour.
std::string_view ColourLetter(TonerColour colour);

// ColourOfLetter is the reverse of ColourLetter; nothing unless the text is exactly one of the four letters.
std::optional<TonerColour> ColourOfLetter(std::string_view letter);

// TonerRecord is one toner of a report: its colour and its elements. An element
// that was never set is left out of the report; one that was set to empty text stands there empty. The texts are not
// checked and go into the report as they are.
class TonerRecord {
 public:
  explicit TonerRecord(TonerColour colour) : colour_(colour) {}

  TonerColour Colour() const { return colour_; }
  const ElementValues& Values() const { return values_; }

  void SetValue(std::string_view element, std::string_view text);

  void SetSerialNumber(std::string_view text) { SetValue("SerialNumber", text); }

  // Of the print-volume report.
  void SetLevel(std::uint32_t percent);  // above 100 is stored as empty text
  void SetAverageAreaCoverage(std::uint32_t coverage);
  void SetVendorName(std::string_view text) { SetValue("VendorName", text); }
  void SetModelID(std::string_view text) { SetValue("ModelID", text); }
  void SetSupplierID(std::string_view text) { SetValue("SupplierID", text); }
  void SetInstalledDate(std::string_view text) { SetValue("InstalledDate", text); }

  // Of the product-protection report.
  void SetUsedDotPercent(std::string_view text) { SetValue("UsedDotPercent", text); }
  void SetCapacity(std::string_view text) { SetValue("Capacity", text); }
  void SetTargetDot(std::string_view text) { SetValue("TargetDot", text); }

 private:
  TonerColour colour_;
  ElementValues values_;
};

}  // namespace zt
