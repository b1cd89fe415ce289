#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace ztsnmp {
class Socket;
}

namespace zt {

// SNMPPeer is an SNMPv1 agent on UDP port 161 of a loopback address, as its test scripts it: that may look at it and
// change it as long as no request is under way.
class SNMPPeer {
 public:
  using Bytes = std::vector<std::uint8_t>;

  // Throws std::runtime_error when the port is not to be had. SNMPStartup must have been called.
  explicit SNMPPeer(const char* address = "127.0.0.1");
  ~SNMPPeer();
  SNMPPeer(const SNMPPeer&) = delete;
  SNMPPeer& operator=(const SNMPPeer&) = delete;

  // Set gives an object its value: a text, a number (an INTEGER, or a Counter where it is too large for that), or the
  // bytes of a whole element.
  void Set(const std::string& name, std::string_view text);
  void Set(const std::string& name, std::int64_t number);
  void Set(const std::string& name, Bytes element) { objects_[Arcs(name)] = {name, std::move(element)}; }
  void Erase(const std::string& name) { objects_.erase(Arcs(name)); }
  void Clear() { objects_.clear(); }

  // SetColumn makes the rows 1.1, 1.2, … of a table's column.
  template <class Value>
  void SetColumn(const std::string& column, const std::vector<Value>& rows) {
    for (std::size_t row = 0; row < rows.size(); ++row) Set(column + ".1." + std::to_string(row + 1), rows[row]);
  }

  // Answers to the next requests, byte for byte, whatever those ask; an empty one is silence. Then the objects speak.
  std::deque<Bytes> rawAnswers;

  // A request that names an object of these is not answered.
  std::vector<std::string> silent;

  // Community that a request must have.
  std::string community = "public";

  // Takes the place of the name that a get-next answers.
  std::function<std::string(const std::string& asked)> nextName;

  // The requests that came, as "get NAME NAME" or "next NAME".
  std::vector<std::string> requests;

 private:
  using Name = std::vector<std::uint32_t>;
  struct Object {
    std::string name;
    Bytes element;
  };

  static Name Arcs(std::string_view dotted);
  void Serve(ztsnmp::Socket& socket);
  Bytes Answer(std::span<const std::uint8_t> request);

  std::map<Name, Object> objects_;
  std::atomic<bool> stopped_ = false;
  std::thread thread_;
};

}  // namespace zt
