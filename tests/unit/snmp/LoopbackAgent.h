#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Hex.h"
#include "Sockets.h"

/// LoopbackAgent listens on UDP port 161 of a loopback address, answers each request with the next of its answers, and
/// keeps what it was sent. An empty answer, or none left, is silence. The sockets layer is started.
class LoopbackAgent {
 public:
  explicit LoopbackAgent(std::vector<Bytes> answers, const char* address = "127.0.0.1")
      : answers_(answers.begin(), answers.end()) {
    ztsnmp::SocketAddress local;
    bound_ = ztsnmp::resolveNumeric(address, "161", local) == ztsnmp::LookupResult::Found && sockets_[0].bind(local);
    thread_ = std::thread([this] { serve(); });
  }
  ~LoopbackAgent() {
    stopped_ = true;
    thread_.join();
  }

  [[nodiscard]] bool isBound() const { return bound_; }

  [[nodiscard]] std::vector<std::string> requests() const {
    const std::scoped_lock lock(mutex_);
    return requests_;
  }

 private:
  void serve() {
    while (!stopped_) {
      ztsnmp::ReadySet ready;
      Bytes buffer(4096);
      std::size_t received = 0;
      ztsnmp::SocketAddress client;
      const auto result =
          ztsnmp::waitForSockets(sockets_, ztsnmp::WaitFor::Readable, std::chrono::milliseconds(20), ready);
      if (result != ztsnmp::WaitResult::Ready || !sockets_[0].receiveFrom(buffer, received, client)) continue;
      // A request comes from each adapter; outside a network of one's own there are others than the loopback.
      if (!ztsnmp::numericText(client).starts_with("127.")) continue;
      const std::scoped_lock lock(mutex_);
      requests_.push_back(toHex(std::span(buffer).first(received)));
      if (answers_.empty()) continue;
      const Bytes answer = answers_.front();
      answers_.pop_front();
      if (!answer.empty()) static_cast<void>(sockets_[0].sendTo(answer, client));
    }
  }

  std::array<ztsnmp::Socket, 1> sockets_{ztsnmp::Socket::open(ztsnmp::Family::IPv4)};
  bool bound_ = false;
  std::atomic<bool> stopped_ = false;
  mutable std::mutex mutex_;
  std::deque<Bytes> answers_;
  std::vector<std::string> requests_;
  std::thread thread_;
};
