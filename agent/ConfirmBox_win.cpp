#include "ConfirmBox.h"

#include <windows.h>

#include "CodePage.h"

namespace zt {

bool ConfirmSending(const std::string& report) {
  return MessageBoxW(nullptr, DecodeText(report).c_str(), L"Click Cancel not to send data to server", MB_OKCANCEL) !=
         IDCANCEL;
}

}  // namespace zt
