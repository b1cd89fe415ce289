// A document that claims to be a printer's: both records read it, both validators judge it, and it is amended.

#include "PPAInformation.h"
#include "Require.h"
#include "XmlText.h"
#include "ZOLTInformation.h"

namespace {

template <class Record>
void checkVerdict(const std::string& document) {
  zt::Codes codes;
  const bool valid = Record::ValidateXml(document, codes);
  std::string joined;
  for (const zt::Gap& gap : Record::FindGaps(document)) joined += gap.code;
  require(codes.Text() == joined, "the places of the gaps change nothing about their codes");
  require(valid == joined.empty(), "a document without gaps is valid");
  require(zt::BeginningOf(codes).size() <= 2000, "a trace line takes as much");
}

template <class Record>
void check(const std::string& text, const zt::DeviceDocument& document) {
  checkVerdict<Record>(text);
  Record all, part;
  zt::Codes allCodes, partCodes;
  const bool readAll = all.ReadXml(document, allCodes);
  const bool readPart = part.ReadCountsAndSupplies(document, partCodes);
  require(document.Tree() || (!readAll && !readPart && all.DeviceValues().empty()), "what is no XML changes nothing");
  for (const zt::TonerRecord& toner : part.Toners()) {
    require(!zt::ColourLetter(toner.Colour()).empty(), "each toner has a colour");
  }
  checkVerdict<Record>(all.ToText());
}

/// Text beside the root, which TinyXML-2 lets pass before an end tag of nothing, but does not read again without one.
bool hasTextOutside(const tinyxml2::XMLDocument& document) {
  const tinyxml2::XMLNode* node = document.FirstChild();
  while (node && !node->ToText()) node = node->NextSibling();
  return node != nullptr;
}

void checkAmended(const std::string& text) {
  const std::string model = "Model <1> & \"2\"";
  zt::ZOLTInformation record;
  record.SetDocument(text);
  record.SetDocumentMode(true);
  record.SetFromUniversalDriver(true);
  record.SetModelName(model);
  record.SetSerialNumber("SN1");
  const std::string amended = record.ToText();
  const tinyxml2::XMLDocument* tree = record.Document().Tree();
  if (!tree || !zt::FindReport(*tree)) return require(amended == text, "what is no report stays as it is");
  if (amended == text || hasTextOutside(*tree)) return;  // as it is when it would become too long
  require(amended.size() <= 4U * 1024 * 1024, "an amended document is no longer than 4 MiB");
  zt::DeviceDocument again(amended);
  require(again.Tree() != nullptr, "an amended document is one");
  const tinyxml2::XMLElement* report = zt::FindReport(*again.Tree());
  const char* readModel = zt::ChildText(report, "MDL");
  const char* readSerial = zt::ChildText(report, "GeneralSerialNumber");
  require(readModel && model == readModel && readSerial && std::string_view(readSerial) == "SN1",
          "an amended document has the record's identity");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = xmlText(data, size);
  const zt::DeviceDocument document(text);
  check<zt::ZOLTInformation>(text, document);
  check<zt::PPAInformation>(text, document);
  checkAmended(text);
  return 0;
}
