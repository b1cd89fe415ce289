#include "PPAProcessor.h"

#include <gtest/gtest.h>

#include <map>

#include "CodePage.h"
#include "PPAInformation.h"
#include "RunFakes.h"
#include "Text.h"
#include "TraceCapture.h"

namespace zt {
namespace {

class FakeProtectedPrinter : public FakeDataProvider {
 public:
  using FakeDataProvider::FakeDataProvider;
  bool CollectSBX(PPAInformation& record) override {
    record.SetModelName("Model 1");
    return FakeDataProvider::CollectSBX(record);
  }
};

// World is what a run meets: a printer of country 1 at toner life 200, no policy stored, a server that answers nothing
// special and a user who disagrees, unless a scenario changes it.
struct World {
  World() {
    provider.tonerLife = 200;
    provider.changeCount = 5;
    provider.countryIndex = "1";
  }

  Calls calls;
  FakeProtectedPrinter provider{calls};
  FakeReportResult client{calls};
  FakeSkipChecker skipChecker{calls};
  Agreement answer = Agreement::Disagreed;
  bool showResult = false;
  bool userAccepts = true;
  std::vector<std::string> shown;
};

constexpr std::uint32_t on = 1;
constexpr std::uint32_t off = 2;

// Stages of a run, and what each asks for.
const std::map<std::string_view, Calls> stages = {
    {"open", {"Initialize(1)"}},
    {"state", {"CheckSBXSupport"}},
    {"life", {"GetTonerLife"}},
    {"country", {"RecordTonerLife(Queue,200)", "GetCountryIndex"}},
    {"country99", {"RecordTonerLife(Queue,99)", "GetCountryIndex"}},
    {"country149", {"RecordTonerLife(Queue,149)", "GetCountryIndex"}},
    {"ask", {"Ask(Queue,EN,0)"}},
    {"ask52", {"Ask(Queue,EN,1)"}},
    {"switchOff", {"SetProtection(0)"}},
    {"switchOn", {"SetProtection(1)"}},
    {"check", {"GetModelName", "CheckSBX(Model 1)"}},
    {"checkNoModel", {"GetModelName", "CheckSBX()"}},
    {"store", {"StoreServerPolicy(7|24, 59|150)"}},
    {"storeGiven", {"StoreServerPolicy(3|52|201)", "SetPPNormalInterval(9)"}},
    {"disable", {"SetPPAEnabled(0)"}},
    {"serial", {"WaitForJobs(30)", "GetSerialNumber"}},
    {"count", {"UpdateTonerChangeCount(SN1,5)"}},
    {"near", {"IsLastPPSendNear(SN1)"}},
    {"collect", {"WaitForJobs(600)", "CollectSBX"}},
    {"host", {"GetHostVersion"}},
    {"post", {"PostSBX"}},
    {"record", {"RecordPPSend(SN1)"}},
};

struct End {
  std::vector<std::string> lines;  // after the first
  std::vector<std::string> debug;
};

const std::string findings =
    "3 /error:no serial number/warning:no systeminstalleddate/warning:no XMLinterfaceversion/warning:no XMLformattype"
    "/error:no toner";
const std::string sent = "4 send sucessfully...";
const std::string disagree = "[ZT] Product protection agree value = disagree";

const std::map<std::string_view, End> ends = {
    {"silent", {}},
    {"unchecked", {{"3 [ZT] failed to check SBX  bye~"}, {"[ZT] failed to check SBX  bye~"}}},
    {"unprotectable", {{"3 [ZT] device is not include sbx string.."}, {}}},
    {"no life", {{"3 [UA] failed to get toner life info~"}, {}}},
    {"no country", {{}, {"[ZT] device is not supported countryIndex"}}},
    {"service ended", {{"4 ppa service stopped. bye~"}, {}}},
    {"no limit at 99", {{}, {"[ZT] Current SBXLevel is not limitted = 99"}}},
    {"no limit at 149", {{}, {"[ZT] Current SBXLevel is not limitted = 149"}}},
    {"no limit at 200", {{}, {"[ZT] Current SBXLevel is not limitted = 200"}}},
    {"no serial", {{"3 [UA] failed to get serial nubmer~"}, {}}},
    {"skipped", {{"3 [UA] CanSkipByLastPPSendTime - skip send success local. bye~"}, {}}},
    {"not collected", {{}, {"[ZT] Failed to get info from device. Will retry at next week. bye~"}}},
    {"agreed", {{"4 [ZT] refill - SendCommandViaPrinterQueue (ON)."}, {"[ZT] Product protection agree value = agree"}}},
    {"disagreed", {{}, {disagree}}},
    {"sent", {{findings, sent}, {}}},
    {"disagreed, sent", {{findings, sent}, {disagree}}},
    {"no host version, sent", {{findings, sent}, {"[ZT] Failed to get host version", disagree}}},
    {"cancelled", {{findings, "3 cancel sending..."}, {}}},
    {"accepted, sent", {{findings, "3 sending accepted...", sent}, {}}},
    {"not sent", {{findings, "3 failed to send..."}, {}}},
};

struct Scenario {
  const char* name;
  std::optional<std::uint32_t> state;
  std::string_view stages;
  std::string_view end;
  std::function<void(World&)> change = [](World&) {};
};

void StoreDefaults(World& world) { world.skipChecker.policy = ServerPolicy{}; }
void StoreLimit(World& world, int limit) { world.skipChecker.policy = ServerPolicy{7, "24, 59", limit}; }
void EndService(World& world) {
  world.client.checkAnswer = [](ServerAnswer& answer) { answer.SetNoMoreService(); };
}
void RaiseLimit(World& world) {
  world.client.checkAnswer = [](ServerAnswer& answer) {
    answer.SetTonerMaxLife("201");
    answer.SetTransmissionDuration("3");
    answer.SetNSLanguageCode("52");
    answer.SetPPNormalIntervalDays("9");
  };
}
void AnswerNonsense(World& world) {
  world.client.checkAnswer = [](ServerAnswer& answer) {
    answer.SetTonerMaxLife("many");
    answer.SetTransmissionDuration("3 days");
    answer.SetPPNormalIntervalDays("");
  };
}

const Scenario scenarios[] = {
    // How the run begins.
    {"closed", on, "open", "unchecked", [](World& w) { w.provider.opens = false; }},
    {"no state", std::nullopt, "open state", "unchecked"},
    {"no protection", 0, "open state", "unprotectable"},
    {"SBXOT", 3, "open state", "unprotectable"},
    {"no life", on, "open state life", "no life", [](World& w) { w.provider.tonerLife.reset(); }},
    {"no country", on, "open state life country", "no country", [](World& w) { w.provider.countryIndex.reset(); }},
    {"empty country", off, "open state life country", "no country", [](World& w) { w.provider.countryIndex = ""; }},

    // Protection on: the user is asked before the server.
    {"on, disagreed", on, "open state life country ask switchOff check store serial count collect host post record",
     "sent"},
    {"on, disagreed unreported", on,
     "open state life country ask switchOff check store serial count collect host record", "silent",
     [](World& w) { w.answer = Agreement::DisagreedUnreported; }},
    {"on, agreed", on, "open state life country ask check store", "silent",
     [](World& w) { w.answer = Agreement::Agreed; }},
    {"on, country 52", on, "open state life country ask52 check store", "silent",
     [](World& w) { w.provider.countryIndex = "52", w.answer = Agreement::Agreed; }},
    {"on, country 520", on, "open state life country ask check store", "silent",
     [](World& w) { w.provider.countryIndex = "520", w.answer = Agreement::Agreed; }},
    {"on, unknown country", on, "open state life country switchOff check store serial count collect host record",
     "silent", [](World& w) { w.provider.countryIndex = "Unknown"; }},
    {"on, listed country", on, "open state life country switchOff check store serial count collect host record",
     "silent", [](World& w) { w.provider.countryIndex = "24"; }},
    {"on, country of the stored list", on, "open state life country switchOff check serial count collect host record",
     "silent",
     [](World& w) {
       w.skipChecker.policy = ServerPolicy{3, "1,2", 160}, w.client.checks = false;
     }},
    {"on, at the limit", on, "open state life country check store", "silent", [](World& w) { StoreLimit(w, 200); }},
    {"on, life 99", on, "open state life country99 check store", "no limit at 99",
     [](World& w) { w.provider.tonerLife = 99; }},
    {"on, life 99 past the limit", on, "open state life country99 ask switchOff check store", "no limit at 99",
     [](World& w) { StoreLimit(w, 50), w.provider.tonerLife = 99; }},
    {"on, not switchable", on,
     "open state life country ask switchOff check store serial count collect host post record", "sent",
     [](World& w) { w.provider.switchesProtection = false; }},
    {"on, raised limit", on, "open state life country ask switchOff check storeGiven serial count", "no limit at 200",
     RaiseLimit},

    // Protection off: the user is asked when the data is there.
    {"off, disagreed", off, "open state life country check store serial count collect host ask post record",
     "disagreed, sent"},
    {"off, agreed", off, "open state life country check store serial count collect host ask switchOn", "agreed",
     [](World& w) { w.answer = Agreement::Agreed; }},
    {"off, disagreed unreported", off, "open state life country check store serial count collect host ask record",
     "disagreed", [](World& w) { w.answer = Agreement::DisagreedUnreported; }},
    {"off, listed country", off, "open state life country check store serial count collect host ask post record",
     "disagreed, sent", [](World& w) { w.provider.countryIndex = "24"; }},
    {"off, policy stored", off, "open state life country serial count check store collect host ask post record",
     "disagreed, sent", StoreDefaults},
    {"off, policy stored, life 99", off, "open state life country99", "no limit at 99",
     [](World& w) { StoreDefaults(w), w.provider.tonerLife = 99; }},
    {"off, below the limit", off, "open state life country149 check store serial count", "no limit at 149",
     [](World& w) { w.provider.tonerLife = 149; }},
    {"off, limit 0", off, "open state life country serial count check collect host ask post record", "disagreed, sent",
     [](World& w) { StoreLimit(w, 0), w.client.checks = false; }},

    // The server.
    {"service ended", on, "open state life country ask switchOff check disable", "service ended", EndService},
    {"service ended, asked late", off, "open state life country serial count check disable", "service ended",
     [](World& w) { StoreDefaults(w), EndService(w); }},
    {"unreachable, nothing stored", off, "open state life country check serial count collect host ask post record",
     "disagreed, sent", [](World& w) { w.client.checks = false; }},
    {"numbers that are none", off, "open state life country check store serial count collect host ask post record",
     "disagreed, sent", AnswerNonsense},
    {"no model name", off, "open state life country checkNoModel store serial count collect host ask post record",
     "disagreed, sent", [](World& w) { w.provider.modelName.reset(); }},

    // Collecting.
    {"no job wait ends the run", off, "open state life country check store serial count collect host ask post record",
     "disagreed, sent",
     [](World& w) {
       w.provider.waits = {false, false};
     }},
    {"no serial number", off, "open state life country check store serial", "no serial",
     [](World& w) { w.provider.serialNumber.reset(); }},
    {"same toner, sent lately", off, "open state life country check store serial count near", "skipped",
     [](World& w) { w.skipChecker.changeCountChanged = false, w.skipChecker.ppSendIsNear = true; }},
    {"same toner, sent long ago", off,
     "open state life country check store serial count near collect host ask post record", "disagreed, sent",
     [](World& w) { w.skipChecker.changeCountChanged = false; }},
    {"other toner, sent lately", off, "open state life country check store serial count collect host ask post record",
     "disagreed, sent", [](World& w) { w.skipChecker.ppSendIsNear = true; }},
    {"collecting fails", off, "open state life country check store serial count collect", "not collected",
     [](World& w) { w.provider.collects = false; }},
    {"no host version", off, "open state life country check store serial count collect host ask post record",
     "no host version, sent", [](World& w) { w.provider.hostVersion.reset(); }},

    // Sending.
    {"cancelled", on, "open state life country ask switchOff check store serial count collect host", "cancelled",
     [](World& w) { w.showResult = true, w.userAccepts = false; }},
    {"accepted", on, "open state life country ask switchOff check store serial count collect host post record",
     "accepted, sent", [](World& w) { w.showResult = true; }},
    {"post fails", on, "open state life country ask switchOff check store serial count collect host post", "not sent",
     [](World& w) { w.client.posts = false; }},
};

TEST(PPAProcessorTest, EveryEndHasItsCallsAndItsLines) {
  for (const Scenario& scenario : scenarios) {
    SCOPED_TRACE(scenario.name);
    World world;
    world.provider.protectionState = scenario.state;
    scenario.change(world);
    TraceCapture trace;
    const PPAProcessor processor(
        [&](const std::string& document) {
          world.shown.push_back(document);
          return world.userAccepts;
        },
        [&](const std::wstring& queue, const std::wstring& language, bool countryIs52) {
          world.calls.push_back("Ask(" + ToNarrow(queue) + "," + ToNarrow(language) + (countryIs52 ? ",1)" : ",0)"));
          return world.answer;
        });
    processor.Run({.showResult = world.showResult}, world.provider, world.client, world.skipChecker);

    Calls expected;
    for (const std::string_view stage : SplitAny(scenario.stages, " ")) {
      const Calls& calls = stages.at(stage);
      expected.insert(expected.end(), calls.begin(), calls.end());
    }
    EXPECT_EQ(world.calls, expected);
    const End& end = ends.at(scenario.end);
    std::vector<std::string> lines = {"4 [ZT] refill  -ZOLT_SBX_COLLECTING_MODE start..."};
    lines.insert(lines.end(), end.lines.begin(), end.lines.end());
    EXPECT_EQ(trace.Texts(), lines);
    EXPECT_EQ(trace.debug, end.debug);
    for (const TracedLine& line : trace.lines) EXPECT_EQ(line.source, "PPAProcessor");
    EXPECT_EQ(world.shown.size(), world.showResult ? 1u : 0u);
  }
}

TEST(PPAProcessorTest, ReportsTheStoredAgreementAndTheHostVersion) {
  for (const bool agreement : {true, false}) {
    World world;
    world.provider.protectionState = off;
    world.client.agreement = agreement;
    world.showResult = true;
    const PPAProcessor processor(
        [&](const std::string& document) {
          world.shown.push_back(document);
          return true;
        },
        [](const std::wstring&, const std::wstring& language, bool) {
          EXPECT_EQ(language, L"DE");
          return Agreement::Disagreed;
        });
    processor.Run({.showResult = true, .language = L"DE"}, world.provider, world.client, world.skipChecker);
    ASSERT_EQ(world.client.posted.size(), 1u);
    EXPECT_EQ(world.client.posted, world.shown);
    EXPECT_NE(world.shown[0].find("<HostVersion>1.2</HostVersion>"), std::string::npos);
    EXPECT_NE(world.shown[0].find(agreement ? "<ZOLTAgree>1<" : "<ZOLTAgree>0<"), std::string::npos);
  }
}

}  // namespace
}  // namespace zt
