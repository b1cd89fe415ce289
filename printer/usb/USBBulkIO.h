#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "HResult.h"

namespace zt {

// USBBulkIO is the pair of bulk pipes of an open USB printer.
class USBBulkIO {
 public:
  virtual ~USBBulkIO() = default;

  // RunBulkTransaction reads the printer's report document: a request for its size, then a request for the document.
  // Fail, the output untouched, when a step fails or the printer announces nothing or more than
  // kLongestDocument.
  HResult RunBulkTransaction(std::string& document);

 private:
  // Write and Read move all of the bytes; false when fewer were moved or it took too long. A failed Read may have
  // written to the bytes.
  virtual bool Write(std::span<const std::uint8_t> bytes) = 0;
  virtual bool Read(std::span<std::uint8_t> bytes) = 0;
};

}  // namespace zt
