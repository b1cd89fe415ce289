#pragma once

#include "SNMPDataType.h"

/// Integer is an INTEGER: one signed 32-bit number (RFC 1155, section 3.2.1).
class ZTSNMP_API Integer : public SNMPDataType {
 public:
  Integer() noexcept;
  explicit Integer(int value) noexcept;
  Integer(const Integer& other) noexcept;
  Integer& operator=(const Integer& other) noexcept;
  ~Integer() override;

  [[nodiscard]] EnumDataType getDataType() const noexcept override;
  [[nodiscard]] const char* toString() const noexcept override;  ///< decimal
  [[nodiscard]] int isValid() const noexcept override;

  /// setValue takes any number but -2147483648, which is refused with -2. An answer that holds it counts as unreadable.
  int setValue(int value) noexcept;
  [[nodiscard]] int getValue() const noexcept;

 private:
  int value_ = 0;
  mutable char text_[12] = {};
};

/// Counter is a Counter: an unsigned 32-bit number that only grows and wraps to 0 (RFC 1155, section 3.2.3.3).
///
/// Every number can be received. In a `set`, numbers from 4286578688 (0xFF800000) upward go out shortened, as another
/// number: 4294967295 as 255. So do those of `Gauge` and `TimeTicks`.
class ZTSNMP_API Counter : public SNMPDataType {
 public:
  Counter() noexcept;
  explicit Counter(unsigned value) noexcept;
  Counter(const Counter& other) noexcept;
  Counter& operator=(const Counter& other) noexcept;
  ~Counter() override;

  [[nodiscard]] EnumDataType getDataType() const noexcept override;
  [[nodiscard]] const char* toString() const noexcept override;  ///< decimal
  [[nodiscard]] int isValid() const noexcept override;           ///< always 0

  int setValue(unsigned value) noexcept;  ///< always 0
  [[nodiscard]] unsigned getValue() const noexcept;

 private:
  unsigned value_ = 0;
  mutable char text_[12] = {};
};

/// Gauge is a Gauge: an unsigned 32-bit number that goes up and down (RFC 1155, section 3.2.3.4).
class ZTSNMP_API Gauge : public SNMPDataType {
 public:
  Gauge() noexcept;
  explicit Gauge(unsigned value) noexcept;
  Gauge(const Gauge& other) noexcept;
  Gauge& operator=(const Gauge& other) noexcept;
  ~Gauge() override;

  [[nodiscard]] EnumDataType getDataType() const noexcept override;
  [[nodiscard]] const char* toString() const noexcept override;  ///< decimal
  [[nodiscard]] int isValid() const noexcept override;           ///< always 0

  int setValue(unsigned value) noexcept;  ///< always 0
  [[nodiscard]] unsigned getValue() const noexcept;

 private:
  unsigned value_ = 0;
  mutable char text_[12] = {};
};

/// TimeTicks is a TimeTicks: a time span in hundredths of a second, unsigned 32-bit (RFC 1155, section 3.2.3.5).
class ZTSNMP_API TimeTicks : public SNMPDataType {
 public:
  TimeTicks() noexcept;
  explicit TimeTicks(unsigned hundredths) noexcept;
  TimeTicks(const TimeTicks& other) noexcept;
  TimeTicks& operator=(const TimeTicks& other) noexcept;
  ~TimeTicks() override;

  [[nodiscard]] EnumDataType getDataType() const noexcept override;
  [[nodiscard]] const char* toString() const noexcept override;  ///< decimal
  [[nodiscard]] int isValid() const noexcept override;           ///< always 0

  int setValue(unsigned hundredths) noexcept;  ///< always 0
  [[nodiscard]] unsigned getValue() const noexcept;

  /// toFormattedString renders whole seconds as "1 Days 2 Hours 3 Minutes 4 Seconds". Parts that are 0 are left out,
  /// and every part but the seconds ends in a blank: 6000 gives "1 Minutes ", less than a second gives "".
  [[nodiscard]] const char* toFormattedString() const noexcept;

 private:
  unsigned value_ = 0;
  mutable char text_[12] = {};
  mutable char formatted_[61] = {};
};
