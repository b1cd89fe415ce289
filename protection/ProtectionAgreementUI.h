#pragma once

/* ProtectionAgreementUI.h is the interface between the agent and a library that shows the product-protection agreement.

   An integrator builds a Windows x64 library named "UA.dll", which exports the function "ShowProtectionAgreementUI",
   undecorated, and installs it in the folder of the agent's program. The agent loads it from there only, calls the
   function at most once per run, on its main thread, and unloads the library. Libraries that it needs are looked for
   beside it and in the system folder. This header is plain C. */

#include <stddef.h> /* wchar_t; NOLINT(modernize-deprecated-headers): plain C */

#ifdef __cplusplus
extern "C" {
#endif

/* The answers. The agent takes any other as UA_DISAGREED_UNREPORTED. */
enum {
  UA_AGREED = 1,               /* the printer is to stop when a consumable is exhausted */
  UA_DISAGREED = 2,            /* it is not, and this is reported to the server */
  UA_DISAGREED_UNREPORTED = 3, /* it is not, and nothing is reported; for a dialog that was closed, or not shown */
};

/* ShowProtectionAgreementUI shows the agreement and answers when the user has decided. It may take any time.

   queue        name of the print queue, UTF-16, terminated
   language     language code of the agreement, UTF-16, terminated, as it was given on the agent's command line; "EN"
                where none was given
   countryIs52  a Windows BOOL: not 0 when the printer was made for country index 52

   Both texts belong to the agent and are valid during the call. The function must let no exception out. */
/* NOLINTNEXTLINE(modernize-use-using): plain C */
typedef int(__cdecl* ShowProtectionAgreementUIFunction)(const wchar_t* queue, const wchar_t* language, int countryIs52);

#ifdef __cplusplus
}
#endif
