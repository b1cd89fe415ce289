#include "PPAProcessor.h"

#include <gtest/gtest.h>

#include "PPAInformation.h"
#include "RunFakes.h"
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

// What a complete run asks for.
const Calls reading = {"Initialize(1)", "CheckSBXSupport", "GetTonerLife", "RecordTonerLife(Queue,200)",
                       "GetCountryIndex"};
const Calls declining = {"SetProtection(0)"};
const Calls asking = {"Ask(Queue,EN,0)"};
const Calls policy = {"GetModelName", "CheckSBX(Model 1)", "StoreServerPolicy(7|24, 59|150)"};
const Calls serial = {"WaitForJobs(30)", "GetSerialNumber", "UpdateTonerChangeCount(SN1,5)"};
const Calls collecting = {"WaitForJobs(600)", "CollectSBX", "GetHostVersion"};
const Calls posting = {"PostSBX", "RecordPPSend(SN1)"};

Calls Join(std::initializer_list<Calls> parts) {
  Calls calls;
  for (const Calls& part : parts) calls.insert(calls.end(), part.begin(), part.end());
  return calls;
}

const std::string findings =
    "3 /error:no serial number/warning:no systeminstalleddate/warning:no XMLinterfaceversion/warning:no XMLformattype"
    "/error:no toner";
const std::string sent = "4 send sucessfully...";
const std::string agree = "[ZT] Product protection agree value = agree";
const std::string disagree = "[ZT] Product protection agree value = disagree";

struct Scenario {
  const char* name;
  std::optional<std::uint32_t> state;
  std::function<void(World&)> change;
  Calls calls;
  std::vector<std::string> lines;  // after the first
  std::vector<std::string> debug;
};

void EndService(ServerAnswer& answer) { answer.SetNoMoreService(); }

const Scenario scenarios[] = {
    // How the run begins.
    {"printer does not open",
     on,
     [](World& world) { world.provider.opens = false; },
     {"Initialize(1)"},
     {"3 [ZT] failed to check SBX  bye~"},
     {"[ZT] failed to check SBX  bye~"}},
    {"no state",
     std::nullopt,
     [](World&) {},
     {"Initialize(1)", "CheckSBXSupport"},
     {"3 [ZT] failed to check SBX  bye~"},
     {"[ZT] failed to check SBX  bye~"}},
    {"no protection",
     0,
     [](World&) {},
     {"Initialize(1)", "CheckSBXSupport"},
     {"3 [ZT] device is not include sbx string.."},
     {}},
    {"SBXOT",
     3,
     [](World&) {},
     {"Initialize(1)", "CheckSBXSupport"},
     {"3 [ZT] device is not include sbx string.."},
     {}},
    {"no toner life",
     on,
     [](World& world) { world.provider.tonerLife.reset(); },
     {"Initialize(1)", "CheckSBXSupport", "GetTonerLife"},
     {"3 [UA] failed to get toner life info~"},
     {}},
    {"no country",
     on,
     [](World& world) { world.provider.countryIndex.reset(); },
     reading,
     {},
     {"[ZT] device is not supported countryIndex"}},
    {"empty country",
     on,
     [](World& world) { world.provider.countryIndex = ""; },
     reading,
     {},
     {"[ZT] device is not supported countryIndex"}},

    // Protection on: the user is asked before the server.
    {"on: disagreed",
     on,
     [](World&) {},
     Join({reading, asking, declining, policy, serial, collecting, posting}),
     {findings, sent},
     {}},
    {"on: disagreed unreported",
     on,
     [](World& world) { world.answer = Agreement::DisagreedUnreported; },
     Join({reading, asking, declining, policy, serial, collecting, {"RecordPPSend(SN1)"}}),
     {},
     {}},
    {"on: agreed", on, [](World& world) { world.answer = Agreement::Agreed; }, Join({reading, asking, policy}), {}, {}},
    {"on: country 52",
     on,
     [](World& world) {
       world.provider.countryIndex = "52";
       world.answer = Agreement::Agreed;
     },
     Join({reading, {"Ask(Queue,EN,1)"}, policy}),
     {},
     {}},
    {"on: country 520",
     on,
     [](World& world) {
       world.provider.countryIndex = "520";
       world.answer = Agreement::Agreed;
     },
     Join({reading, asking, policy}),
     {},
     {}},
    {"on: listed country",
     on,
     [](World& world) { world.provider.countryIndex = "24"; },
     Join({reading, declining, policy, serial, collecting, {"RecordPPSend(SN1)"}}),
     {},
     {}},
    {"on: listed in the stored policy",
     on,
     [](World& world) {
       world.skipChecker.policy = ServerPolicy{3, "1,2", 160};
       world.client.checks = false;
     },
     Join({reading, declining, {"GetModelName", "CheckSBX(Model 1)"}, serial, collecting, {"RecordPPSend(SN1)"}}),
     {},
     {}},
    {"on: within the limit",
     on,
     [](World& world) {
       world.skipChecker.policy = ServerPolicy{7, "24, 59", 200};
     },
     Join({reading, policy}),
     {},
     {}},
    {"on: life 99",
     on,
     [](World& world) { world.provider.tonerLife = 99; },
     Join({{"Initialize(1)", "CheckSBXSupport", "GetTonerLife", "RecordTonerLife(Queue,99)", "GetCountryIndex"},
           policy}),
     {},
     {"[ZT] Current SBXLevel is not limitted = 99"}},
    {"on: protection cannot be switched",
     on,
     [](World& world) { world.provider.switchesProtection = false; },
     Join({reading, asking, declining, policy, serial, collecting, posting}),
     {findings, sent},
     {}},
    {"on: the server raises the limit",
     on,
     [](World& world) {
       world.client.checkAnswer = [](ServerAnswer& answer) {
         answer.SetTonerMaxLife("201");
         answer.SetTransmissionDuration("3");
         answer.SetNSLanguageCode("52");
         answer.SetPPNormalIntervalDays("9");
       };
     },
     Join({reading,
           asking,
           declining,
           {"GetModelName", "CheckSBX(Model 1)", "StoreServerPolicy(3|52|201)", "SetPPNormalInterval(9)"},
           serial}),
     {},
     {"[ZT] Current SBXLevel is not limitted = 200"}},

    // Protection off: the user is asked when the data is there.
    {"off: disagreed",
     off,
     [](World&) {},
     Join({reading, policy, serial, collecting, asking, posting}),
     {findings, sent},
     {disagree}},
    {"off: agreed",
     off,
     [](World& world) { world.answer = Agreement::Agreed; },
     Join({reading, policy, serial, collecting, asking, {"SetProtection(1)"}}),
     {"4 [ZT] refill - SendCommandViaPrinterQueue (ON)."},
     {agree}},
    {"off: disagreed unreported",
     off,
     [](World& world) { world.answer = Agreement::DisagreedUnreported; },
     Join({reading, policy, serial, collecting, asking, {"RecordPPSend(SN1)"}}),
     {},
     {disagree}},
    {"off: policy stored, so the server is asked late",
     off,
     [](World& world) { world.skipChecker.policy = ServerPolicy{}; },
     Join({reading, serial, policy, collecting, asking, posting}),
     {findings, sent},
     {disagree}},
    {"off: policy stored, life 99",
     off,
     [](World& world) {
       world.skipChecker.policy = ServerPolicy{};
       world.provider.tonerLife = 99;
     },
     {"Initialize(1)", "CheckSBXSupport", "GetTonerLife", "RecordTonerLife(Queue,99)", "GetCountryIndex"},
     {},
     {"[ZT] Current SBXLevel is not limitted = 99"}},
    {"off: below the limit",
     off,
     [](World& world) { world.provider.tonerLife = 149; },
     Join({{"Initialize(1)", "CheckSBXSupport", "GetTonerLife", "RecordTonerLife(Queue,149)", "GetCountryIndex"},
           policy,
           serial}),
     {},
     {"[ZT] Current SBXLevel is not limitted = 149"}},
    {"off: no limit",
     off,
     [](World& world) {
       world.skipChecker.policy = ServerPolicy{7, "24, 59", 0};
       world.client.checks = false;
     },
     Join({reading, serial, {"GetModelName", "CheckSBX(Model 1)"}, collecting, asking, posting}),
     {findings, sent},
     {disagree}},

    // The server.
    {"service ended",
     on,
     [](World& world) { world.client.checkAnswer = EndService; },
     Join({reading, asking, declining, {"GetModelName", "CheckSBX(Model 1)", "SetPPAEnabled(0)"}}),
     {"4 ppa service stopped. bye~"},
     {}},
    {"service ended, asked late",
     off,
     [](World& world) {
       world.skipChecker.policy = ServerPolicy{};
       world.client.checkAnswer = EndService;
     },
     Join({reading, serial, {"GetModelName", "CheckSBX(Model 1)", "SetPPAEnabled(0)"}}),
     {"4 ppa service stopped. bye~"},
     {}},
    {"server unreachable, no policy",
     off,
     [](World& world) { world.client.checks = false; },
     Join({reading, {"GetModelName", "CheckSBX(Model 1)"}, serial, collecting, asking, posting}),
     {findings, sent},
     {disagree}},
    {"no model name",
     off,
     [](World& world) { world.provider.modelName.reset(); },
     Join({reading,
           {"GetModelName", "CheckSBX()", "StoreServerPolicy(7|24, 59|150)"},
           serial,
           collecting,
           asking,
           posting}),
     {findings, sent},
     {disagree}},
    {"numbers that are none",
     off,
     [](World& world) {
       world.client.checkAnswer = [](ServerAnswer& answer) {
         answer.SetTonerMaxLife("many");
         answer.SetTransmissionDuration("3 days");
         answer.SetPPNormalIntervalDays("");
       };
     },
     Join({reading, policy, serial, collecting, asking, posting}),
     {findings, sent},
     {disagree}},

    // Collecting.
    {"neither job wait ends the run",
     off,
     [](World& world) {
       world.provider.waits = {false, false};
     },
     Join({reading, policy, serial, collecting, asking, posting}),
     {findings, sent},
     {disagree}},
    {"no serial number",
     off,
     [](World& world) { world.provider.serialNumber.reset(); },
     Join({reading, policy, {"WaitForJobs(30)", "GetSerialNumber"}}),
     {"3 [UA] failed to get serial nubmer~"},
     {}},
    {"same toner, sent lately",
     off,
     [](World& world) {
       world.skipChecker.changeCountChanged = false;
       world.skipChecker.ppSendIsNear = true;
     },
     Join({reading, policy, serial, {"IsLastPPSendNear(SN1)"}}),
     {"3 [UA] CanSkipByLastPPSendTime - skip send success local. bye~"},
     {}},
    {"same toner, sent long ago",
     off,
     [](World& world) { world.skipChecker.changeCountChanged = false; },
     Join({reading, policy, serial, {"IsLastPPSendNear(SN1)"}, collecting, asking, posting}),
     {findings, sent},
     {disagree}},
    {"another toner, sent lately",
     off,
     [](World& world) { world.skipChecker.ppSendIsNear = true; },
     Join({reading, policy, serial, collecting, asking, posting}),
     {findings, sent},
     {disagree}},
    {"collecting fails",
     off,
     [](World& world) { world.provider.collects = false; },
     Join({reading, policy, serial, {"WaitForJobs(600)", "CollectSBX"}}),
     {},
     {"[ZT] Failed to get info from device. Will retry at next week. bye~"}},
    {"no host version",
     off,
     [](World& world) { world.provider.hostVersion.reset(); },
     Join({reading, policy, serial, collecting, asking, posting}),
     {findings, sent},
     {"[ZT] Failed to get host version", disagree}},

    // Sending.
    {"user cancels",
     on,
     [](World& world) {
       world.showResult = true;
       world.userAccepts = false;
     },
     Join({reading, asking, declining, policy, serial, collecting}),
     {findings, "3 cancel sending..."},
     {}},
    {"user accepts",
     on,
     [](World& world) { world.showResult = true; },
     Join({reading, asking, declining, policy, serial, collecting, posting}),
     {findings, "3 sending accepted...", sent},
     {}},
    {"post fails",
     on,
     [](World& world) { world.client.posts = false; },
     Join({reading, asking, declining, policy, serial, collecting, {"PostSBX"}}),
     {findings, "3 failed to send..."},
     {}},
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

    EXPECT_EQ(world.calls, scenario.calls);
    std::vector<std::string> lines = {"4 [ZT] refill  -ZOLT_SBX_COLLECTING_MODE start..."};
    lines.insert(lines.end(), scenario.lines.begin(), scenario.lines.end());
    EXPECT_EQ(trace.Texts(), lines);
    EXPECT_EQ(trace.debug, scenario.debug);
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
