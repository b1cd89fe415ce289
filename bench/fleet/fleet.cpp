// fleet AGENTS DAYS SCENARIO: simulates that many agents for so many days, and prints for each minute in which the
// report server was asked how often: "minute checks posts".
//
// What an agent does at a start is the agent's own code, the print-volume run with its skip rules; only the clock, the
// settings file and the server are made up. A scenario is "key=value,…":
//
//   starts=printing   each printed job starts the agent: 1 to 20 jobs a working day, from 8 to 18 o'clock, each printer
//                     at its own rate (1 to 20)
//   starts=9          each working day at 9 o'clock, as a scheduled task would
//   jitter=MINUTES    starts at a time of day are late by up to so many minutes, anew each day
//   rollout=DAYS      the agents are installed evenly over so many days
//   outage=DAY+HOURS  the server cannot be reached from midnight of that day on, for so many hours
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "IZOLTReportResult.h"
#include "TimeText.h"
#include "Trace.h"
#include "VirtualZOLTDataProvider.h"
#include "ZOLTLocalSetting.h"
#include "ZOLTProcessor.h"
#include "ZOLTSkipChecker.h"

namespace zt {

// The settings stay in memory, and nobody reads the log.
KVFLocalSetting::KVFLocalSetting(std::string_view) {}
KVFLocalSetting::~KVFLocalSetting() = default;
void WriteTrace(Severity, std::string_view, int, std::string_view) {}
void WriteDebug(std::string_view) {}
void WriteDebug(std::wstring_view) {}

}  // namespace zt

namespace {

constexpr std::time_t kDay = 86400;
constexpr std::time_t kBegin = 1772409600;  // Monday, 2026-03-02, 00:00 UTC; the simulation has no time zone

std::time_t now = kBegin;

struct Scenario {
  int startHour = -1;  // -1: by printing
  int jitterMinutes = 0;
  int rolloutDays = 0;
  std::time_t outageBegin = 0;
  std::time_t outageEnd = 0;

  bool IsServerUp() const { return now < outageBegin || now >= outageEnd; }
};

struct Asked {
  int checks = 0;
  int posts = 0;
};
std::map<std::time_t, Asked> asked;  // by minute

// The report server, as one agent sees it.
class Server : public zt::IZOLTReportResult {
 public:
  explicit Server(const Scenario& scenario) : scenario_(scenario) {}

  bool CheckDate(std::string_view, zt::ServerAnswer& answer) override {
    answer.Clear();
    ++asked[(now - kBegin) / 60].checks;
    if (!scenario_.IsServerUp()) return false;
    if (!lastDate_.empty()) answer.SetLastDate(lastDate_);
    return true;
  }
  bool CheckSBX(std::string_view, zt::ServerAnswer&) override { return false; }
  bool PostZOLT(std::string_view, zt::ServerAnswer& answer) override {
    answer.Clear();
    ++asked[(now - kBegin) / 60].posts;
    if (!scenario_.IsServerUp()) return false;
    lastDate_ = zt::FormatLocalTime(now).substr(0, 10);
    return true;
  }
  bool PostSBX(std::string_view, zt::ServerAnswer&) override { return false; }
  bool GetAgreement() const override { return false; }

 private:
  const Scenario& scenario_;
  std::string lastDate_;
};

class Agent {
 public:
  Agent(const Scenario& scenario, double jobsPerDay, std::time_t installed)
      : jobsPerDay_(jobsPerDay), installed_(installed), server_(scenario), checker_(&settings_, [] { return now; }) {}

  double JobsPerDay() const { return jobsPerDay_; }

  void Start() {
    if (now < installed_) return;
    zt::VirtualZOLTDataProvider printer(L"Office");
    zt::ZOLTProcessor([](const std::string&) { return true; }).Run({}, printer, server_, checker_);
  }

 private:
  double jobsPerDay_;
  std::time_t installed_;
  zt::ZOLTLocalSetting settings_;
  Server server_;
  zt::ZOLTSkipChecker checker_;
};

Scenario ReadScenario(const std::string& text) {
  Scenario scenario;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    const std::size_t equals = std::min(text.find('=', begin), end);
    const std::string key = text.substr(begin, equals - begin);
    const std::string value = equals < end ? text.substr(equals + 1, end - equals - 1) : "";
    if (key == "starts" && value != "printing") {
      scenario.startHour = std::atoi(value.c_str());
    } else if (key == "jitter") {
      scenario.jitterMinutes = std::atoi(value.c_str());
    } else if (key == "rollout") {
      scenario.rolloutDays = std::atoi(value.c_str());
    } else if (key == "outage") {
      scenario.outageBegin = kBegin + kDay * std::atoi(value.c_str());
      scenario.outageEnd = scenario.outageBegin + 3600 * std::atoi(value.substr(value.find('+') + 1).c_str());
    }
    begin = end + 1;
  }
  return scenario;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: fleet AGENTS DAYS SCENARIO\n", stderr);
    return 2;
  }
  setenv("TZ", "UTC", 1);
  const int count = std::atoi(argv[1]);
  const int days = std::atoi(argv[2]);
  const Scenario scenario = ReadScenario(argv[3]);
  std::mt19937_64 random(1);
  const auto between = [&](double least, double most) {
    return std::uniform_real_distribution<double>(least, most)(random);
  };

  std::vector<std::unique_ptr<Agent>> agents;
  for (int i = 0; i < count; ++i) {
    const auto installed = kBegin + static_cast<std::time_t>(between(0, scenario.rolloutDays) * kDay);
    agents.push_back(std::make_unique<Agent>(scenario, between(1, 20), installed));
  }
  std::vector<std::pair<std::time_t, Agent*>> starts;
  for (int day = 0; day < days; ++day) {
    if (day % 7 >= 5) continue;  // at the weekend nobody prints
    const std::time_t midnight = kBegin + day * kDay;
    starts.clear();
    for (const auto& agent : agents) {
      if (scenario.startHour >= 0) {
        const double late = between(0, scenario.jitterMinutes * 60.0);
        starts.emplace_back(midnight + scenario.startHour * 3600 + static_cast<std::time_t>(late), agent.get());
        continue;
      }
      const int jobs = std::poisson_distribution<int>(agent->JobsPerDay())(random);
      for (int job = 0; job < jobs; ++job) {
        starts.emplace_back(midnight + static_cast<std::time_t>(between(8, 18) * 3600), agent.get());
      }
    }
    std::sort(starts.begin(), starts.end());
    for (const auto& [time, agent] : starts) {
      now = time;
      agent->Start();
    }
  }
  for (const auto& [minute, counts] : asked) {
    std::printf("%lld %d %d\n", static_cast<long long>(minute), counts.checks, counts.posts);
  }
}
