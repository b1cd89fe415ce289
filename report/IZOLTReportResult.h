#pragma once

#include <string_view>

#include "ServerAnswer.h"

namespace zt {

// IZOLTReportResult is the report server as the runs see it. Every operation empties the answer first, then stores what
// the server said; false means that the server was not reached or its answer was unusable.
class IZOLTReportResult {
 public:
  virtual ~IZOLTReportResult() = default;

  // CheckDate asks whether and when a print-volume report of this printer is wanted.
  virtual bool CheckDate(std::string_view serialNumber, ServerAnswer& answer) = 0;

  // CheckSBX asks for the product-protection policy and the limits of this model.
  virtual bool CheckSBX(std::string_view modelName, ServerAnswer& answer) = 0;

  // PostZOLT uploads a print-volume document.
  virtual bool PostZOLT(std::string_view document, ServerAnswer& answer) = 0;

  // PostSBX uploads a product-protection document.
  virtual bool PostSBX(std::string_view document, ServerAnswer& answer) = 0;

  // GetAgreement returns the stored product-protection agreement.
  virtual bool GetAgreement() const = 0;
};

}  // namespace zt
