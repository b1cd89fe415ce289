#include <winsock2.h>
#include <ws2tcpip.h>

#include <cstdlib>
#include <utility>

#include "LoopbackServer.h"

namespace zt {
namespace {

// Reads up to the end that Content-Length tells.
std::string ReadRequest(SOCKET connection) {
  std::string request;
  std::size_t expected = std::string::npos;
  char buffer[4096];
  while (request.size() < expected) {
    const int count = recv(connection, buffer, sizeof buffer, 0);
    if (count <= 0) break;
    request.append(buffer, static_cast<std::size_t>(count));
    const std::size_t headerEnd = request.find("\r\n\r\n");
    if (headerEnd == std::string::npos) continue;
    const std::size_t length = request.find("Content-Length: ");
    expected = headerEnd + 4 + (length < headerEnd ? std::strtoul(request.c_str() + length + 16, nullptr, 10) : 0);
  }
  return request;
}

}  // namespace

LoopbackServer::LoopbackServer(std::string reply) : reply_(std::move(reply)) {
  WSADATA data;
  WSAStartup(MAKEWORD(2, 2), &data);
  listener_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  listen(listener_, 8);
  int size = sizeof address;
  getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { Serve(); });
}

std::string LoopbackServer::Url(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + path;
}

std::vector<std::string> LoopbackServer::Stop() {
  if (thread_.joinable()) {
    // A connection that sends nothing ends the loop: closing a listener does not wake accept() everywhere.
    const SOCKET last = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port_);
    connect(last, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    closesocket(last);
    thread_.join();
    closesocket(listener_);
    WSACleanup();
  }
  return std::move(requests_);
}

void LoopbackServer::Serve() {
  while (true) {
    const SOCKET connection = accept(listener_, nullptr, nullptr);
    std::string request = ReadRequest(connection);
    const bool wasLast = request.empty();
    if (!wasLast) requests_.push_back(std::move(request));
    for (std::size_t sent = 0; !wasLast && sent < reply_.size();) {
      const int count = send(connection, reply_.data() + sent, static_cast<int>(reply_.size() - sent), 0);
      if (count <= 0) break;
      sent += static_cast<std::size_t>(count);
    }
    shutdown(connection, SD_SEND);
    closesocket(connection);
    if (wasLast) return;
  }
}

}  // namespace zt
