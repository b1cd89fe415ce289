// A library in place of the agreement dialog. For the queue "Queue" it answers the number that is given as the
// language, one more when the country is not 52; for any other queue 0.

#include <cwchar>
#include <type_traits>

#include "ProtectionAgreementUI.h"

extern "C" __declspec(dllexport) int __cdecl ShowProtectionAgreementUI(const wchar_t* queue, const wchar_t* language,
                                                                       int countryIs52) {
  if (std::wcscmp(queue, L"Queue") != 0) return 0;
  return static_cast<int>(std::wcstol(language, nullptr, 10)) + (countryIs52 ? 0 : 1);
}

// The interface is the one that the header states.
static_assert(std::is_same_v<decltype(&ShowProtectionAgreementUI), ShowProtectionAgreementUIFunction>);
