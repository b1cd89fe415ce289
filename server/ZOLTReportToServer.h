#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Clock.h"
#include "IZOLTReportResult.h"
#include "PostForm.h"

namespace zt {

// ZOLTReportToServer is the agent's client of the report server: each exchange posts one form to a page of the server
// and reads the XML answer.
class ZOLTReportToServer : public IZOLTReportResult {
 public:
  // The base URL starts as the one that was configured for the build.
  ZOLTReportToServer(PostForm post, Pause pause);

  bool CheckDate(std::string_view serialNumber, ServerAnswer& answer) override;
  bool CheckSBX(std::string_view modelName, ServerAnswer& answer) override;
  bool PostZOLT(std::string_view document, ServerAnswer& answer) override;
  bool PostSBX(std::string_view document, ServerAnswer& answer) override;
  bool GetAgreement() const override { return agreement_; }

  // SetRetryCount sets the extra attempts after a failed upload, 3 seconds apart; 0 at first. No caller in this
  // program, whose next start is its retry; part of the interface.
  void SetRetryCount(std::uint32_t count) { retryCount_ = count; }

  // SetBaseURL sets the text that page names are appended to; it ends in '/'.
  void SetBaseURL(std::string url) { baseURL_ = std::move(url); }

  // SetTestMode marks uploads as tests for the server.
  void SetTestMode(bool on) { testMode_ = on; }

  // SetDontCheckSkip makes both checks succeed at once, without an answer and without contacting the server.
  void SetDontCheckSkip(bool on) { dontCheckSkip_ = on; }

  // SetAgreement stores what GetAgreement returns.
  void SetAgreement(bool agreed) { agreement_ = agreed; }

 private:
  bool Upload(std::string_view page, std::string_view document, ServerAnswer& answer);

  std::uint32_t retryCount_ = 0;
  std::string baseURL_;
  bool testMode_ = false;
  bool dontCheckSkip_ = false;
  bool agreement_ = false;
  PostForm post_;
  Pause pause_;
};

}  // namespace zt
