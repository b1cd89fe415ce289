// A printer at a USB port that answers as the input says: no reply, a short one, one that claims to be longer than its
// room, and documents of any announced size.

#include <algorithm>
#include <memory>

#include "Input.h"
#include "KVFPrinterUSB.h"
#include "PPAInformation.h"
#include "Require.h"
#include "ZOLTInformation.h"

namespace {

class Control : public zt::USBControl {
 public:
  explicit Control(Input& input) : input_(input) {}
  std::optional<std::size_t> Request(const zt::USBRequest& request, std::span<std::uint8_t> reply) override {
    require(reply.size() == request.replySize, "the room is that of the reply");
    return QueryDeviceID(reply);
  }
  std::optional<std::size_t> QueryDeviceID(std::span<std::uint8_t> reply) override {
    const std::uint8_t kind = input_.byte();
    if (kind % 8 == 0) return std::nullopt;
    const std::string text = input_.text();
    std::copy_n(text.begin(), std::min(text.size(), reply.size()), reply.begin());
    return kind % 8 == 1 ? reply.size() : kind % 8 == 2 ? reply.size() + kind : std::min(text.size(), reply.size());
  }

 private:
  Input& input_;
};

class Bulk : public zt::USBBulkIO {
 public:
  explicit Bulk(Input& input) : input_(input) {}

 private:
  bool Write(std::span<const std::uint8_t> bytes) override {
    asksForSize_ = bytes[11] == 1;
    return input_.byte() % 16 != 0;
  }
  bool Read(std::span<std::uint8_t> bytes) override {
    if (asksForSize_) {
      const std::uint32_t pages = input_.byte();
      document_ = input_.text(pages * 256 + input_.byte());
      const auto size = input_.byte() % 8 == 0 ? input_.number() : static_cast<std::uint32_t>(document_.size());
      for (std::size_t i = 0; i < 4; ++i) bytes[12 + i] = static_cast<std::uint8_t>(size >> (24 - 8 * i));
    } else {
      require(bytes.size() <= 1024 * 1024, "no more is read than a document may have");
      std::copy_n(document_.begin(), std::min(document_.size(), bytes.size()), bytes.begin());
    }
    return input_.byte() % 16 != 0;
  }

  Input& input_;
  std::string document_;
  bool asksForSize_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::uint8_t computer = input.byte();
  std::uint32_t waited = 0;
  zt::KVFPrinterUSB printer(
      L"path", {.openControl = [&](auto&) { return computer & 1 ? nullptr : std::make_unique<Control>(input); },
                .openBulk = [&](auto&) { return computer & 2 ? nullptr : std::make_unique<Bulk>(input); },
                .loadDeviceMonitor = [&]() -> std::optional<zt::DeviceMonitor> {
                  if (computer & 4) return std::nullopt;
                  return zt::DeviceMonitor{[&](std::uint8_t) { return (computer & 8) == 0; },
                                           [&](std::uint8_t) { return (computer & 16) == 0; }};
                },
                .countJobs = [&](auto&) { return computer >> 5; },
                .pause = [&](std::uint32_t milliseconds) { waited += milliseconds; }});
  printer.SetQueueName(L"Queue");
  printer.Open();

  zt::ZOLTInformation report;
  std::string codes;
  const bool read = zt::Succeeded(printer.GetZOLTInformation(report, codes));
  require(!read || report.CounterValues().size() <= 2, "a report has two counters");
  static_cast<void>(report.ToText());
  zt::PPAInformation protection;
  static_cast<void>(printer.GetPPAInformation(protection, codes));

  zt::StatusBlock status;
  std::vector<zt::SupplyEntry> supplies;
  std::uint32_t largest = 0;
  std::uint32_t total = 0;
  std::wstring address;
  printer.GetStatusBlock(status);
  printer.GetPortAddress(address);
  printer.GetSupplyLevels(supplies);
  printer.GetPageCounters(largest, total);
  printer.GetExtendedDeviceID(codes);
  printer.SetProtection((computer & 1) == 0);
  printer.SetProtection((computer & 2) == 0);
  require(supplies.size() <= 4 && waited <= 120'000, "a printer has four toners and does not hold up its run");
  return 0;
}
