// What a report server may answer, and how much of it reaches the run. The agent's client asks; each reader gets the
// whole input.

#include "ReportServerXml.h"
#include "Require.h"
#include "XmlText.h"
#include "ZOLTReportToServer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = xmlText(data, size);
  int exchanges = 0;
  zt::ZOLTReportToServer server(
      [&](const std::string&, std::string_view body) {
        require(body.find_first_of(" \r\n<") == std::string_view::npos, "a body is encoded");
        zt::FormReply reply;
        // The first attempt does not arrive.
        reply.delivery = exchanges++ == 0 ? (size % 2 == 0 ? zt::FormDelivery::NotSent : zt::FormDelivery::NotConnected)
                                          : zt::FormDelivery::Answered;
        reply.answer = text;
        return reply;
      },
      [](std::uint32_t) {});
  server.SetRetryCount(1);

  zt::ServerAnswer answer;
  const bool posted = server.PostZOLT(text, answer);
  require(exchanges == 2, "an answer is final");
  const zt::UploadResult result = zt::ReadUploadResult(text);
  require(posted == (result == zt::UploadResult::Success || result == zt::UploadResult::NoMoreService),
          "an upload is as the server says");
  require(server.PostSBX(text, answer) == posted, "both uploads are judged alike");
  require(answer.IsNoMoreService() == (result == zt::UploadResult::NoMoreService), "no more service is passed on");

  if (!server.CheckDate(text, answer)) require(answer.Values().empty(), "what is no answer sets nothing");
  if (const auto date = answer.GetLastDate()) require(date->size() == 10, "a date has 10 characters");
  answer.GetPostIntervalDays();
  if (!server.CheckSBX("Model1", answer)) require(answer.Values().empty(), "what is no answer sets nothing");
  answer.GetNSLanguageCode();
  for (const auto& days :
       {answer.GetTransmissionDuration(), answer.GetTonerMaxLife(), answer.GetPPNormalIntervalDays()}) {
    static_cast<void>(days);
  }
  return 0;
}
