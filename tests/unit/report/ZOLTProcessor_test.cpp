#include "ZOLTProcessor.h"

#include <gtest/gtest.h>

#include "RunFakes.h"
#include "TraceCapture.h"

namespace zt {
namespace {

// World is what a run meets: a due report and everything in order, unless a scenario changes it.
struct World {
  Calls calls;
  FakeDataProvider provider{calls};
  FakeReportResult client{calls};
  FakeSkipChecker skipChecker{calls};
  bool showResult = false;
  bool userAccepts = true;
  std::vector<std::string> shown;
};

struct Scenario {
  const char* name;
  std::function<void(World&)> change;
  std::size_t asked;  // how many of the calls of a complete run come first
  Calls then;
  std::vector<std::string> lines;  // after "collecting from"
};

const Calls completeRun = {
    "IsLastIOFailNear(10.0.0.1)", "IsLastServerFailNear()", "WaitForJobs(30)",  "Initialize(1)", "GetSerialNumber",
    "IsLastSendNear(SN1)",        "CheckDate(SN1)",         "WaitForJobs(600)", "CollectZOLT",   "PostZOLT",
    "RecordSendSuccess(SN1)"};

// The fake record holds its model name only.
const std::string findings =
    "3 /error:no producttype/error:no serial number/error:no fwver/warning:no systeminstalleddate/error:no mono count"
    "/warning:no color count or Mono model/error:no toner/info:is not RQD/error:no CRUM - IBL info"
    "/error:no CRUM - TTime info/warning:no CountryIndex";

const Scenario scenarios[] = {
    {"posted", [](World&) {}, 11, {}, {findings, "4 send sucessfully..."}},
    {"recent collection failure",
     [](World& world) { world.skipChecker.ioFailIsNear = true; },
     1,
     {},
     {"3 found last col fail. try later. bye~"}},
    {"recent server failure",
     [](World& world) { world.skipChecker.serverFailIsNear = true; },
     2,
     {},
     {"4 found last server fail. try later bye~"}},
    {"first wait fails with jobs pending",
     [](World& world) {
       world.provider.waits = {false, true};
       world.provider.jobsPending = true;
     },
     11,
     {},
     {"3 still jobs, but go...", findings, "4 send sucessfully..."}},
    {"printer does not open",
     [](World& world) { world.provider.opens = false; },
     4,
     {"RecordIOFail(10.0.0.1)"},
     {"3 not valid IO. bye~"}},
    {"no serial number",
     [](World& world) { world.provider.serialNumber.reset(); },
     5,
     {"RecordIOFail(10.0.0.1)"},
     {"3 mandatory info not available! bye~"}},
    {"empty serial number",
     [](World& world) { world.provider.serialNumber = ""; },
     5,
     {"IsLastSendNear()", "CheckDate()", "WaitForJobs(600)", "CollectZOLT", "PostZOLT", "RecordSendSuccess()"},
     {findings, "4 send sucessfully..."}},
    {"recent send",
     [](World& world) { world.skipChecker.sendIsNear = true; },
     6,
     {},
     {"4 skip send success local. bye~"}},
    {"server unreachable",
     [](World& world) { world.client.checks = false; },
     7,
     {"RecordServerFail()"},
     {"3 svr not connect. bye~"}},
    {"service ended",
     [](World& world) { world.client.checkAnswer = [](ServerAnswer& answer) { answer.SetNoMoreService(); }; },
     7,
     {"SetZOLTEnabled(0)"},
     {"4 service stopped. bye~"}},
    {"server knows a recent report",
     [](World& world) {
       world.skipChecker.serverDateIsNear = true;
       world.client.checkAnswer = [](ServerAnswer& answer) {
         answer.SetPostIntervalDays("14");
         answer.SetLastDate("2014-03-06");
       };
     },
     7,
     {"SetSendInterval(14)", "IsLastSendNear(SN1,2014-03-06)", "RecordSendSuccess(SN1,2014-03-06)"},
     {"4 skipped by svr. bye~"}},
    {"server knows an old report, and sends an interval that is none",
     [](World& world) {
       world.client.checkAnswer = [](ServerAnswer& answer) {
         answer.SetPostIntervalDays("14 days");
         answer.SetLastDate("2001-03-06");
       };
     },
     7,
     {"IsLastSendNear(SN1,2001-03-06)", "WaitForJobs(600)", "CollectZOLT", "PostZOLT", "RecordSendSuccess(SN1)"},
     {findings, "4 send sucessfully..."}},
    {"jobs cannot be counted",
     [](World& world) {
       world.provider.waits = {true, false};
       world.provider.jobsPending = true;
     },
     8,
     {},
     {"2 Failed to wait for job finished!!! bye~"}},
    {"collecting fails",
     [](World& world) { world.provider.collects = false; },
     9,
     {"RecordIOFail(10.0.0.1)"},
     {"4 Failed to get info from device. Will retry at next week. bye~"}},
    {"user cancels",
     [](World& world) {
       world.showResult = true;
       world.userAccepts = false;
     },
     9,
     {},
     {findings, "4 cancel sending..."}},
    {"user accepts",
     [](World& world) { world.showResult = true; },
     11,
     {},
     {findings, "4 sending accepted...", "4 send sucessfully..."}},
    {"post fails",
     [](World& world) { world.client.posts = false; },
     10,
     {"RecordServerFail()"},
     {findings, "4 failed to send..."}},
    {"service ends with the post",
     [](World& world) { world.client.postAnswer = [](ServerAnswer& answer) { answer.SetNoMoreService(); }; },
     11,
     {"SetZOLTEnabled(0)"},
     {findings, "4 send sucessfully..."}},
    {"service ends with a failed post",
     [](World& world) {
       world.client.posts = false;
       world.client.postAnswer = [](ServerAnswer& answer) { answer.SetNoMoreService(); };
     },
     10,
     {"RecordServerFail()", "SetZOLTEnabled(0)"},
     {findings, "4 failed to send..."}},
};

TEST(ZOLTProcessorTest, EveryEndHasItsCallsAndItsLines) {
  for (const Scenario& scenario : scenarios) {
    SCOPED_TRACE(scenario.name);
    World world;
    scenario.change(world);
    TraceCapture trace;
    const ZOLTProcessor processor([&](const std::string& document) {
      world.shown.push_back(document);
      return world.userAccepts;
    });
    processor.Run({world.showResult}, world.provider, world.client, world.skipChecker);

    Calls expected(completeRun.begin(), completeRun.begin() + static_cast<std::ptrdiff_t>(scenario.asked));
    expected.insert(expected.end(), scenario.then.begin(), scenario.then.end());
    EXPECT_EQ(world.calls, expected);
    std::vector<std::string> lines = {"4 collecting from 10.0.0.1"};
    lines.insert(lines.end(), scenario.lines.begin(), scenario.lines.end());
    EXPECT_EQ(trace.Texts(), lines);
    for (const TracedLine& line : trace.lines) EXPECT_EQ(line.source, "ZOLTProcessor");

    EXPECT_EQ(world.shown.size(), world.showResult ? 1u : 0u);
    if (!world.shown.empty() && !world.client.posted.empty()) {
      EXPECT_EQ(world.shown, world.client.posted);
    }
    for (const std::string& document : world.client.posted)
      EXPECT_NE(document.find("<MDL>Model 1</MDL>"), std::string::npos);
  }
}

}  // namespace
}  // namespace zt
