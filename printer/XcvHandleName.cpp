#include "XcvHandleName.h"

namespace zt {

std::wstring XcvHandleName(std::wstring_view portName, std::wstring_view serverName) {
  std::wstring name(serverName);
  name += serverName.empty() ? L",XcvPort " : L"\\,XcvPort ";
  name += portName;
  return name;
}

}  // namespace zt
