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

// A printer of country 1 at toner life 200, no policy stored, a server that answers nothing special and a user who
// disagrees, unless a scenario changes it.
struct World : RunWorld {
  // Returns what the run says: trace lines, then, behind a dash, lines of debugger output.
  std::string Run(const PPARunOptions& options) {
    const auto confirm = [this](const std::string& document) { return Confirm(document); };
    const auto ask = [this](const std::wstring& queue, const std::wstring& language, bool countryIs52) {
      calls += " Ask(" + ToNarrow(queue) + "," + ToNarrow(language) + (countryIs52 ? ",1)" : ",0)");
      return answer;
    };
    const TraceCapture trace;
    PPAProcessor(confirm, ask).Run(options, *this, *this, *this);
    std::string says;
    for (const std::string& text : trace.lines) says += text + "\n";
    for (const std::string& text : trace.debug) says += "- " + text + "\n";
    return says;
  }

  Agreement answer = Agreement::Disagreed;
};

constexpr auto kOn = ProtectionState::On;
constexpr auto kOff = ProtectionState::Off;

// Stages of a run, and the calls of each. A stage that is not among them is a call.
const std::map<std::string_view, std::string_view> stages = {
    {"begin", "Initialize(1) CheckSBXSupport GetTonerLife RecordTonerLife(Queue) GetCountryIndex"},
    {"ask", "Ask(Queue,EN,0)"},
    {"switchOff", "SetProtection(0)"},
    {"check", "GetModelName CheckSBX(Model1)"},
    {"store", "StoreServerPolicy(7|24, 59|150)"},
    {"count", "WaitForJobs(30) GetSerialNumber UpdateTonerChangeCount(SN1,5)"},
    {"near", "IsLastPPSendNear(SN1)"},
    {"read", "WaitForJobs(600) CollectSBX GetHostVersion"},
    {"post", "PostSBX"},
    {"record", "RecordPPSend(SN1)"},
};

// What a run says after its first line.
const std::string start = "4 [ZT] refill  -ZOLT_SBX_COLLECTING_MODE start...\n";
const std::string findings =
    "3 /error:no mdl/error:no serial number/warning:no systeminstalleddate/warning:no XMLinterfaceversion"
    "/warning:no XMLformattype/error:no toner\n";
const std::string sent = findings + "4 send sucessfully...\n";
const std::string disagreed = "- [ZT] Product protection agree value = disagree\n";
const std::string agreed =
    "4 [ZT] refill - SendCommandViaPrinterQueue (ON).\n- [ZT] Product protection agree value = agree\n";
const std::string unchecked = "3 [ZT] failed to check SBX  bye~\n- [ZT] failed to check SBX  bye~\n";
const std::string unprotectable = "3 [ZT] device is not include sbx string..\n";
const std::string noCountry = "- [ZT] device is not supported countryIndex\n";
const std::string serviceEnded = "4 ppa service stopped. bye~\n";
const std::string sentLately = "3 [UA] CanSkipByLastPPSendTime - skip send success local. bye~\n";
const std::string notCollected = "- [ZT] Failed to get info from device. Will retry at next week. bye~\n";
const std::string noLimit = "- [ZT] Current SBXLevel is not limitted = ";

void Agree(World& world) { world.answer = Agreement::Agreed; }
void KeepItToOneself(World& world) { world.answer = Agreement::DisagreedUnreported; }
void Store(World& world, int limit, const char* countries = "24, 59") {
  world.policy = ServerPolicy{7, countries, limit};
}
void EndService(World& world) {
  world.checkAnswer = [](ServerAnswer& answer) { answer.SetNoMoreService(); };
}
void Answer(World& world, const char* limit, const char* duration, const char* interval) {
  world.checkAnswer = [=](ServerAnswer& answer) {
    answer.SetTonerMaxLife(limit);
    answer.SetTransmissionDuration(duration);
    answer.SetNSLanguageCode("52");
    answer.SetPPNormalIntervalDays(interval);
  };
}

struct Scenario {
  ProtectionState state;
  std::string_view stages;
  std::string says;
  std::string odd = "";  // the calls that answer otherwise than usually
  std::function<void(World&)> change = [](World&) {};
};

const Scenario scenarios[] = {
    // How the run begins.
    {kOn, "Initialize(1)", unchecked, "Initialize(1)"},
    {kOn, "Initialize(1) CheckSBXSupport", unchecked, "CheckSBXSupport"},
    {ProtectionState::None, "Initialize(1) CheckSBXSupport", unprotectable},
    {kOn, "Initialize(1) CheckSBXSupport GetTonerLife", "3 [UA] failed to get toner life info~\n", "GetTonerLife"},
    {kOn, "begin", noCountry, "GetCountryIndex"},
    {kOff, "begin", noCountry, "", [](World& w) { w.countryIndex = ""; }},

    // Protection on: the user is asked before the server, where the limit is passed and the country not listed.
    {kOn, "begin ask switchOff check store count read post record", sent},
    {kOn, "begin ask switchOff check store count read record", "", "", KeepItToOneself},
    {kOn, "begin ask check store", "", "", Agree},
    {kOn, "begin Ask(Queue,EN,1) check store", "", "", [](World& w) { w.countryIndex = "52", Agree(w); }},
    {kOn, "begin switchOff check store count read record", "", "", [](World& w) { w.countryIndex = "(Unknown 7)"; }},
    {kOn, "begin switchOff check count read record", "", "CheckSBX(Model1)",
     [](World& w) { Store(w, 160, ",21, 1 ,"); }},
    {kOn, "begin ask check", "", "CheckSBX(Model1)", [](World& w) { Store(w, 160, "11,21"), Agree(w); }},
    {kOn, "begin check count read record", "", "CheckSBX(Model1)", [](World& w) { Store(w, 200); }},
    {kOn, "begin check store count", noLimit + "100\n", "", [](World& w) { w.tonerLife = 100; }},
    {kOn, "begin ask switchOff check store", noLimit + "99\n", "", [](World& w) { Store(w, 50), w.tonerLife = 99; }},

    // Protection off: the user is asked when the data is there; before, the server, unless its policy is stored.
    {kOff, "begin check store count read ask post record", sent + disagreed},
    {kOff, "begin check store count read ask SetProtection(1)", agreed, "", Agree},
    {kOff, "begin check store count read ask record", disagreed, "", KeepItToOneself},
    {kOff, "begin", noLimit + "99\n", "", [](World& w) { Store(w, 150), w.tonerLife = 99; }},
    {kOff, "begin check store count", noLimit + "149\n", "", [](World& w) { w.tonerLife = 149; }},
    {kOff, "begin check store count read ask post record", sent + disagreed, "", [](World& w) { w.tonerLife = 150; }},
    {kOff, "begin count check", noLimit + "149\n", "CheckSBX(Model1)",
     [](World& w) { Store(w, -1), w.tonerLife = 149; }},

    // The server.
    {kOn, "begin ask switchOff check SetPPAEnabled(0)", serviceEnded, "", EndService},
    {kOff, "begin count check SetPPAEnabled(0)", serviceEnded, "", [](World& w) { Store(w, 150), EndService(w); }},
    {kOff, "begin count check read ask post record", sent + disagreed, "CheckSBX(Model1)",
     [](World& w) { Store(w, 0); }},
    {kOff, "begin GetModelName CheckSBX() store count read ask post record", sent + disagreed, "GetModelName"},
    {kOff, "begin check StoreServerPolicy(7|52|150) count read ask post record", sent + disagreed, "",
     [](World& w) { Answer(w, "many", "3 days", ""); }},
    {kOff, "begin check StoreServerPolicy(3|52|201) SetPPNormalInterval(9) count", noLimit + "200\n", "",
     [](World& w) { Answer(w, "201", "3", "9"); }},

    // Collecting and sending.
    {kOff, "begin check store count read ask post record", sent + disagreed, "WaitForJobs(30) WaitForJobs(600)"},
    {kOff, "begin check store WaitForJobs(30) GetSerialNumber", "3 [UA] failed to get serial nubmer~\n",
     "GetSerialNumber"},
    {kOff, "begin check store count near", sentLately, "UpdateTonerChangeCount(SN1,5) IsLastPPSendNear(SN1)"},
    {kOff, "begin check store count near read ask post record", sent + disagreed, "UpdateTonerChangeCount(SN1,5)"},
    {kOff, "begin check store count WaitForJobs(600) CollectSBX", notCollected, "CollectSBX"},
    {kOff, "begin check store count read ask post record", sent + "- [ZT] Failed to get host version\n" + disagreed,
     "GetHostVersion"},
    {kOn, "begin ask switchOff check store count read post", findings + "4 failed to send...\n", "PostSBX"},
};

TEST(PPAProcessorTest, EveryEndHasItsCallsAndItsLines) {
  for (const Scenario& scenario : scenarios) {
    World world;
    world.protectionState = scenario.state;
    world.odd = scenario.odd;
    scenario.change(world);
    std::string expected;
    for (const std::string_view stage : SplitAny(scenario.stages, " ")) {
      const auto found = stages.find(stage);
      expected.append(" ").append(found == stages.end() ? stage : found->second);
    }
    EXPECT_EQ(world.Run({}), start + scenario.says) << expected;
    EXPECT_EQ(world.calls, expected);
  }
}

TEST(PPAProcessorTest, WhatIsShownIsWhatIsPosted) {
  for (const bool accepts : {false, true}) {
    World world;
    world.protectionState = kOff;
    world.tonerLife = 4294967295;
    world.agreement = accepts;
    if (!accepts) world.odd = "Confirm";
    const std::string end = accepts ? "4 sending accepted...\n4 send sucessfully...\n" : "4 cancel sending...\n";
    EXPECT_EQ(world.Run({.showResult = true, .language = L"DE"}), start + findings + end + disagreed);
    EXPECT_TRUE(world.calls.ends_with(accepts ? " Ask(Queue,DE,0) Confirm PostSBX RecordPPSend(SN1)"
                                              : " Ask(Queue,DE,0) Confirm"));
    const std::string& document = world.documents[0];
    EXPECT_EQ(world.documents, std::vector<std::string>(accepts ? 2 : 1, document));
    for (const char* line : {"<HostVersion>1.2<", "<SBX>4294967295<", accepts ? "<ZOLTAgree>1<" : "<ZOLTAgree>0<"}) {
      EXPECT_NE(document.find(line), std::string::npos) << line;
    }
  }
}

}  // namespace
}  // namespace zt
