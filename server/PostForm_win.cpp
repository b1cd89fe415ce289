#include "PostForm.h"

#include "HttpConnection.h"

namespace zt {

FormReply PostFormOverHttp(const std::string& url, std::string_view body) {
  HttpConnection connection;
  if (!connection.Open("POST", url)) return {};
  connection.AddHeader("Content-Type", "application/x-www-form-urlencoded");
  FormReply reply;
  reply.delivery = connection.Send(body, reply.answer, reply.status) ? FormDelivery::Answered : FormDelivery::NotSent;
  reply.error = connection.LastError();
  return reply;
}

}  // namespace zt
