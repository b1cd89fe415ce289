#include "AgreementTexts.h"

#include <cstring>

#include "UA.h"

namespace {

WORD FindLanguage(std::wstring_view code) {
  constexpr struct {
    std::wstring_view code;
    WORD language;
  } kLanguages[] = {
      {L"DE", LANG_GERMAN}, {L"FR", LANG_FRENCH}, {L"ES", LANG_SPANISH}, {L"JA", LANG_JAPANESE}, {L"EN", LANG_ENGLISH}};
  code = code.substr(0, code.find_first_of(L"-_"));
  for (const auto& known : kLanguages) {
    if (CompareStringOrdinal(code.data(), static_cast<int>(code.size()), known.code.data(),
                             static_cast<int>(known.code.size()), TRUE) == CSTR_EQUAL) {
      return known.language;
    }
  }
  return LANG_ENGLISH;
}

std::wstring FromUtf8(std::span<const char> text) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), size)));
  return wide;
}

}  // namespace

AgreementTexts::AgreementTexts(HMODULE library, std::wstring_view language)
    : library_(library), language_(MAKELANGID(FindLanguage(language), SUBLANG_NEUTRAL)) {}

std::wstring AgreementTexts::String(unsigned id) const {
  // LoadString takes the language of the system, so the table is read here: bundles of 16 strings, each behind its
  // length.
  const std::span<const char> bundle = Resource(RT_STRING, id / 16 + 1);
  std::size_t at = 0;
  for (unsigned before = id % 16;; --before) {
    WORD length = 0;
    if (bundle.size() - at < sizeof(length)) return {};
    std::memcpy(&length, bundle.data() + at, sizeof(length));
    at += sizeof(length);
    const std::size_t bytes = length * sizeof(wchar_t);
    if (bundle.size() - at < bytes) return {};
    if (before == 0) {
      std::wstring text(length, L'\0');
      std::memcpy(text.data(), bundle.data() + at, bytes);
      return text;
    }
    at += bytes;
  }
}

std::wstring AgreementTexts::Agreement() const {
  std::wstring text;
  for (const wchar_t c : FromUtf8(Resource(RT_RCDATA, IDR_AGREEMENT))) {
    if (c == L'\r') continue;
    if (c == L'\n') text += L'\r';
    text += c;
  }
  return text;
}

std::span<const char> AgreementTexts::Resource(const wchar_t* type, unsigned id) const {
  const HRSRC found = FindResourceExW(library_, type, MAKEINTRESOURCEW(id), language_);
  const HGLOBAL loaded = found ? LoadResource(library_, found) : nullptr;
  if (!loaded) return {};
  // Resources belong to the library and are never freed.
  return {static_cast<const char*>(LockResource(loaded)), SizeofResource(library_, found)};
}
