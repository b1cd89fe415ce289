#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace zt {

// SNMPPeer is an SNMPv1 agent on UDP port 161 of the loopback address, as its test scripts it. Objects may be set as
// long as no request is under way.
class SNMPPeer {
 public:
  SNMPPeer();
  ~SNMPPeer();
  SNMPPeer(const SNMPPeer&) = delete;
  SNMPPeer& operator=(const SNMPPeer&) = delete;

  // Set gives an object its value: a text, a number (an INTEGER, or a Counter where it is too large for that), or
  // content bytes of any type.
  void Set(const std::string& name, const std::string& text) { SetRaw(name, 0x04, text); }
  void Set(const std::string& name, const char* text) { SetRaw(name, 0x04, text); }
  void Set(const std::string& name, std::int64_t number);
  void SetRaw(const std::string& name, std::uint8_t tag, const std::string& content);
  void Erase(const std::string& name) { objects_.erase(Arcs(name)); }
  void Clear() { objects_.clear(); }

  // SetColumn makes the rows 1.1, 1.2, … of a table's column.
  template <class Value>
  void SetColumn(const std::string& column, const std::vector<Value>& rows) {
    for (std::size_t row = 0; row < rows.size(); ++row) Set(column + ".1." + std::to_string(row + 1), rows[row]);
  }

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
  struct Value {
    std::uint8_t tag;
    std::string content;
  };

  static Name Arcs(const std::string& name);
  void Serve();
  std::optional<std::string> Answer(const std::string& request);

  std::map<Name, Value> objects_;
  int socket_ = -1;
  int stop_[2] = {-1, -1};
  std::thread thread_;
};

}  // namespace zt
