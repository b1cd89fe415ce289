#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace zt {

// ServerAnswer is what one exchange with the report server said: an ordered map from text key to text value. An
// exchange empties it and sets the keys that the answer carries; the runs read it. It stores texts as the server sent
// them; the accessors of numbers return nothing for a text that is no decimal number.
class ServerAnswer {
 public:
  void Clear() { values_.clear(); }

  // NoMoreService: the server has ended this service for good.
  void SetNoMoreService() { values_["NoMoreService"] = "true"; }
  bool IsNoMoreService() const { return values_.contains("NoMoreService"); }

  // LastDate: day of the last report that the server has of this printer, "YYYY-MM-DD".
  void SetLastDate(std::string_view date) { values_["LastDate"] = date; }
  std::optional<std::string> GetLastDate() const { return Find("LastDate"); }

  // PostIntervalDays: days between two print-volume reports.
  void SetPostIntervalDays(std::string_view days) { values_["PostIntervalDays"] = days; }
  std::optional<int> GetPostIntervalDays() const { return FindNumber("PostIntervalDays"); }

  // TransmissionDuration: days between two product-protection reports.
  void SetTransmissionDuration(std::string_view days) { values_["TransmissionDuration"] = days; }
  std::optional<int> GetTransmissionDuration() const { return FindNumber("TransmissionDuration"); }

  // NSLanguageCode: comma-separated list of country indexes.
  void SetNSLanguageCode(std::string_view codes) { values_["NSLanguageCode"] = codes; }
  std::optional<std::string> GetNSLanguageCode() const { return Find("NSLanguageCode"); }

  // TonerMaxLife: toner life limit of the model.
  void SetTonerMaxLife(std::string_view level) { values_["TonerMaxLife"] = level; }
  std::optional<int> GetTonerMaxLife() const { return FindNumber("TonerMaxLife"); }

  // PPNormalIntervalDays: days between two normal product-protection reports.
  void SetPPNormalIntervalDays(std::string_view days) { values_["PPNormalIntervalDays"] = days; }
  std::optional<int> GetPPNormalIntervalDays() const { return FindNumber("PPNormalIntervalDays"); }

  const std::map<std::string, std::string, std::less<>>& Values() const { return values_; }

 private:
  std::optional<std::string> Find(std::string_view key) const;
  std::optional<int> FindNumber(std::string_view key) const;

  std::map<std::string, std::string, std::less<>> values_;
};

}  // namespace zt
