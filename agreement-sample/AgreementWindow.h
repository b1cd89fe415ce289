#pragma once

#include <windows.h>

#include <string>

#include "AgreementTexts.h"

// ShowAgreementWindow shows the agreement for a print queue and answers when the user has decided: UA_AGREED,
// UA_DISAGREED or UA_DISAGREED_UNREPORTED; the last one also when the window is closed or cannot be shown.
int ShowAgreementWindow(HMODULE library, const AgreementTexts& texts, const std::wstring& queue);
