// Mutations of XML by its tokens, which are tags and the texts between them: put in, taken out, doubled, nested. Every
// other mutation is libFuzzer's own.

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t room);

namespace {

using Tokens = std::vector<std::string>;

constexpr std::string_view kElements =
    " root ZOLT MDL ProductType GeneralSerialNumber SystemFirmwareVersion SystemInstalledDate Count "
    "DevTotalMonoCount DevTotalColorCount Supplies Toner Color Level AverageAreaCoverage VendorName ModelID "
    "SupplierID SerialNumber InstalledDate SourceType IBL TTime CountryIndex CurrentVersion FormatType "
    "UsedDotPercent Capacity TargetDot Result LastDate PostIntervalDays TransmissionDuration NSLanguageCode "
    "ModelMaxLevel Model Name ServerMaxLevel NormalIntervalDays ";
constexpr std::string_view kTexts =
    "|C|K|100|-1|4294967296|99999999999999999999|Not Support|SUCCESS|NOMORESERVICE|2026-11-22|&amp;|&lt;a&gt;|&#0;|&|"
    "&#x1F600;|&#xFFFFFFFF;|&#55296;|&e;|]]>|\xEF\xBB\xBF|\xC3|\r\n|<!-- > -->|<!--|<![CDATA[ <Toner> ]]>|<![CDATA[|"
    "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>|<!DOCTYPE root [<!ENTITY e \"&e;&e;\">]>|<!x '>'>|"
    "<b a='>' c=\"/>\"/>|<b a>|<b/>|< b>|";

/// One of the texts of a list that begins and ends with its separator.
std::string oneOf(std::string_view list, std::minstd_rand& random) {
  const std::size_t begin = list.find(list.front(), random() % (list.size() - 1)) + 1;
  return std::string(list.substr(begin, begin == list.size() ? 0 : list.find(list.front(), begin) - begin));
}

Tokens tokensOf(const std::string& text) {
  Tokens tokens;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text[begin] == '<' ? text.find('>', begin) : text.find('<', begin);
    const std::size_t next = std::min(end == std::string::npos ? end : end + (text[begin] == '<'), text.size());
    tokens.push_back(text.substr(begin, next - begin));
    begin = next;
  }
  return tokens;
}

void change(Tokens& tokens, std::minstd_rand& random) {
  const auto at = [&](std::size_t index) { return tokens.begin() + static_cast<std::ptrdiff_t>(index); };
  const std::size_t begin = random() % (tokens.size() + 1);
  const std::size_t end = std::min(begin + random() % 8, tokens.size());
  const std::string name = oneOf(kElements, random);
  switch (random() % 5) {
    case 0:
      tokens.insert(at(begin), oneOf(kTexts, random));
      break;
    case 1:
      tokens.erase(at(begin), at(end));
      break;
    case 2: {
      const Tokens run(at(begin), at(end));
      for (auto times = random() % 8; times > 0; --times) tokens.insert(at(begin), run.begin(), run.end());
      break;
    }
    case 3: {
      const std::size_t depth = random() % 8 == 0 ? 1 + random() % 120 : 1;
      tokens.insert(at(end), depth, "</" + name + ">");
      tokens.insert(at(begin), depth, "<" + name + ">");
      break;
    }
    default:
      if (begin < tokens.size()) tokens[begin] = "<" + std::string(random() % 2 == 0 ? "" : "/") + name + ">";
      break;
  }
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t room, unsigned seed) {
  std::minstd_rand random(seed);
  if (random() % 2 == 0) return LLVMFuzzerMutate(data, size, room);
  Tokens tokens = tokensOf({data, data + size});
  for (auto changes = 1 + random() % 4; changes > 0; --changes) change(tokens, random);
  std::string text;
  for (const std::string& token : tokens) text += token;
  text.resize(std::min(text.size(), room));
  std::copy(text.begin(), text.end(), data);
  return text.size();
}
