#pragma once

#include <string>

namespace zt {

// ConfirmSending shows a report in a message box and waits for the user's answer: true for OK, false for Cancel.
bool ConfirmSending(const std::string& report);

}  // namespace zt
