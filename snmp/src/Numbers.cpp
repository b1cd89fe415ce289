#include "ztsnmp/Numbers.h"

#include <cstdio>
#include <limits>

Integer::Integer(int value) noexcept { setValue(value); }

EnumDataType Integer::getDataType() const noexcept { return DataTypeInteger; }
int Integer::isValid() const noexcept { return StatusSuccess; }

const char* Integer::toString() const noexcept {
  std::snprintf(text_, sizeof(text_), "%d", value_);
  return text_;
}

int Integer::setValue(int value) noexcept {
  // Refused on purpose: programs use this number for "no value".
  if (value == std::numeric_limits<int>::min()) return StatusInvalidInteger;
  value_ = value;
  return StatusSuccess;
}

int UnsignedNumber::isValid() const noexcept { return StatusSuccess; }

const char* UnsignedNumber::toString() const noexcept {
  std::snprintf(text_, sizeof(text_), "%u", value_);
  return text_;
}

int UnsignedNumber::setValue(unsigned value) noexcept {
  value_ = value;
  return StatusSuccess;
}

EnumDataType Counter::getDataType() const noexcept { return DataTypeCounter; }
EnumDataType Gauge::getDataType() const noexcept { return DataTypeGauge; }
EnumDataType TimeTicks::getDataType() const noexcept { return DataTypeTimeTicks; }

const char* TimeTicks::toFormattedString() const noexcept {
  const unsigned seconds = getValue() / 100;
  const struct {
    unsigned amount;
    const char* format;
  } parts[] = {
      {seconds / 86400, "%d Days "},
      {seconds / 3600 % 24, "%d Hours "},
      {seconds / 60 % 60, "%d Minutes "},
      // No blank here, and none is cut where this part is missing: programs compare the texts.
      {seconds % 60, "%d Seconds"},
  };
  std::size_t length = 0;
  formatted_[0] = '\0';
  for (const auto& part : parts) {
    if (part.amount == 0) continue;
    // The longest text, "497 Days 23 Hours 59 Minutes 59 Seconds", fits well.
    length += static_cast<std::size_t>(
        std::snprintf(formatted_ + length, sizeof(formatted_) - length, part.format, static_cast<int>(part.amount)));
  }
  return formatted_;
}
