#include "ReportPage.h"

#include <algorithm>
#include <new>
#include <optional>

#include "CodePage.h"
#include "Joined.h"
#include "PPAInformation.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

// A document that the printer delivered may hold any number of tags and of faulty toners.
constexpr std::size_t kMostSpans = 20'000;
constexpr std::size_t kMostFindings = 500;

struct Meaning {
  std::string_view code;
  Ascii text;
};
constexpr Meaning kMeanings[] = {
    {"error:invalid xml data", "this is no well-formed XML document."},
    {"/error:no mdl", "the model (MDL) is missing."},
    {"/error:no producttype", "the product type (ProductType) is missing: the model is of no known family."},
    {"/error:no serial number", "the printer's serial number (GeneralSerialNumber) is missing."},
    {"/error:no fwver", "the firmware version (SystemFirmwareVersion) is missing."},
    {"/warning:no systeminstalleddate", "the day of installation (SystemInstalledDate) is missing."},
    {"/warning:no XMLinterfaceversion", "the version of the data (CurrentVersion) is missing."},
    {"/warning:no XMLformattype", "the form of the data (FormatType) is missing."},
    {"/error:no mono count", "the count of black pages (DevTotalMonoCount) is missing."},
    {"/warning:no color count or Mono model",
     "the count of colour pages (DevTotalColorCount) is missing. A black-and-white printer has none."},
    {"/error:no supplies", "the list of supplies (Supplies) is missing."},
    {"/error:no toner", "the list of supplies holds no toner (Toner)."},
    {"/error:no color info", "the colour (Color) is missing."},
    {"/error:invalid color", "the colour (Color) is none of C, M, Y and K."},
    {"/warning:no level or Not Support", "the level (Level) is missing. Some printers have none."},
    {"/warning:no averageareacoverage or Not Support",
     "the coverage (AverageAreaCoverage) is missing. Some printers have none."},
    {"/warning:no vendorname", "the vendor (VendorName) is missing."},
    {"/error:no modelid", "the toner's model (ModelID) is missing."},
    {"/warning:no supplierid", "the supplier (SupplierID) is missing."},
    {"/warnig:no serial number", "the toner's serial number (SerialNumber) is missing."},  // the validators' spelling
    {"/warning:no install date", "the day of installation (InstalledDate) is missing."},
    {"/warning:no tonerUsedotpercent", "the used dots (UsedDotPercent) are missing."},
    {"/warning:no tonerCapacity", "the capacity (Capacity) is missing."},
    {"/warning:no tonerTargetdot", "the target (TargetDot) is missing."},
    {"/info:is not RQD", "the source type (SourceType) is missing: the queue has not the universal driver."},
    {"/error:no CRUM - IBL info", "the supply unit's IBL (IBL) is missing."},
    {"/error:no CRUM - TTime info", "the supply unit's TTime (TTime) is missing."},
    {"/warning:no CountryIndex", "the country index (CountryIndex) is missing."},
};

Ascii GravityOf(std::string_view code) {
  if (code.starts_with("/warn")) return "Warning";
  return code.starts_with("/info") ? Ascii("Note") : Ascii("Error");
}

std::wstring MeaningOf(std::string_view code) {
  const auto* known = std::ranges::find_if(kMeanings, [code](const Meaning& meaning) { return meaning.code == code; });
  return known == std::end(kMeanings) ? DecodeText(code) : Joined({known->text});
}

enum class MarkupKind { StartTag, EndTag, Comment, Instruction, CData };

struct Markup {
  MarkupKind kind;
  TextRange range;
};

struct Delimiters {
  MarkupKind kind;
  std::wstring_view open;
  std::wstring_view close;
};
constexpr Delimiters kDelimiters[] = {
    {MarkupKind::Comment, L"<!--", L"-->"},  {MarkupKind::CData, L"<![CDATA[", L"]]>"},
    {MarkupKind::Instruction, L"<?", L"?>"}, {MarkupKind::Instruction, L"<!", L">"},
    {MarkupKind::EndTag, L"</", L">"},
};

// EndOfStartTag returns where the tag that begins at `begin` ends. A ">" within an attribute's quotes ends nothing.
std::size_t EndOfStartTag(std::wstring_view document, std::size_t begin) {
  std::size_t at = begin;
  while ((at = document.find_first_of(L">\"'", at)) != std::wstring_view::npos) {
    if (document[at] == L'>') return at + 1;
    at = document.find(document[at], at + 1);
    if (at == std::wstring_view::npos) break;
    ++at;
  }
  return document.size();
}

// NextMarkup finds the next piece of markup from `from` on. One that is not closed goes on to the document's end.
std::optional<Markup> NextMarkup(std::wstring_view document, std::size_t from) {
  const std::size_t begin = document.find(L'<', from);
  if (begin == std::wstring_view::npos) return std::nullopt;
  const std::wstring_view rest = document.substr(begin);
  for (const Delimiters& delimiters : kDelimiters) {
    if (!rest.starts_with(delimiters.open)) continue;
    const std::size_t close = document.find(delimiters.close, begin + delimiters.open.size());
    const std::size_t end = close == std::wstring_view::npos ? document.size() : close + delimiters.close.size();
    return Markup{delimiters.kind, {begin, end}};
  }
  return Markup{MarkupKind::StartTag, {begin, EndOfStartTag(document, begin)}};
}

std::vector<TextRange> FindStartTags(std::wstring_view document) {
  std::vector<TextRange> tags;
  for (std::optional<Markup> markup; (markup = NextMarkup(document, markup ? markup->range.end : 0));) {
    if (markup->kind == MarkupKind::StartTag) tags.push_back(markup->range);
  }
  return tags;
}

bool IsToner(std::wstring_view document, TextRange tag) {
  constexpr std::wstring_view kName = L"<Toner";
  const std::wstring_view text = document.substr(tag.begin, tag.end - tag.begin);
  return text.starts_with(kName) && text.find_first_of(L" \t\n/>", kName.size()) == kName.size();
}

// ColourTag covers a start tag: its brackets and its name as tag, what stands between as attributes.
void ColourTag(std::wstring_view document, TextRange tag, std::vector<Span>& spans) {
  constexpr std::wstring_view kBlanks = L" \t\r\n";
  const std::wstring_view text = document.substr(tag.begin, tag.end - tag.begin);
  const std::size_t nameEnd = std::min(text.find_first_of(L" \t\r\n/>"), text.size());
  const std::size_t begin = std::min(text.find_first_not_of(kBlanks, nameEnd), text.size());
  std::size_t close = text.size();
  if (text.ends_with(L"/>")) {
    close -= 2;
  } else if (text.ends_with(L">")) {
    --close;
  }
  const std::size_t last = text.substr(0, close).find_last_not_of(kBlanks);
  if (begin >= close || last == std::wstring_view::npos || last < begin) {
    spans.push_back({tag, SpanKind::Tag});
    return;
  }
  spans.push_back({{tag.begin, tag.begin + nameEnd}, SpanKind::Tag});
  spans.push_back({{tag.begin + begin, tag.begin + last + 1}, SpanKind::Attribute});
  if (close < text.size()) spans.push_back({{tag.begin + close, tag.end}, SpanKind::Tag});
}

// AsShown makes the text of a window of the document's bytes.
std::wstring AsShown(std::string_view bytes) {
  std::wstring text = DecodeText(bytes);
  std::replace(text.begin(), text.end(), L'\0', L'\xFFFD');
  std::wstring shown;
  shown.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != L'\r') {
      shown += text[at];
    } else if (at + 1 == text.size() || text[at + 1] != L'\n') {
      shown += L'\n';
    }
  }
  return shown;
}

std::vector<Finding> DescribeGaps(const std::vector<Gap>& gaps, std::wstring_view document) {
  const std::vector<TextRange> tags = FindStartTags(document);
  std::vector<std::size_t> toners;  // for each tag, how many toners begin up to it
  toners.reserve(tags.size());
  for (std::size_t count = 0; const TextRange tag : tags) toners.push_back(count += IsToner(document, tag) ? 1 : 0);

  std::vector<Finding> findings;
  for (const Gap& gap : gaps) {
    if (findings.size() == kMostFindings) {
      findings.push_back({Joined({L"… and ", gaps.size() - kMostFindings, " more."}), {}});
      break;
    }
    Finding finding;
    std::wstring toner;
    if (gap.element < tags.size()) {
      finding.element = tags[gap.element];
      if (IsToner(document, finding.element)) toner = Joined({", toner ", toners[gap.element]});
    }
    finding.text = Joined({GravityOf(gap.code), toner, ": ", MeaningOf(gap.code)});
    findings.push_back(std::move(finding));
  }
  return findings;
}

// WhyNotCollected words a collection that failed. What the printer lacked is traced by its reading.
std::wstring WhyNotCollected(IZOLTDataProvider& provider) {
  bool jobsPending = false;
  provider.WaitForJobs(1, jobsPending);
  return Joined(
      {"The printer does not deliver what the report needs. The page Trace says what is missing.",
       jobsPending ? Ascii(" Jobs wait in the queue: a printer at a USB port cannot be read meanwhile.") : Ascii("")});
}

// CollectPrintVolume and CollectProtection return the text of the report; nothing, with the problem, without one.
std::optional<std::string> CollectPrintVolume(IZOLTDataProvider& provider, std::wstring& problem) {
  ZOLTInformation record;
  if (provider.CollectZOLT(record)) return record.ToText();
  problem = WhyNotCollected(provider);
  return std::nullopt;
}

std::optional<std::string> CollectProtection(IZOLTDataProvider& provider, bool agreement, std::wstring& problem) {
  std::uint32_t tonerLife = 0;
  std::uint32_t changeCount = 0;
  if (!provider.GetTonerLife(&tonerLife, &changeCount)) {
    problem = Joined({"The printer does not tell its toner life. A run ends here."});
    return std::nullopt;
  }
  PPAInformation record;
  if (!provider.CollectSBX(record)) {
    problem = WhyNotCollected(provider);
    return std::nullopt;
  }
  provider.GetHostVersion(record);
  record.SetSBX(std::to_string(tonerLife));
  record.SetAgreement(agreement);
  return record.ToText();
}

}  // namespace

Report MakeReport(ReportKind kind, IZOLTDataProvider& provider, bool agreement) {
  Report report;
  if (!provider.Initialize(true)) {
    report.problem =
        Joined({"The printer does not answer, or does not offer reports (page Identity). A run ends here."});
    return report;
  }
  try {
    const bool printVolume = kind == ReportKind::PrintVolume;
    std::optional<std::string> text = printVolume ? CollectPrintVolume(provider, report.problem)
                                                  : CollectProtection(provider, agreement, report.problem);
    if (!text) return report;
    report.bytes = *std::move(text);
    report.shown = AsShown(report.bytes);
    report.findings = DescribeGaps(
        printVolume ? ZOLTInformation::FindGaps(report.bytes) : PPAInformation::FindGaps(report.bytes), report.shown);
    report.spans = ColourXml(report.shown);
    report.collected = true;
  } catch (const std::bad_alloc&) {
    report = {};
    report.problem = Joined({"The printer's document takes more memory than there is."});
  }
  return report;
}

std::vector<Span> ColourXml(std::wstring_view document) {
  std::vector<Span> spans;
  for (std::optional<Markup> markup;
       spans.size() < kMostSpans && (markup = NextMarkup(document, markup ? markup->range.end : 0));) {
    switch (markup->kind) {
      case MarkupKind::StartTag:
        ColourTag(document, markup->range, spans);
        break;
      case MarkupKind::EndTag:
      case MarkupKind::Instruction:
        spans.push_back({markup->range, SpanKind::Tag});
        break;
      case MarkupKind::Comment:
        spans.push_back({markup->range, SpanKind::Comment});
        break;
      case MarkupKind::CData:
        break;
    }
  }
  return spans;
}

}  // namespace zt
