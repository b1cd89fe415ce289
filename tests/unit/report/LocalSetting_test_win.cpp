#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "ZOLTLocalSetting.h"
// after windows.h
#include <aclapi.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include "DebugOutputCapture_win.h"
#include "FolderChain.h"
#include "Handle.h"
#include "Logger.h"
#include "RegistryKey.h"
#include "TempFolder.h"

namespace zt {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

constexpr char store[] = "ZTTest";

class LocalSettingTest : public testing::Test {
 protected:
  LocalSettingTest() { Remove(); }
  ~LocalSettingTest() override { Remove(); }

  void Remove() const { std::filesystem::remove(path); }
  void Write(std::string_view bytes) const { std::ofstream(path, std::ios::binary) << bytes; }
  std::string Read() const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  // While it is held the file can be read and not written.
  FileHandle Hold() const {
    return FileHandle(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  }

  const std::filesystem::path path = KVFLocalSetting(store).Path();
};

TEST_F(LocalSettingTest, FirstRunCreatesTheFileWithWhatWasSet) {
  EXPECT_THAT(path.wstring(), testing::Eq(L"C:\\ProgramData\\Velnora\\Printer\\ZTTest.ini"));
  EXPECT_TRUE(std::filesystem::is_directory(path.parent_path()));
  {
    ZOLTLocalSetting settings(store);
    EXPECT_TRUE(settings.Load());
    EXPECT_FALSE(std::filesystem::exists(path));
    std::string codes;
    EXPECT_TRUE(settings.GetNSLanguageCode(codes));
    EXPECT_EQ(codes, "24, 59");
    EXPECT_EQ(settings.GetSendIntervalDays(30), 30);
    EXPECT_EQ(settings.GetTonerChangeCount("P1"), 0);
  }
  EXPECT_FALSE(std::filesystem::exists(path)) << "nothing was set";
  {
    ZOLTLocalSetting settings(store);
    EXPECT_TRUE(settings.Load());
    settings.SetLastSendTime(" P1\r\n", "2014-03-06 10:00:00");
    std::string time;
    EXPECT_TRUE(settings.GetLastSendTime("P1", time)) << "values are there at once";
    settings.SetZOLTEnabled(false);
  }
  EXPECT_EQ(Read(), "[Common]\r\nZOLTEnabled=2\r\n[History]\r\nLastSendTime_P1=2014-03-06 10:00:00\r\n");
}

TEST_F(LocalSettingTest, ANewFileIsOpenToEveryone) {
  ZOLTLocalSetting settings(store);
  ASSERT_TRUE(settings.Save(path.wstring()));
  ACL* list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  ASSERT_EQ(GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list,
                                  nullptr, &descriptor),
            static_cast<DWORD>(ERROR_SUCCESS));
  DWORD everyone = 0;
  for (DWORD at = 0; at < list->AceCount; ++at) {
    void* entry = nullptr;
    ASSERT_TRUE(GetAce(list, at, &entry));
    auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
    if (IsWellKnownSid(&allowed->SidStart, WinWorldSid)) everyone = allowed->Mask;
  }
  constexpr DWORD usable = FILE_GENERIC_READ | FILE_GENERIC_WRITE | DELETE;
  EXPECT_EQ(everyone & usable, usable);
  LocalFree(descriptor);
}

TEST_F(LocalSettingTest, EveryAccessorHasItsKey) {
  {
    ZOLTLocalSetting settings(store);
    settings.SetZOLTEnabled(true);
    settings.SetPPAEnabled(false);
    settings.SetSendIntervalDays(14);
    settings.SetPPNormalSendInterval(-1);
    settings.SetSBXPolicyReceived(true);
    settings.SetTransmissionDuration(8);
    settings.SetNSLanguageCode("52");
    settings.SetTonerMaxLife(160);
    settings.SetLastCollectFailedTime("P", "a");
    settings.SetLastCollectTime("P", "b");
    settings.SetLastSendTime("P", "c");
    settings.SetLastServerFailedTime("d");
    settings.SetLastPPSendTime("P", "e");
    settings.SetLastPPNormalTime("", "f");
    settings.SetCurrentTonerLife("P", 5);
    settings.SetTonerChangeCount("P", 6);
  }
  EXPECT_EQ(Read(),
            "[Common]\r\nNSLanguageCode=52\r\nPPAEnabled=2\r\nPPNormalSendInterval=-1\r\nSBXPolicyReceived=1\r\n"
            "SendIntervalDays=14\r\nTonerMaxLife=160\r\nTransmissionDuration=8\r\nZOLTEnabled=1\r\n"
            "[History]\r\nCurrentTonerLife_P=5\r\nLastCollectFailedTime_P=a\r\nLastCollectTime_P=b\r\n"
            "LastPPNormalTime=f\r\nLastPPSendTime_P=e\r\nLastSendTime_P=c\r\nLastServerFailedTime=d\r\n"
            "TonerChangeCount_P=6\r\n");

  ZOLTLocalSetting settings(store);
  ASSERT_TRUE(settings.Load());
  bool on = false;
  EXPECT_TRUE(settings.GetZOLTEnabled(on) && on);
  EXPECT_TRUE(settings.GetPPAEnabled(on) && !on);
  const int numbers[] = {settings.GetSendIntervalDays(0),    settings.GetPPNormalSendInterval(0),
                         settings.GetSBXPolicyReceived(),    settings.GetTransmissionDuration(0),
                         settings.GetTonerMaxLife(0),        settings.GetCurrentTonerLife("P"),
                         settings.GetTonerChangeCount(" P ")};
  EXPECT_THAT(numbers, ElementsAre(14, -1, 1, 8, 160, 5, 6));
  std::string texts[7];
  settings.GetNSLanguageCode(texts[0]);
  settings.GetLastCollectFailedTime("P", texts[1]);
  settings.GetLastCollectTime("P", texts[2]);
  settings.GetLastSendTime("P", texts[3]);
  settings.GetLastServerFailedTime(texts[4]);
  settings.GetLastPPSendTime("P", texts[5]);
  settings.GetLastPPNormalTime("", texts[6]);
  EXPECT_THAT(texts, ElementsAre("52", "a", "b", "c", "d", "e", "f"));
  EXPECT_FALSE(settings.GetLastPPNormalTime("P", texts[6]));
  EXPECT_EQ(texts[6], "f");
}

TEST_F(LocalSettingTest, ReadsOddValues) {
  Write("[Common]\nSendIntervalDays=42abc\nTonerMaxLife=abc\nTransmissionDuration=\nZOLTEnabled=3\nPPAEnabled=\n");
  ZOLTLocalSetting settings(store);
  ASSERT_TRUE(settings.Load());
  EXPECT_EQ(settings.GetSendIntervalDays(30), 42);
  EXPECT_EQ(settings.GetTonerMaxLife(150), 0);
  EXPECT_EQ(settings.GetTransmissionDuration(7), 0);
  bool untouched = true;
  EXPECT_FALSE(settings.GetZOLTEnabled(untouched) || settings.GetPPAEnabled(untouched));
  EXPECT_TRUE(untouched);
}

TEST_F(LocalSettingTest, AnyPrinterIsFoundAgain) {
  // The last of them is a key like any other: it cannot reach into another section.
  for (const char* id : {"P=1", "P;1", "=", "a b\tc", "[P]", "\xFF\x80", "P\r\n[Common]\r\nZOLTEnabled=2"}) {
    Remove();
    {
      ZOLTLocalSetting settings(store);
      ASSERT_TRUE(settings.Load());
      settings.SetLastSendTime(id, "2014-03-06 10:00:00");
    }
    ZOLTLocalSetting settings(store);
    ASSERT_TRUE(settings.Load());
    std::string time;
    EXPECT_TRUE(settings.GetLastSendTime(id, time)) << id;
    EXPECT_EQ(time, "2014-03-06 10:00:00");
    bool enabled = true;
    EXPECT_FALSE(settings.GetZOLTEnabled(enabled));
  }
}

TEST_F(LocalSettingTest, TheTailOfALongerFileStays) {
  Write("[Common]\r\nNSLanguageCode=1, 2, 3, 4\r\n");
  {
    ZOLTLocalSetting settings(store);
    ASSERT_TRUE(settings.Load());
    settings.SetNSLanguageCode("1");
  }
  EXPECT_EQ(Read(), "[Common]\r\nNSLanguageCode=1\r\n2, 3, 4\r\n");
}

TEST_F(LocalSettingTest, AFileThatCannotBeUsedIsRefused) {
  constexpr char content[] = "[Common]\r\nZOLTEnabled=1\r\n";
  Write(content);
  ZOLTLocalSetting settings(store);
  bool enabled = false;
  ASSERT_TRUE(settings.Load() && settings.GetZOLTEnabled(enabled));

  {
    // Write protection would not do: the superuser, as whom Wine may run, writes nevertheless.
    const FileHandle held = Hold();
    EXPECT_FALSE(settings.Load());
    EXPECT_FALSE(settings.GetZOLTEnabled(enabled)) << "the store is empty then";
  }
  EXPECT_TRUE(settings.Load());
  EXPECT_EQ(Read(), content);

  Write(std::string(16 * 1024 * 1024, '\n'));
  EXPECT_TRUE(settings.Load());
  Write(std::string(16 * 1024 * 1024 + 1, '\n'));
  EXPECT_FALSE(settings.Load());

  KVFLocalSetting nameless;
  EXPECT_TRUE(nameless.Path().empty());
  EXPECT_FALSE(nameless.Load() || nameless.DeleteSettingsFile());
}

TEST_F(LocalSettingTest, AFolderInPlaceOfTheFileIsAnEmptyStore) {
  std::filesystem::create_directory(path);
  ZOLTLocalSetting settings(store);
  EXPECT_TRUE(settings.Load());
  EXPECT_FALSE(settings.Save(path.wstring()));
}

TEST_F(LocalSettingTest, FailuresToSaveAndToDeleteAreTraced) {
  const TempFolder folder;
  RegistryKey key = RegistryKey::OpenOrCreate(L"SOFTWARE\\Tressil\\Logger\\LocalSettingTest", KEY_SET_VALUE);
  ASSERT_TRUE(key.WriteDword(L"Level", 4) && key.WriteString(L"File", folder.Path(L"zt.log")));
  processLogger.Start(L"LocalSettingTest");
  const DebugOutputCapture debug;
  {
    auto settings = std::make_unique<ZOLTLocalSetting>(store);
    settings->SetZOLTEnabled(true);
    Write("");
    const FileHandle held = Hold();
    settings.reset();
  }
  ZOLTLocalSetting settings(store);
  EXPECT_TRUE(settings.DeleteSettingsFile());
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_FALSE(settings.DeleteSettingsFile());
  processLogger.Flush();

  const std::string message = "Can't delete file (" + path.string() + ")!!!";
  EXPECT_THAT(debug.lines, ElementsAre(path.string(), "[KVF] " + message));
  const std::string log = folder.Read(L"zt.log");
  EXPECT_THAT(log, HasSubstr("\t2\tFailed to save to file!\r\n"));
  EXPECT_THAT(log, EndsWith("\t3\t" + message + "\r\n"));
}

TEST(FolderChainTest, CreatesEveryFolderOnTheWay) {
  const TempFolder folder;
  const DebugOutputCapture debug;
  CreateFolderChain(folder.Path(L"a\\b\\c"));
  EXPECT_TRUE(folder.Exists(L"a\\b\\c"));
  CreateFolderChain(folder.Path(L"a\\b\\c"));
  CreateFolderChain(L"");
  EXPECT_THAT(debug.lines, ElementsAre());
  CreateFolderChain(L"Q:\\no\\such\\drive");
  EXPECT_THAT(debug.lines, ElementsAre("LE : 3"));
}

}  // namespace
}  // namespace zt
