// A library in place of the agreement dialog. It answers the number that is given as the language.

#include <cwchar>
#include <type_traits>

#include "ProtectionAgreementUI.h"

extern "C" __declspec(dllexport) int __cdecl ShowProtectionAgreementUI(const wchar_t*, const wchar_t* language, int) {
  return static_cast<int>(std::wcstol(language, nullptr, 10));
}

// The interface is the one that the header states.
static_assert(std::is_same_v<decltype(&ShowProtectionAgreementUI), ShowProtectionAgreementUIFunction>);
