#include "LocalPrinters.h"

#include <windows.h>
#include <winspool.h>

#include "SpoolerBlock.h"

namespace zt {

std::vector<std::wstring> EnumerateLocalPrinters() {
  DWORD count = 0;
  const std::optional<SpoolerBlock> block = SpoolerBlock::Read([&](BYTE* buffer, DWORD size, DWORD* needed) {
    return EnumPrintersW(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS, nullptr, 1, buffer, size, needed, &count);
  });
  std::vector<std::wstring> names;
  if (!block) return names;
  for (const PRINTER_INFO_1W& printer : block->Items<PRINTER_INFO_1W>(count)) {
    if (printer.pName) names.emplace_back(block->Text(printer.pName));
  }
  return names;
}

}  // namespace zt
