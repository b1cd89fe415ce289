#pragma once

#include <algorithm>
#include <array>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "KVFPrinterUSB.h"

namespace zt {

// FakeUSBPrinter is a USB printer as its test scripts it, with the computer that it is plugged into.
class FakeUSBPrinter {
 public:
  bool opens = true;
  std::size_t opensUntilFailure = 100;
  bool bulkOpens = true;
  std::optional<std::string> deviceID;

  // Replies to vendor requests, by the request's bytes, one after the other; the last one stays. None fails.
  std::map<std::array<std::uint8_t, 3>, std::deque<std::optional<std::string>>> replies;

  // What the bulk pipe delivers, read by read; a read of another size than that fails, and so does a read too many.
  std::deque<std::string> reads;
  std::size_t writesUntilFailure = 100;

  std::optional<bool> acquires;  // answer of the device monitor; nothing: it is not installed
  std::size_t releasesThatFail = 0;
  std::int32_t jobs = 0;

  std::vector<std::string> log;  // what was done, as "open", "request 02 00 00", "write …", "read 16", "acquire 153"
  std::uint32_t slept = 0;

  void Reply(const USBRequest& request, std::optional<std::string> reply) {
    replies[request.bytes].push_back(std::move(reply));
  }

  // AddDocument makes one whole exchange.
  void AddDocument(const std::string& document) {
    std::string header(16, '\0');
    for (int i = 0; i < 4; ++i)
      header[static_cast<std::size_t>(12 + i)] = static_cast<char>(document.size() >> (24 - 8 * i));
    reads.push_back(header);
    reads.push_back(document);
  }

  USBServices Services();

 private:
  class Control;
  class Bulk;
};

class FakeUSBPrinter::Control : public USBControl {
 public:
  explicit Control(FakeUSBPrinter& printer) : printer_(printer) { printer_.log.push_back("open"); }
  ~Control() override { printer_.log.push_back("close"); }

  std::optional<std::size_t> Request(const USBRequest& request, std::span<std::uint8_t> reply) override {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string line = "request";
    for (const std::uint8_t byte : request.bytes) line += {' ', kDigits[byte >> 4], kDigits[byte & 15]};
    printer_.log.push_back(line);
    auto& answers = printer_.replies[request.bytes];
    if (answers.empty()) return std::nullopt;
    const std::optional<std::string> answer = answers.front();
    if (answers.size() > 1) answers.pop_front();
    if (!answer || answer->size() > reply.size() || reply.size() != request.replySize) return std::nullopt;
    std::copy(answer->begin(), answer->end(), reply.begin());
    return answer->size();
  }

  std::optional<std::size_t> QueryDeviceID(std::span<std::uint8_t> reply) override {
    printer_.log.push_back("device id");
    if (!printer_.deviceID || printer_.deviceID->size() > reply.size()) return std::nullopt;
    std::copy(printer_.deviceID->begin(), printer_.deviceID->end(), reply.begin());
    return printer_.deviceID->size();
  }

 private:
  FakeUSBPrinter& printer_;
};

class FakeUSBPrinter::Bulk : public USBBulkIO {
 public:
  explicit Bulk(FakeUSBPrinter& printer) : printer_(printer) { printer_.log.push_back("open pipes"); }
  ~Bulk() override { printer_.log.push_back("close pipes"); }

 private:
  bool Write(std::span<const std::uint8_t> bytes) override {
    printer_.log.push_back("write " + std::to_string(bytes.size()) + " step " + std::to_string(bytes[11]));
    return printer_.writesUntilFailure-- > 0;
  }

  bool Read(std::span<std::uint8_t> bytes) override {
    printer_.log.push_back("read " + std::to_string(bytes.size()));
    if (printer_.reads.empty()) return false;
    const std::string delivered = printer_.reads.front();
    printer_.reads.pop_front();
    std::copy_n(delivered.begin(), std::min(delivered.size(), bytes.size()), bytes.begin());
    return delivered.size() == bytes.size();
  }

  FakeUSBPrinter& printer_;
};

inline USBServices FakeUSBPrinter::Services() {
  return {.openControl =
              [this](const std::wstring&) {
                return opens && opensUntilFailure-- > 0 ? std::make_unique<Control>(*this) : nullptr;
              },
          .openBulk = [this](const std::wstring&) { return bulkOpens ? std::make_unique<Bulk>(*this) : nullptr; },
          .loadDeviceMonitor = [this]() -> std::optional<DeviceMonitor> {
            if (!acquires) return std::nullopt;
            return DeviceMonitor{.acquire =
                                     [this](std::uint8_t port) {
                                       log.push_back("acquire " + std::to_string(port));
                                       return *acquires;
                                     },
                                 .release =
                                     [this](std::uint8_t port) {
                                       log.push_back("release " + std::to_string(port));
                                       if (releasesThatFail == 0) return true;
                                       --releasesThatFail;
                                       return false;
                                     }};
          },
          .countJobs =
              [this](const std::wstring&) {
                log.push_back("count jobs");
                return jobs;
              },
          .pause = [this](std::uint32_t milliseconds) { slept += milliseconds; }};
}

}  // namespace zt
