#include "ZOLTProcessor.h"

#include <gtest/gtest.h>

#include "RunFakes.h"
#include "Text.h"
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
  std::size_t asked;  // how many of the calls of a complete run come first
  std::string_view then;
  std::string lines;  // after "collecting from"
  std::function<void(World&)> change = [](World&) {};
};

constexpr std::string_view completeRun =
    "IsLastIOFailNear(10.0.0.1) IsLastServerFailNear() WaitForJobs(30) Initialize(1) GetSerialNumber "
    "IsLastSendNear(SN1) CheckDate(SN1) WaitForJobs(600) CollectZOLT PostZOLT RecordSendSuccess(SN1)";

// The fake record holds its model name only.
const std::string findings =
    "3 /error:no producttype/error:no serial number/error:no fwver/warning:no systeminstalleddate/error:no mono count"
    "/warning:no color count or Mono model/error:no toner/info:is not RQD/error:no CRUM - IBL info"
    "/error:no CRUM - TTime info/warning:no CountryIndex\n";
const std::string sent = findings + "4 send sucessfully...";
const std::string notSent = findings + "4 failed to send...";

void EndService(ServerAnswer& answer) { answer.SetNoMoreService(); }

FakeReportResult::Fill Policy(const char* interval, const char* lastDate) {
  return [=](ServerAnswer& answer) {
    answer.SetPostIntervalDays(interval);
    answer.SetLastDate(lastDate);
  };
}

const Scenario scenarios[] = {
    {"posted", 11, "", sent},
    // Before the server is asked.
    {"recent collection failure", 1, "", "3 found last col fail. try later. bye~",
     [](World& w) { w.skipChecker.ioFailIsNear = true; }},
    {"recent server failure", 2, "", "4 found last server fail. try later bye~",
     [](World& w) { w.skipChecker.serverFailIsNear = true; }},
    {"first wait fails with jobs pending", 11, "", "3 still jobs, but go...\n" + sent,
     [](World& w) { w.provider.waits[0] = false, w.provider.jobsPending = true; }},
    {"printer does not open", 4, "RecordIOFail(10.0.0.1)", "3 not valid IO. bye~",
     [](World& w) { w.provider.opens = false; }},
    {"no serial number", 5, "RecordIOFail(10.0.0.1)", "3 mandatory info not available! bye~",
     [](World& w) { w.provider.serialNumber.reset(); }},
    {"empty serial number", 5, "IsLastSendNear() CheckDate() WaitForJobs(600) CollectZOLT PostZOLT RecordSendSuccess()",
     sent, [](World& w) { w.provider.serialNumber = ""; }},
    {"recent send", 6, "", "4 skip send success local. bye~", [](World& w) { w.skipChecker.sendIsNear = true; }},
    // The server's policy.
    {"server unreachable", 7, "RecordServerFail()", "3 svr not connect. bye~",
     [](World& w) { w.client.checks = false; }},
    {"service ended", 7, "SetZOLTEnabled(0)", "4 service stopped. bye~",
     [](World& w) { w.client.checkAnswer = EndService; }},
    {"server knows a recent report", 7,
     "SetSendInterval(14) IsLastSendNear(SN1,2014-03-06) RecordSendSuccess(SN1,2014-03-06)", "4 skipped by svr. bye~",
     [](World& w) { w.skipChecker.serverDateIsNear = true, w.client.checkAnswer = Policy(" 14\r\n", "2014-03-06"); }},
    {"server knows an old report, and sends an interval that is none", 7,
     "IsLastSendNear(SN1,2001-03-06) WaitForJobs(600) CollectZOLT PostZOLT RecordSendSuccess(SN1)", sent,
     [](World& w) { w.client.checkAnswer = Policy("14 days", "2001-03-06"); }},
    // Collecting and sending.
    {"jobs cannot be counted", 8, "", "2 Failed to wait for job finished!!! bye~",
     [](World& w) { w.provider.waits[1] = false, w.provider.jobsPending = true; }},
    {"collecting fails", 9, "RecordIOFail(10.0.0.1)", "4 Failed to get info from device. Will retry at next week. bye~",
     [](World& w) { w.provider.collects = false; }},
    {"collecting runs out of memory", 9, "RecordIOFail(10.0.0.1)",
     "3 no memory for the report\n4 Failed to get info from device. Will retry at next week. bye~",
     [](World& w) { w.provider.memory = false; }},
    {"user cancels", 9, "", findings + "4 cancel sending...",
     [](World& w) { w.showResult = true, w.userAccepts = false; }},
    {"user accepts", 11, "", findings + "4 sending accepted...\n4 send sucessfully...",
     [](World& w) { w.showResult = true; }},
    {"post fails", 10, "RecordServerFail()", notSent, [](World& w) { w.client.posts = false; }},
    {"service ends with the post", 11, "SetZOLTEnabled(0)", sent, [](World& w) { w.client.postAnswer = EndService; }},
    {"service ends with a failed post", 10, "RecordServerFail() SetZOLTEnabled(0)", notSent,
     [](World& w) { w.client.posts = false, w.client.postAnswer = EndService; }},
};

TEST(ZOLTProcessorTest, EveryEndHasItsCallsAndItsLines) {
  const std::vector<std::string_view> complete = SplitAny(completeRun, " ");
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

    Calls expected(complete.begin(), complete.begin() + static_cast<std::ptrdiff_t>(scenario.asked));
    for (const std::string_view call : SplitAny(scenario.then, " ")) expected.emplace_back(call);
    EXPECT_EQ(world.calls, expected);
    std::string lines;
    for (const std::string& text : trace.Texts()) lines += "\n" + text;
    EXPECT_EQ(lines, "\n4 collecting from 10.0.0.1\n" + scenario.lines);
    for (const TracedLine& line : trace.lines) EXPECT_EQ(line.source, "ZOLTProcessor");

    EXPECT_EQ(world.shown.size(), world.showResult ? 1u : 0u);
    for (const std::string& document : world.client.posted) {
      EXPECT_NE(document.find("<MDL>Model 1</MDL>"), std::string::npos);
      EXPECT_TRUE(world.shown.empty() || world.shown[0] == document);
    }
  }
}

}  // namespace
}  // namespace zt
