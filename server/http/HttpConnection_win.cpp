#include "HttpConnection.h"

#include <windows.h>
#include <wininet.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <limits>

#include "DocumentSize.h"
#include "Trace.h"

namespace zt {
namespace {

constexpr char kAgent[] = "ZOLTConnector";

// The length that InternetCrackUrlA is told, whatever the URL's own: longer URLs are cut there. Kept on purpose.
constexpr DWORD kCrackedUrlLength = 104;

constexpr DWORD kRequestFlags = INTERNET_FLAG_NO_CACHE_WRITE | INTERNET_FLAG_IGNORE_REDIRECT_TO_HTTPS |
                                INTERNET_FLAG_IGNORE_CERT_DATE_INVALID | INTERNET_FLAG_IGNORE_CERT_CN_INVALID;

constexpr DWORD kRelaxedSecurityFlags = SECURITY_FLAG_IGNORE_REVOCATION | SECURITY_FLAG_IGNORE_UNKNOWN_CA |
                                        SECURITY_FLAG_IGNORE_WRONG_USAGE | SECURITY_FLAG_IGNORE_CERT_CN_INVALID |
                                        SECURITY_FLAG_IGNORE_CERT_DATE_INVALID;
static_assert(kRequestFlags == 0x04007000 && kRelaxedSecurityFlags == 0x3380);

struct Url {
  bool secure = false;
  INTERNET_PORT port = 0;
  std::array<char, 260> host{};
  std::array<char, 260> user{};
  std::array<char, 260> password{};
  std::array<char, 1040> path{};
};

bool CrackUrl(std::string url, Url& parts) {
  // A host comes from a printer port's configuration: a line break in it must not reach the request's head.
  const auto isControl = [](char character) { return static_cast<unsigned char>(character) < ' '; };
  if (std::any_of(url.begin(), url.end(), isControl)) return false;
  // Zero-filled up to the length that is told, so that nothing past a short URL is read.
  url.resize(std::max<std::size_t>(url.size(), kCrackedUrlLength));
  std::array<char, 260> scheme{};
  URL_COMPONENTSA components{};
  components.dwStructSize = sizeof components;
  components.lpszScheme = scheme.data();
  components.dwSchemeLength = static_cast<DWORD>(scheme.size());
  components.lpszHostName = parts.host.data();
  components.dwHostNameLength = static_cast<DWORD>(parts.host.size());
  components.lpszUserName = parts.user.data();
  components.dwUserNameLength = static_cast<DWORD>(parts.user.size());
  components.lpszPassword = parts.password.data();
  components.dwPasswordLength = static_cast<DWORD>(parts.password.size());
  components.lpszUrlPath = parts.path.data();
  components.dwUrlPathLength = static_cast<DWORD>(parts.path.size());
  if (!InternetCrackUrlA(url.c_str(), kCrackedUrlLength, 0, &components)) return false;
  parts.secure = components.nScheme == INTERNET_SCHEME_HTTPS;
  parts.port = components.nPort;
  return true;
}

bool IsCertificateError(DWORD error) {
  return error == ERROR_INTERNET_INVALID_CA ||
         (error >= ERROR_INTERNET_SEC_CERT_ERRORS && error <= ERROR_INTERNET_SEC_CERT_REV_FAILED);
}
static_assert(ERROR_INTERNET_INVALID_CA == 12045 && ERROR_INTERNET_SEC_CERT_ERRORS == 12055 &&
              ERROR_INTERNET_SEC_CERT_REV_FAILED == 12057);

void RelaxSecurity(HINTERNET request) {
  DWORD flags = 0;
  DWORD size = sizeof flags;
  InternetQueryOptionW(request, INTERNET_OPTION_SECURITY_FLAGS, &flags, &size);
  flags |= kRelaxedSecurityFlags;
  InternetSetOptionW(request, INTERNET_OPTION_SECURITY_FLAGS, &flags, sizeof flags);
}

}  // namespace

void InternetHandleTraits::Close(Type handle) { InternetCloseHandle(handle); }

bool HttpConnection::Open(const std::string& method, const std::string& url) {
  Url parts;
  if (!CrackUrl(url, parts)) return false;
  internet_ = InternetHandle(InternetOpenA(kAgent, INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
  if (!internet_) return false;
  connection_ = InternetHandle(InternetConnectA(internet_.Get(), parts.host.data(), parts.port, parts.user.data(),
                                                parts.password.data(), INTERNET_SERVICE_HTTP, 0, 1));
  if (!connection_) return false;
  // "*/*" stands in the referrer's place and no list of accepted types is given, on purpose: servers know the agent so.
  request_ = InternetHandle(HttpOpenRequestA(connection_.Get(), method.c_str(), parts.path.data(), nullptr, "*/*",
                                             nullptr, kRequestFlags | (parts.secure ? INTERNET_FLAG_SECURE : 0), 1));
  return static_cast<bool>(request_);
}

void HttpConnection::AddHeader(std::string_view name, std::string_view value) {
  const std::string header = (TextBuilder() << name << ": " << value).Take();
  HttpAddRequestHeadersA(request_.Get(), header.data(), static_cast<DWORD>(header.size()),
                         HTTP_ADDREQ_FLAG_ADD | HTTP_ADDREQ_FLAG_REPLACE);
}

bool HttpConnection::Send(std::string_view body, std::string& response, std::uint32_t& status) {
  response.clear();
  lastError_ = SendRequest(body);
  if (IsCertificateError(lastError_)) {
    RelaxSecurity(request_.Get());
    lastError_ = SendRequest(body);
  }
  status = ReadStatus();
  if (lastError_ != ERROR_SUCCESS) return false;
  WriteKvfDebug((TextBuilder() << "nStatusCode : " << status).Take());
  if (status == HTTP_STATUS_OK) response = ReadResponse();
  return true;
}

// Answers the system error, ERROR_SUCCESS when the request went out.
std::uint32_t HttpConnection::SendRequest(std::string_view body) {
  if (body.size() > std::numeric_limits<DWORD>::max()) {
    ZT_TRACE(Warning, "HTTP request is too long : " << body.size());
    return ERROR_FILE_TOO_LARGE;
  }
  // WinINet takes the body by a pointer that is not const, and only reads it.
  void* data = body.empty() ? nullptr : const_cast<char*>(body.data());
  if (HttpSendRequestA(request_.Get(), nullptr, 0, data, static_cast<DWORD>(body.size()))) return ERROR_SUCCESS;
  const DWORD error = GetLastError();
  WriteKvfDebug((TextBuilder() << "dwErr : " << error).Take());
  // A failure without a reason must not pass for success.
  return error != ERROR_SUCCESS ? error : ERROR_INTERNET_INTERNAL_ERROR;
}

std::uint32_t HttpConnection::ReadStatus() {
  std::array<wchar_t, 5> text{};  // three digits; the size that WinINet is told is 10 bytes
  DWORD size = sizeof text;
  if (!HttpQueryInfoW(request_.Get(), HTTP_QUERY_STATUS_CODE, text.data(), &size, nullptr)) return 0;
  return std::wcstoul(text.data(), nullptr, 10);
}

std::string HttpConnection::ReadResponse() {
  std::string response;
  const ULONGLONG begun = GetTickCount64();
  DWORD available = 0;
  while (InternetQueryDataAvailable(request_.Get(), &available, 0, 0) && available != 0) {
    const std::size_t length = response.size();
    if (available > kLongestDocument - length) {
      ZT_TRACE(Warning, "HTTP response is longer than " << kLongestDocument << " bytes: dropped");
      return {};
    }
    if (GetTickCount64() - begun >= readingLimit_) {
      ZT_TRACE(Warning, "HTTP response takes longer than " << readingLimit_ << " ms: dropped");
      return {};
    }
    response.resize(length + available);
    DWORD read = 0;
    const bool succeeded = InternetReadFile(request_.Get(), response.data() + length, available, &read);
    if (!succeeded) WriteKvfDebug("failed to read");
    response.resize(length + std::min(read, available));
    if (!succeeded || read == 0) break;
  }
  return response;
}

}  // namespace zt
