#include "USBBulkIO.h"

#include <utility>

#include "DocumentSize.h"
#include "Trace.h"
#include "USBProtocol.h"

namespace zt {

HResult USBBulkIO::RunBulkTransaction(std::string& document) {
  USBHeader reply{};
  if (!Write(kUSBDocumentRequest) || !Read(reply)) return HResult::Fail;
  const std::uint32_t length = DocumentLength(reply);
  if (length == 0) return HResult::Fail;
  if (length > kLongestDocument) {
    ZT_TRACE(Warning, "usb document too long : " << length);
    return HResult::Fail;
  }

  std::string text(length, '\0');
  if (!Write(kUSBDocumentFetch) || !Read({reinterpret_cast<std::uint8_t*>(text.data()), text.size()})) {
    return HResult::Fail;
  }
  document = std::move(text);
  return HResult::Ok;
}

}  // namespace zt
