#include "Exchange.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

#include "Hex.h"
#include "MessageCodec.h"

namespace {

using ztsnmp::CommInterface;

/// A transport that answers from a list and notes what it was asked.
class ScriptedTransport : public CommInterface {
 public:
  int mode = ztsnmp::kAddressingEach;
  int initializeStatus = 0;
  int transmitStatus = 0;
  std::deque<Bytes> answers;  // an empty one stands for silence
  std::string log;

  int initialize() override { return initializeStatus; }
  int broadcast(std::span<const std::uint8_t>) override { return -1; }
  int transmit(const Target&, std::span<const std::uint8_t>) override {
    log += "target ";
    return transmitStatus;
  }
  int transmitTo(const char* address, std::span<const std::uint8_t>) override {
    log += std::string(address) + ' ';
    return transmitStatus;
  }
  int receive(std::span<std::uint8_t> buffer, std::size_t& received, std::string*) override {
    log += "wait(" + std::to_string(retries_) + ',' + std::to_string(seconds_) + ") ";
    const Bytes answer = answers.front();
    answers.pop_front();
    if (answer.empty()) return StatusTimeout;
    std::copy(answer.begin(), answer.end(), buffer.begin());
    received = answer.size();
    return 0;
  }
  void setRetryCount(int count) override { retries_ = count; }
  void setTimeout(int seconds) override { seconds_ = seconds; }
  int statusCheck() override { return 0; }
  int getAddressingMode() const override { return mode; }
  int getProtocol() const override { return 0; }

 private:
  int retries_ = -1;
  int seconds_ = -1;
};

const Bytes kShort = fromHex("30 17 02 01 00 04 00 A2 10 02 01 00 02 01 00 02 01 00 30 05 30 03 06 01 2B");
const Bytes kAnswer = fromHex("30 1B 02 01 00 04 00 A2 14 02 01 00 02 01 00 02 01 00 30 09 30 07 06 02 2B 06 02 01 05");
const Bytes kNoSuchName =
    fromHex("30 1A 02 01 00 04 00 A2 13 02 01 00 02 01 02 02 01 01 30 08 30 06 06 02 2B 06 05 00");

constexpr const char* kBothAddresses = "10.0.0.1 wait(2,3) fe80::1 wait(2,3) ";

TEST(Exchange, AsksAddressAfterAddress) {
  const struct {
    int mode;
    int initializeStatus;
    int transmitStatus;
    std::deque<Bytes> answers;
    bool good;
    const char* log;
  } rows[] = {
      {2, 0, 0, {kAnswer}, true, "10.0.0.1 wait(2,3) "},
      // Silence, an agent's error and a malformed answer do not end it, ...
      {2, 0, 0, {{}, kAnswer}, true, kBothAddresses},
      {2, 0, 0, {kNoSuchName, kAnswer}, true, kBothAddresses},
      {2, 0, 0, {kShort, kAnswer}, true, kBothAddresses},
      {2, 0, 0, {{}, {}}, false, kBothAddresses},
      // ... what was not sent is not waited for, and without sockets nothing is sent.
      {2, 0, StatusTransmitSendError, {}, false, "10.0.0.1 fe80::1 "},
      {2, StatusInitializationError, 0, {}, false, ""},
      {1, 0, 0, {kAnswer}, true, "target wait(2,3) "},  // another transport gets the whole target
  };
  for (const auto& row : rows) {
    Target target(IPAddress("10.0.0.1"));
    target.setIPv6Address(IPv6Address("fe80::1"));
    target.setRetryCount(2);
    ReqRespPDU pdu;
    pdu.addVarBind(VarBind{OID("1.3.6")});
    ScriptedTransport transport;
    transport.mode = row.mode;
    transport.initializeStatus = row.initializeStatus;
    transport.transmitStatus = row.transmitStatus;
    transport.answers = row.answers;
    EXPECT_EQ(ztsnmp::exchange(transport, target, kAnswer, pdu), row.good) << row.log;
    EXPECT_EQ(transport.log, row.log);
    EXPECT_STREQ(pdu.getVarBind(0).getValue().toString(), row.good ? "5" : "") << row.log;
  }
}

}  // namespace
