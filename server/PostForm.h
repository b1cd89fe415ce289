#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zt {

enum class FormDelivery { NotConnected, NotSent, Answered };

struct FormReply {
  FormDelivery delivery = FormDelivery::NotConnected;
  std::string answer;      // body of the answer when it was answered with status 200, otherwise empty
  std::uint32_t status{};  // HTTP status; 0 when there was none
  std::uint32_t error{};   // the system's error of a form that was not sent, otherwise 0
};

// PostForm posts an application/x-www-form-urlencoded body to a URL.
using PostForm = std::function<FormReply(const std::string& url, std::string_view body)>;

// PostFormOverHttp is the PostForm of the running agent (Windows only): one HttpConnection for each call.
FormReply PostFormOverHttp(const std::string& url, std::string_view body);

}  // namespace zt
