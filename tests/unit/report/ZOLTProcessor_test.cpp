#include "ZOLTProcessor.h"

#include <gtest/gtest.h>

#include "RunFakes.h"
#include "TraceCapture.h"

namespace zt {
namespace {

// What a run asks when a report is due and everything is in order.
constexpr std::string_view completeRun =
    " IsLastIOFailNear(P1) IsLastServerFailNear WaitForJobs(30) Initialize(1) GetSerialNumber IsLastSendNear(SN1)"
    " CheckDate(SN1) WaitForJobs(600) CollectZOLT PostZOLT RecordSendSuccess(SN1)";

struct Scenario {
  std::string_view last;  // of the calls of a complete run
  std::string_view then;  // the calls that follow
  std::string lines;      // after "collecting from"
  std::string odd = "";   // the calls that answer otherwise than usually
  std::function<void(RunWorld&)> change = [](RunWorld&) {};
};

// The record holds its model name only.
const std::string findings =
    "3 /error:no producttype/error:no serial number/error:no fwver/warning:no systeminstalleddate/error:no mono count"
    "/warning:no color count or Mono model/error:no toner/info:is not RQD/error:no CRUM - IBL info"
    "/error:no CRUM - TTime info/warning:no CountryIndex\n";
const std::string sent = findings + "4 send sucessfully...\n";
const std::string notSent = findings + "4 failed to send...\n";
const std::string notCollected = "4 Failed to get info from device. Will retry at next week. bye~\n";

void EndService(ServerAnswer& answer) { answer.SetNoMoreService(); }

const Scenario scenarios[] = {
    {"RecordSendSuccess(SN1)", "", sent},
    // Before the server is asked.
    {"IsLastIOFailNear(P1)", "", "3 found last col fail. try later. bye~\n", "IsLastIOFailNear(P1)"},
    {"IsLastServerFailNear", "", "4 found last server fail. try later bye~\n", "IsLastServerFailNear"},
    {"RecordSendSuccess(SN1)", "", "3 still jobs, but go...\n" + sent, "WaitForJobs(30)",
     [](auto& w) { w.jobsPending = true; }},
    {"Initialize(1)", " RecordIOFail(P1)", "3 not valid IO. bye~\n", "Initialize(1)"},
    {"GetSerialNumber", " RecordIOFail(P1)", "3 mandatory info not available! bye~\n", "GetSerialNumber"},
    {"IsLastSendNear(SN1)", "", "4 skip send success local. bye~\n", "IsLastSendNear(SN1)"},
    // The server's policy.
    {"CheckDate(SN1)", " RecordServerFail", "3 svr not connect. bye~\n", "CheckDate(SN1)"},
    {"CheckDate(SN1)", " SetZOLTEnabled(0)", "4 service stopped. bye~\n", "",
     [](auto& w) { w.checkAnswer = EndService; }},
    {"CheckDate(SN1)", " SetSendInterval(14) IsLastSendNear(SN1,2014-03-06) RecordSendSuccess(SN1,2014-03-06)",
     "4 skipped by svr. bye~\n", "IsLastSendNear(SN1,2014-03-06)",
     [](auto& w) { w.checkAnswer = [](auto& a) { a.SetPostIntervalDays(" 14\r\n"), a.SetLastDate("2014-03-06"); }; }},
    {"CheckDate(SN1)", " IsLastSendNear(SN1,2001-03-06) WaitForJobs(600) CollectZOLT PostZOLT RecordSendSuccess(SN1)",
     sent, "",
     [](auto& w) { w.checkAnswer = [](auto& a) { a.SetPostIntervalDays("14 days"), a.SetLastDate("2001-03-06"); }; }},
    // Collecting and sending.
    {"WaitForJobs(600)", "", "2 Failed to wait for job finished!!! bye~\n", "WaitForJobs(600)",
     [](auto& w) { w.jobsPending = true; }},
    {"CollectZOLT", " RecordIOFail(P1)", notCollected, "CollectZOLT"},
    {"WaitForJobs(600)", " RecordIOFail(P1)", "3 no memory for the report\n" + notCollected, "",
     [](auto& w) { w.memory = false; }},
    {"CollectZOLT", " Confirm", findings + "4 cancel sending...\n", "Confirm", [](auto& w) { w.showResult = true; }},
    {"CollectZOLT", " Confirm PostZOLT RecordSendSuccess(SN1)",
     findings + "4 sending accepted...\n4 send sucessfully...\n", "", [](auto& w) { w.showResult = true; }},
    {"PostZOLT", " RecordServerFail", notSent, "PostZOLT"},
    {"RecordSendSuccess(SN1)", " SetZOLTEnabled(0)", sent, "", [](auto& w) { w.postAnswer = EndService; }},
    {"PostZOLT", " RecordServerFail SetZOLTEnabled(0)", notSent, "PostZOLT",
     [](auto& w) { w.postAnswer = EndService; }},
};

TEST(ZOLTProcessorTest, EveryEndHasItsCallsAndItsLines) {
  for (const Scenario& scenario : scenarios) {
    SCOPED_TRACE(scenario.lines);
    RunWorld world;
    world.odd = scenario.odd;
    scenario.change(world);
    const TraceCapture trace;
    ZOLTProcessor([&](auto& document) { return world.Confirm(document); }).Run({world.showResult}, world, world, world);
    const std::size_t shared = completeRun.find(scenario.last) + scenario.last.size();
    EXPECT_EQ(world.calls, std::string(completeRun.substr(0, shared)).append(scenario.then));
    std::string lines;
    for (const std::string& line : trace.lines) lines += line + "\n";
    EXPECT_EQ(lines, "4 collecting from P1\n" + scenario.lines);
    for (const std::string& document : world.documents) EXPECT_EQ(document, world.documents[0]);  // shown, then posted
  }
}

}  // namespace
}  // namespace zt
