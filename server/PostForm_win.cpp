#include "PostForm.h"

#include "HttpConnection.h"

namespace zt {

FormReply PostFormOverHttp(const std::string& url, std::string_view body) {
  HttpConnection connection;
  if (!connection.Open("POST", url)) return {FormDelivery::NotConnected, {}};
  connection.AddHeader("Content-Type", "application/x-www-form-urlencoded");
  FormReply reply;
  std::uint32_t status = 0;
  reply.delivery = connection.Send(body, reply.answer, status) ? FormDelivery::Answered : FormDelivery::NotSent;
  return reply;
}

}  // namespace zt
