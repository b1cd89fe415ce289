#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Handle.h"

namespace zt {

struct InternetHandleTraits {
  using Type = void*;  // HINTERNET
  static Type Invalid() { return nullptr; }
  static void Close(Type handle);
};
using InternetHandle = Handle<InternetHandleTraits>;

// HttpConnection is one HTTP or HTTPS exchange over WinINet, with the system's proxy settings and WinINet's default
// time-outs. A certificate that is untrusted, expired, of another name or of unknown revocation state is accepted. One
// object serves one exchange: Open, then AddHeader as wanted, then Send.
class HttpConnection {
 public:
  // Longest time that Send spends on a response body, in milliseconds. WinINet's own time-outs hold for each read, so a
  // server that sends byte by byte could hold the process for days.
  static constexpr std::uint32_t kLongestReading = 120'000;

  explicit HttpConnection(std::uint32_t readingLimit = kLongestReading) : readingLimit_(readingLimit) {}

  // Open prepares a request; nothing is sent yet. `method` is the request verb. Of `url` the first 104 characters are
  // used. False when no request can be made of them, and for a URL that holds a control character.
  [[nodiscard]] bool Open(const std::string& method, const std::string& url);

  // AddHeader adds a request header or replaces the one of that name. Between Open and Send.
  void AddHeader(std::string_view name, std::string_view value);

  // Send sends the request with `body`, which may be empty, and waits for the answer. True when it was sent, whatever
  // the server made of it; a body of 4 GiB or more is not sent. `status` is the HTTP status code, 0 when there was
  // none. `response` is the body of a 200 answer; empty for any other status, for a body longer than kLongestDocument,
  // and for one that takes too long.
  [[nodiscard]] bool Send(std::string_view body, std::string& response, std::uint32_t& status);

  // LastError returns the system error of a failed Send, otherwise 0.
  std::uint32_t LastError() const { return lastError_; }

 private:
  std::uint32_t SendRequest(std::string_view body);
  std::uint32_t ReadStatus();
  std::string ReadResponse();

  std::uint32_t readingLimit_;
  // Closed in the reverse order.
  InternetHandle internet_;
  InternetHandle connection_;
  InternetHandle request_;
  std::uint32_t lastError_ = 0;
};

}  // namespace zt
