#pragma once

#include <functional>
#include <string>

namespace zt {

// ConfirmSend shows the user a document that is about to be posted and returns whether it may be: true for OK, false
// for Cancel. It may take as long as the user does.
using ConfirmSend = std::function<bool(const std::string& document)>;

}  // namespace zt
