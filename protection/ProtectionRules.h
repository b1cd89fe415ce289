#pragma once

#include <cstdint>
#include <string_view>

#include "ServerAnswer.h"
#include "ServerPolicy.h"

// The decisions of the product-protection run. They look at what they are given and do nothing.

namespace zt {

enum class ProtectionState : std::uint32_t;

// Agreement is the outcome of the user's agreement.
enum class Agreement {
  Agreed = 1,              // the printer is to protect itself
  Disagreed = 2,           // not agreed, to be reported
  DisagreedUnreported = 3  // not agreed, not to be reported; also when nobody was asked
};

// IsProtectable reports whether the printer takes part: its protection can be switched.
bool IsProtectable(ProtectionState state);

// Question is what is to be done about the agreement of a printer whose protection is on.
enum class Question {
  None,     // the toner life is within the limit
  Decline,  // declined without asking
  Ask
};

// QuestionForProtectedPrinter decides by the state, the toner life against the limit of the policy, and the country:
// where the country is unknown or in the policy's list nobody is asked.
Question QuestionForProtectedPrinter(ProtectionState state, std::uint32_t tonerLife, const ServerPolicy& policy,
                                     std::string_view countryIndex);

// IsCountryListed reports whether the country index is one of the comma-separated items; blanks around them do not
// count.
bool IsCountryListed(std::string_view list, std::string_view countryIndex);

// IsServerAskedFirst reports whether the server is asked before the toner life is looked at.
bool IsServerAskedFirst(bool policyStored, ProtectionState state);

// MergePolicy returns the policy with the values that the server gave; what it did not give stays, except that the
// toner limit becomes the default.
ServerPolicy MergePolicy(const ServerPolicy& policy, const ServerAnswer& answer);

// IsTonerFresh reports whether the toner life is so low that no limit applies.
bool IsTonerFresh(std::uint32_t tonerLife);

// IsRefused reports whether it was not agreed to.
bool IsRefused(Agreement agreement);

// IsReportDue reports whether data is collected: the protection is off, or the agreement was refused.
bool IsReportDue(ProtectionState state, Agreement agreement);

// IsBelowLimit reports whether the toner life has not reached the limit of the policy; a limit of 0 is none.
bool IsBelowLimit(std::uint32_t tonerLife, const ServerPolicy& policy);

}  // namespace zt
