#include "ZOLTReportToServer.h"

#include <utility>

#include "EncodeFormValue.h"
#include "ReportServerXml.h"
#include "Trace.h"

namespace zt {
namespace {

constexpr std::uint32_t kRetryWaitMilliseconds = 3000;

bool JudgeUpload(std::string_view xml, ServerAnswer& answer) {
  switch (ReadUploadResult(xml)) {
    case UploadResult::Success:
      return true;
    case UploadResult::NoMoreService:
      // The server has taken this upload; the caller learns that it wants no other.
      answer.SetNoMoreService();
      return true;
    case UploadResult::Missing:
      ZT_TRACE(Error, "Can't get result !!!");
      return false;
    case UploadResult::Unknown:
      break;
  }
  ZT_TRACE(Error, "Unknown Result !!!");
  return false;
}

}  // namespace

ZOLTReportToServer::ZOLTReportToServer(PostForm post, Pause pause)
    : baseURL_(ZT_REPORT_BASE_URL), post_(std::move(post)), pause_(std::move(pause)) {}

bool ZOLTReportToServer::CheckDate(std::string_view serialNumber, ServerAnswer& answer) {
  answer.Clear();
  if (dontCheckSkip_) return true;
  const FormReply reply = post_(baseURL_ + "CheckDate.aspx", "SerialNumber=" + EncodeFormValue(serialNumber));
  return reply.delivery == FormDelivery::Answered && ReadDateAnswer(reply.answer, answer);
}

bool ZOLTReportToServer::CheckSBX(std::string_view modelName, ServerAnswer& answer) {
  answer.Clear();
  if (dontCheckSkip_) return true;
  const FormReply reply = post_(baseURL_ + "CheckSBX.aspx", "SBX=1");
  return reply.delivery == FormDelivery::Answered && ReadSBXAnswer(reply.answer, modelName, answer);
}

bool ZOLTReportToServer::PostZOLT(std::string_view document, ServerAnswer& answer) {
  return Upload("Connector.aspx", document, answer);
}

bool ZOLTReportToServer::PostSBX(std::string_view document, ServerAnswer& answer) {
  return Upload("ConnectorSBX.aspx", document, answer);
}

bool ZOLTReportToServer::Upload(std::string_view page, std::string_view document, ServerAnswer& answer) {
  answer.Clear();
  ZT_TRACE(Information, "Start uploading...");
  const std::string url = baseURL_ + std::string(page);
  const std::string body = "data=" + EncodeFormValue(document) + (testMode_ ? "&test=1" : "");
  for (std::uint32_t retries = retryCount_;; --retries) {
    const FormReply reply = post_(url, body);
    // Whatever the server answers is final: only what did not reach it is tried again.
    if (reply.delivery == FormDelivery::Answered) return JudgeUpload(reply.answer, answer);
    if (reply.delivery == FormDelivery::NotConnected) {
      ZT_TRACE(Error, "Can't connect to server");
    } else {
      ZT_TRACE(Error, "Failed to post !!!");
    }
    if (retries == 0) return false;
    ZT_TRACE(Warning, "Retry to server...");
    pause_(kRetryWaitMilliseconds);
  }
}

}  // namespace zt
