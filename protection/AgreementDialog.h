#pragma once

#include <string>

#include "ProtectionRules.h"

namespace zt {

// ShowAgreementDialog shows the agreement dialog of "UA.dll" from the agent's own folder and returns the user's
// decision. DisagreedUnreported, with a trace line, when there is no such library, it does not export the dialog, or it
// answers none of the three. See ProtectionAgreementUI.h for the library's side.
Agreement ShowAgreementDialog(const std::wstring& queue, const std::wstring& language, bool countryIs52);

}  // namespace zt
