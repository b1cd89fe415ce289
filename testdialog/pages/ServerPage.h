#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ExchangeGate.h"
#include "PostForm.h"
#include "ReportPage.h"
#include "Row.h"

namespace zt {

// What the page can ask the report server.
enum class ServerQuestion { CheckDate, CheckSBX, PostReport };

// ServerRequest is one exchange, chosen by hand.
struct ServerRequest {
  ServerQuestion question = ServerQuestion::CheckDate;
  std::string baseURL;  // empty: the one that was configured for the build
  std::string serialNumber;
  std::string modelName;
  ReportKind kind = ReportKind::PrintVolume;
  std::string document;  // of a post
};

// AskServer makes the exchange over the runs' own client and describes it: URL, request body, delivery, HTTP status,
// raw answer, and what was understood of it, or why nothing came back. A post is always marked as a test. The gate is
// looked at before anything is sent.
std::vector<Row> AskServer(const ServerRequest& request, const PostForm& post, const ExchangeGate& gate);

// LineOfFailure returns the number of the row that says why such an exchange failed; 0 when it did not fail.
std::size_t LineOfFailure(const std::vector<Row>& rows);

// WhyNoDelivery words a system error of the HTTP layer: "the server's name is not known", "nobody listens there".
std::wstring WhyNoDelivery(const FormReply& reply);

}  // namespace zt
