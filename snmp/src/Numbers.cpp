#include "ztsnmp/Numbers.h"

#include <cstdio>
#include <limits>

namespace {

const char* render(unsigned value, char (&text)[12]) {
  std::snprintf(text, sizeof(text), "%u", value);
  return text;
}

}  // namespace

Integer::Integer() noexcept = default;
Integer::Integer(int value) noexcept { setValue(value); }
Integer::Integer(const Integer& other) noexcept = default;
Integer& Integer::operator=(const Integer& other) noexcept = default;
Integer::~Integer() = default;

EnumDataType Integer::getDataType() const noexcept { return DataTypeInteger; }
int Integer::isValid() const noexcept { return StatusSuccess; }
int Integer::getValue() const noexcept { return value_; }

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

Counter::Counter() noexcept = default;
Counter::Counter(unsigned value) noexcept : value_(value) {}
Counter::Counter(const Counter& other) noexcept = default;
Counter& Counter::operator=(const Counter& other) noexcept = default;
Counter::~Counter() = default;

EnumDataType Counter::getDataType() const noexcept { return DataTypeCounter; }
const char* Counter::toString() const noexcept { return render(value_, text_); }
int Counter::isValid() const noexcept { return StatusSuccess; }
unsigned Counter::getValue() const noexcept { return value_; }

int Counter::setValue(unsigned value) noexcept {
  value_ = value;
  return StatusSuccess;
}

Gauge::Gauge() noexcept = default;
Gauge::Gauge(unsigned value) noexcept : value_(value) {}
Gauge::Gauge(const Gauge& other) noexcept = default;
Gauge& Gauge::operator=(const Gauge& other) noexcept = default;
Gauge::~Gauge() = default;

EnumDataType Gauge::getDataType() const noexcept { return DataTypeGauge; }
const char* Gauge::toString() const noexcept { return render(value_, text_); }
int Gauge::isValid() const noexcept { return StatusSuccess; }
unsigned Gauge::getValue() const noexcept { return value_; }

int Gauge::setValue(unsigned value) noexcept {
  value_ = value;
  return StatusSuccess;
}

TimeTicks::TimeTicks() noexcept = default;
TimeTicks::TimeTicks(unsigned hundredths) noexcept : value_(hundredths) {}
TimeTicks::TimeTicks(const TimeTicks& other) noexcept = default;
TimeTicks& TimeTicks::operator=(const TimeTicks& other) noexcept = default;
TimeTicks::~TimeTicks() = default;

EnumDataType TimeTicks::getDataType() const noexcept { return DataTypeTimeTicks; }
const char* TimeTicks::toString() const noexcept { return render(value_, text_); }
int TimeTicks::isValid() const noexcept { return StatusSuccess; }
unsigned TimeTicks::getValue() const noexcept { return value_; }

int TimeTicks::setValue(unsigned hundredths) noexcept {
  value_ = hundredths;
  return StatusSuccess;
}

const char* TimeTicks::toFormattedString() const noexcept {
  const unsigned seconds = value_ / 100;
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
