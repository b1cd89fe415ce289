#include <windows.h>

#include <type_traits>

#include "AgreementTexts.h"
#include "AgreementWindow.h"
#include "ProtectionAgreementUI.h"

namespace {

HMODULE ThisLibrary() {
  HMODULE library = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const wchar_t*>(&ThisLibrary), &library);
  return library;
}

}  // namespace

// The agreement is the same for every country here, so the last argument is not looked at.
extern "C" __declspec(dllexport) int __cdecl ShowProtectionAgreementUI(const wchar_t* queue, const wchar_t* language,
                                                                       int /*countryIs52*/) {
  try {
    const HMODULE library = ThisLibrary();
    return ShowAgreementWindow(library, AgreementTexts(library, language), queue);
  } catch (...) {
    return UA_DISAGREED_UNREPORTED;
  }
}

static_assert(std::is_same_v<decltype(&ShowProtectionAgreementUI), ShowProtectionAgreementUIFunction>,
              "the function is not the one that the agent calls");
