#pragma once

#include "SNMPDataType.h"

/// Null is a NULL: the value of a binding in a request, which asks for the real one.
class ZTSNMP_API Null : public SNMPDataType {
 public:
  Null() noexcept;
  Null(const Null& other) noexcept;
  Null& operator=(const Null& other) noexcept;
  ~Null() override;

  [[nodiscard]] EnumDataType getDataType() const noexcept override;
  [[nodiscard]] const char* toString() const noexcept override;  ///< ""
  [[nodiscard]] int isValid() const noexcept override;           ///< always 0
};
