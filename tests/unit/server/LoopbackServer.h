#pragma once

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace zt {

// LoopbackServer accepts connections on a free TCP port of 127.0.0.1, one after the other, until it is stopped or
// destroyed. Of each it takes one HTTP request, sends the bytes of the reply as they are and closes; an empty reply
// drops the connection.
class LoopbackServer {
 public:
  explicit LoopbackServer(std::string reply);
  ~LoopbackServer() { Stop(); }
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  // Url answers http://127.0.0.1:port and the path.
  std::string Url(const std::string& path) const;

  // Stop ends the server and answers the requests that came, header and body, in order.
  std::vector<std::string> Stop();

 private:
  void Serve();

  std::string reply_;
  std::uintptr_t listener_;
  std::uint16_t port_ = 0;
  std::vector<std::string> requests_;
  std::thread thread_;
};

}  // namespace zt
