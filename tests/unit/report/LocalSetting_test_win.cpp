#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "DebugOutputCapture_win.h"
#include "FolderChain.h"
#include "Handle.h"
#include "Logger.h"
#include "RegistryKey.h"
#include "TempFolder.h"
#include "ZOLTLocalSetting.h"

namespace zt {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

constexpr char store[] = "ZTTest";

class LocalSettingTest : public testing::Test {
 protected:
  LocalSettingTest() { std::filesystem::remove(path); }
  ~LocalSettingTest() override { std::filesystem::remove(path); }

  void Write(std::string_view bytes) const { std::ofstream(path, std::ios::binary) << bytes; }
  std::string Read() const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  // While it is held the file can be read and not written. Write protection would not do: the superuser, as whom Wine
  // may run, writes nevertheless.
  FileHandle Hold() const {
    return FileHandle(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  }

  const std::filesystem::path path = KVFLocalSetting(store).Path();
};

TEST_F(LocalSettingTest, TheFirstRunCreatesTheFileWithWhatWasSet) {
  EXPECT_EQ(path.wstring(), L"C:\\ProgramData\\Velnora\\Printer\\ZTTest.ini");
  EXPECT_TRUE(std::filesystem::is_directory(path.parent_path()));
  for (const bool set : {false, true}) {
    ZOLTLocalSetting settings(store);
    EXPECT_TRUE(settings.Load() && settings.CanBeKept());
    EXPECT_FALSE(std::filesystem::exists(path)) << "nothing was set so far";
    if (set) settings.SetNSLanguageCode("1, 2, 3, 4");
  }
  EXPECT_EQ(Read(), "[Common]\r\nNSLanguageCode=1, 2, 3, 4\r\n");
  {
    ZOLTLocalSetting settings(store);
    std::string codes;
    EXPECT_TRUE(settings.Load() && settings.GetNSLanguageCode(codes));
    EXPECT_EQ(codes, "1, 2, 3, 4");
    settings.SetNSLanguageCode("1");
  }
  EXPECT_EQ(Read(), "[Common]\r\nNSLanguageCode=1\r\n2, 3, 4\r\n") << "the tail of a longer file stays";
}

TEST_F(LocalSettingTest, AFileThatCannotBeUsedIsRefused) {
  constexpr char content[] = "[Common]\r\nZOLTEnabled=1\r\n";
  Write(content);
  ZOLTLocalSetting settings(store);
  bool enabled = false;
  ASSERT_TRUE(settings.Load() && settings.GetZOLTEnabled(enabled));
  {
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

  // A folder in the file's place is an empty store that cannot be saved.
  std::filesystem::remove(path);
  std::filesystem::create_directory(path);
  EXPECT_TRUE(settings.Load());
  EXPECT_FALSE(settings.CanBeKept() || settings.Save(path.wstring()));
}

TEST_F(LocalSettingTest, FailuresToSaveAndToDeleteAreTraced) {
  const TempFolder logs;
  RegistryKey key = RegistryKey::OpenOrCreate(L"SOFTWARE\\Tressil\\Logger\\LocalSettingTest", KEY_SET_VALUE);
  ASSERT_TRUE(key.WriteDword(L"Level", 4) && key.WriteString(L"File", logs.Path(L"zt.log")));
  processLogger.Start(L"LocalSettingTest");
  const DebugOutputCapture debug;
  FileHandle held;
  {
    ZOLTLocalSetting settings(store);
    settings.SetZOLTEnabled(true);
    Write("");
    held = Hold();
  }
  held.Reset();
  ZOLTLocalSetting settings(store);
  EXPECT_TRUE(settings.DeleteSettingsFile());
  EXPECT_FALSE(settings.DeleteSettingsFile());
  processLogger.Flush();

  const std::string message = "Can't delete file (" + path.string() + ")!!!";
  EXPECT_THAT(debug.lines, ElementsAre(path.string(), "[KVF] " + message));
  const std::string log = logs.Read(L"zt.log");
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
