#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <string_view>

// AgreementTexts is what the dialog says in one language, from the resources of a library.
class AgreementTexts {
 public:
  // `language` is a language code, such as "DE", "de-AT" or "de_CH": its first part counts, in either case. English for
  // a language that the library does not have.
  AgreementTexts(HMODULE library, std::wstring_view language);

  // String returns a string of the resources by its number; empty when there is none.
  std::wstring String(unsigned id) const;

  // Agreement returns the agreement, with the line ends of an edit control.
  std::wstring Agreement() const;

 private:
  std::span<const char> Resource(const wchar_t* type, unsigned id) const;

  HMODULE library_;
  WORD language_;
};
