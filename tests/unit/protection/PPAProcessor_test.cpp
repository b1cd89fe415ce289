#include "PPAProcessor.h"

#include <gtest/gtest.h>

#include <algorithm>
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

  void Run(const PPARunOptions& options) {
    const auto confirm = [&](const std::string& document) {
      shown.push_back(document);
      return userAccepts;
    };
    const auto ask = [&](const std::wstring& queue, const std::wstring& language, bool countryIs52) {
      calls.push_back("Ask(" + ToNarrow(queue) + "," + ToNarrow(language) + (countryIs52 ? ",1)" : ",0)"));
      return answer;
    };
    PPAProcessor(confirm, ask).Run(options, provider, client, skipChecker);
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

constexpr auto kOn = ProtectionState::On;
constexpr auto kOff = ProtectionState::Off;

// Stages of a run, and the calls of each.
const std::map<std::string_view, std::string_view> stages = {
    {"open", "Initialize(1)"},
    {"state", "Initialize(1) CheckSBXSupport"},
    {"life", "Initialize(1) CheckSBXSupport GetTonerLife"},
    {"begin", "Initialize(1) CheckSBXSupport GetTonerLife RecordTonerLife(Queue,200) GetCountryIndex"},
    {"begin99", "Initialize(1) CheckSBXSupport GetTonerLife RecordTonerLife(Queue,99) GetCountryIndex"},
    {"beginHighest", "Initialize(1) CheckSBXSupport GetTonerLife RecordTonerLife(Queue,4294967295) GetCountryIndex"},
    {"begin149", "Initialize(1) CheckSBXSupport GetTonerLife RecordTonerLife(Queue,149) GetCountryIndex"},
    {"ask", "Ask(Queue,EN,0)"},
    {"ask52", "Ask(Queue,EN,1)"},
    {"switchOff", "SetProtection(0)"},
    {"switchOn", "SetProtection(1)"},
    {"check", "GetModelName CheckSBX(Model_1)"},
    {"checkNoModel", "GetModelName CheckSBX()"},
    {"store", "StoreServerPolicy(7|24,_59|150)"},
    {"storeGiven", "StoreServerPolicy(3|52|201) SetPPNormalInterval(9)"},
    {"disable", "SetPPAEnabled(0)"},
    {"serial", "WaitForJobs(30) GetSerialNumber"},
    {"count", "WaitForJobs(30) GetSerialNumber UpdateTonerChangeCount(SN1,5)"},
    {"near", "IsLastPPSendNear(SN1)"},
    {"collect", "WaitForJobs(600) CollectSBX"},
    {"read", "WaitForJobs(600) CollectSBX GetHostVersion"},
    {"post", "PostSBX"},
    {"record", "RecordPPSend(SN1)"},
};

// What a run says, after its first line: trace lines, then, behind a dash, lines of debugger output.
const std::string findings =
    "3 /error:no serial number/warning:no systeminstalleddate/warning:no XMLinterfaceversion/warning:no XMLformattype"
    "/error:no toner\n";
const std::string sent = findings + "4 send sucessfully...\n";
const std::string disagreed = "- [ZT] Product protection agree value = disagree\n";
const std::string unchecked = "3 [ZT] failed to check SBX  bye~\n- [ZT] failed to check SBX  bye~\n";
const std::string unprotectable = "3 [ZT] device is not include sbx string..\n";
const std::string noCountry = "- [ZT] device is not supported countryIndex\n";
const std::string serviceEnded = "4 ppa service stopped. bye~\n";
const std::string noLimit = "- [ZT] Current SBXLevel is not limitted = ";

struct Scenario {
  const char* name;
  std::optional<ProtectionState> state;
  std::string_view stages;
  std::string says;
  std::function<void(World&)> change = [](World&) {};
};

void Store(World& world, int limit) { world.skipChecker.policy = ServerPolicy{7, "24, 59", limit}; }
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
    {"closed", kOn, "open", unchecked, [](World& w) { w.provider.opens = false; }},
    {"no state", std::nullopt, "state", unchecked},
    {"no protection", ProtectionState::None, "state", unprotectable},
    {"SBXOT", ProtectionState::OT, "state", unprotectable},
    {"no life", kOn, "life", "3 [UA] failed to get toner life info~\n", [](World& w) { w.provider.tonerLife.reset(); }},
    {"no country", kOn, "begin", noCountry, [](World& w) { w.provider.countryIndex.reset(); }},
    {"empty country", kOff, "begin", noCountry, [](World& w) { w.provider.countryIndex = ""; }},

    // Protection on: the user is asked before the server.
    {"disagreed", kOn, "begin ask switchOff check store count read post record", sent},
    {"disagreed unreported", kOn, "begin ask switchOff check store count read record", "",
     [](World& w) { w.answer = Agreement::DisagreedUnreported; }},
    {"agreed", kOn, "begin ask check store", "", [](World& w) { w.answer = Agreement::Agreed; }},
    {"country 52", kOn, "begin ask52 check store", "",
     [](World& w) { w.provider.countryIndex = "52", w.answer = Agreement::Agreed; }},
    {"country 520", kOn, "begin ask check store", "",
     [](World& w) { w.provider.countryIndex = "520", w.answer = Agreement::Agreed; }},
    {"life with the highest bit", kOn, "beginHighest ask switchOff check store count read post record", sent,
     [](World& w) { w.provider.tonerLife = 4294967295; }},
    {"unknown country", kOn, "begin switchOff check store count read record", "",
     [](World& w) { w.provider.countryIndex = "(Unknown 7)"; }},
    {"country of the default list", kOn, "begin switchOff check store count read record", "",
     [](World& w) { w.provider.countryIndex = "24"; }},
    {"country of the stored list", kOn, "begin switchOff check count read record", "",
     [](World& w) { Store(w, 160), w.skipChecker.policy->nsLanguageCode = "1,2", w.client.checks = false; }},
    {"at the limit", kOn, "begin check store count read record", "", [](World& w) { Store(w, 200); }},
    {"within the limit", kOn, "begin149 check store count", noLimit + "149\n",
     [](World& w) { w.provider.tonerLife = 149; }},
    {"life 99", kOn, "begin99 check store", noLimit + "99\n", [](World& w) { w.provider.tonerLife = 99; }},
    {"life 99 past the limit", kOn, "begin99 ask switchOff check store", noLimit + "99\n",
     [](World& w) { Store(w, 50), w.provider.tonerLife = 99; }},
    {"not switchable", kOn, "begin ask switchOff check store count read post record", sent,
     [](World& w) { w.provider.switchesProtection = false; }},
    {"raised limit", kOn, "begin ask switchOff check storeGiven count", noLimit + "200\n", RaiseLimit},

    // Protection off: the user is asked when the data is there.
    {"off, disagreed", kOff, "begin check store count read ask post record", sent + disagreed},
    {"off, agreed", kOff, "begin check store count read ask switchOn",
     "4 [ZT] refill - SendCommandViaPrinterQueue (ON).\n- [ZT] Product protection agree value = agree\n",
     [](World& w) { w.answer = Agreement::Agreed; }},
    {"off, disagreed unreported", kOff, "begin check store count read ask record", disagreed,
     [](World& w) { w.answer = Agreement::DisagreedUnreported; }},
    {"off, listed country", kOff, "begin check store count read ask post record", sent + disagreed,
     [](World& w) { w.provider.countryIndex = "24"; }},
    {"off, policy stored", kOff, "begin count check store read ask post record", sent + disagreed,
     [](World& w) { Store(w, 150); }},
    {"off, policy stored, life 99", kOff, "begin99", noLimit + "99\n",
     [](World& w) { Store(w, 150), w.provider.tonerLife = 99; }},
    {"off, below the limit", kOff, "begin149 check store count", noLimit + "149\n",
     [](World& w) { w.provider.tonerLife = 149; }},
    {"off, limit 0", kOff, "begin count check read ask post record", sent + disagreed,
     [](World& w) { Store(w, 0), w.client.checks = false; }},

    // The server.
    {"service ended", kOn, "begin ask switchOff check disable", serviceEnded, EndService},
    {"service ended, asked late", kOff, "begin count check disable", serviceEnded,
     [](World& w) { Store(w, 150), EndService(w); }},
    {"unreachable, nothing stored", kOff, "begin check count read ask post record", sent + disagreed,
     [](World& w) { w.client.checks = false; }},
    {"numbers that are none", kOff, "begin check store count read ask post record", sent + disagreed, AnswerNonsense},
    {"no model name", kOff, "begin checkNoModel store count read ask post record", sent + disagreed,
     [](World& w) { w.provider.modelName.reset(); }},

    // Collecting.
    {"no job wait ends the run", kOff, "begin check store count read ask post record", sent + disagreed,
     [](World& w) { w.provider.waits.assign(2, false); }},
    {"no serial number", kOff, "begin check store serial", "3 [UA] failed to get serial nubmer~\n",
     [](World& w) { w.provider.serialNumber.reset(); }},
    {"same toner, sent lately", kOff, "begin check store count near",
     "3 [UA] CanSkipByLastPPSendTime - skip send success local. bye~\n",
     [](World& w) { w.skipChecker.changeCountChanged = false, w.skipChecker.ppSendIsNear = true; }},
    {"same toner, sent long ago", kOff, "begin check store count near read ask post record", sent + disagreed,
     [](World& w) { w.skipChecker.changeCountChanged = false; }},
    {"other toner, sent lately", kOff, "begin check store count read ask post record", sent + disagreed,
     [](World& w) { w.skipChecker.ppSendIsNear = true; }},
    {"collecting fails", kOff, "begin check store count collect",
     "- [ZT] Failed to get info from device. Will retry at next week. bye~\n",
     [](World& w) { w.provider.collects = false; }},
    {"no host version", kOff, "begin check store count read ask post record",
     sent + "- [ZT] Failed to get host version\n" + disagreed, [](World& w) { w.provider.hostVersion.reset(); }},

    // Sending.
    {"cancelled", kOn, "begin ask switchOff check store count read", findings + "4 cancel sending...\n",
     [](World& w) { w.showResult = true, w.userAccepts = false; }},
    {"accepted", kOn, "begin ask switchOff check store count read post record",
     findings + "4 sending accepted...\n4 send sucessfully...\n", [](World& w) { w.showResult = true; }},
    {"post fails", kOn, "begin ask switchOff check store count read post", findings + "4 failed to send...\n",
     [](World& w) { w.client.posts = false; }},
};

TEST(PPAProcessorTest, EveryEndHasItsCallsAndItsLines) {
  for (const Scenario& scenario : scenarios) {
    SCOPED_TRACE(scenario.name);
    World world;
    world.provider.protectionState = scenario.state;
    scenario.change(world);
    TraceCapture trace;
    world.Run({.showResult = world.showResult});

    Calls expected;
    for (const std::string_view stage : SplitAny(scenario.stages, " ")) {
      for (const std::string_view call : SplitAny(stages.at(stage), " ")) expected.emplace_back(call);
    }
    for (std::string& call : world.calls) std::replace(call.begin(), call.end(), ' ', '_');
    EXPECT_EQ(world.calls, expected);
    std::string says;
    for (const std::string& text : trace.Texts()) says += text + "\n";
    for (const std::string& text : trace.debug) says += "- " + text + "\n";
    EXPECT_EQ(says, "4 [ZT] refill  -ZOLT_SBX_COLLECTING_MODE start...\n" + scenario.says);
    for (const TracedLine& line : trace.lines) EXPECT_EQ(line.source, "PPAProcessor");
    EXPECT_EQ(world.shown.size(), world.showResult ? 1u : 0u);
  }
}

TEST(PPAProcessorTest, ReportsTheStoredAgreementTheHostVersionAndTheTonerLife) {
  for (const bool agreement : {true, false}) {
    World world;
    world.provider.protectionState = kOff;
    world.provider.tonerLife = 4294967295;
    world.client.agreement = agreement;
    world.Run({.showResult = true, .language = L"DE"});
    EXPECT_EQ(std::count(world.calls.begin(), world.calls.end(), "Ask(Queue,DE,0)"), 1);
    ASSERT_EQ(world.client.posted.size(), 1u);
    EXPECT_EQ(world.client.posted, world.shown);
    EXPECT_NE(world.shown[0].find("<HostVersion>1.2</HostVersion>"), std::string::npos);
    EXPECT_NE(world.shown[0].find("<SBX>4294967295</SBX>"), std::string::npos);
    EXPECT_NE(world.shown[0].find(agreement ? "<ZOLTAgree>1<" : "<ZOLTAgree>0<"), std::string::npos);
  }
}

}  // namespace
}  // namespace zt
