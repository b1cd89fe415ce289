#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "FolderChain.h"
#include "Handle.h"
#include "KVFLocalSetting.h"
#include "TempFolder.h"
#include "TraceCapture.h"

namespace zt {
namespace {

using Lines = std::vector<std::string>;

// What a run meets in place of its settings file, and what it leaves there, is seen end to end.
TEST(LocalSettingTest, AFileThatCannotBeUsedIsRefused) {
  KVFLocalSetting settings("ZTTest");
  const std::filesystem::path path = settings.Path();
  const auto write = [&](std::size_t size) { std::ofstream(path, std::ios::binary) << std::string(size, '\n'); };
  write(16 * 1024 * 1024);
  EXPECT_TRUE(settings.Load());
  write(16 * 1024 * 1024 + 1);
  EXPECT_FALSE(settings.Load());
  write(0);
  TraceCapture trace;
  {
    const FileHandle held(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    KVFLocalSetting unsaved("ZTTest");
    EXPECT_FALSE(unsaved.Load());
    unsaved.SetValue("Section", "Key", "value");
  }
  EXPECT_EQ(trace.Texts(), Lines{"2 Failed to save to file!"});
  std::filesystem::remove(path);
}

TEST(FolderChainTest, CreatesEveryFolderOnTheWay) {
  const TempFolder folder;
  const TraceCapture trace;
  for (int i = 0; i < 2; ++i) {
    CreateFolderChain(folder.Path(L"a\\b\\c"));
    EXPECT_TRUE(folder.Exists(L"a\\b\\c"));
  }
  CreateFolderChain(L"");
  EXPECT_EQ(trace.debug, Lines());
  CreateFolderChain(L"Q:\\no\\such\\drive");
  EXPECT_EQ(trace.debug, Lines{"LE : 3"});
}

}  // namespace
}  // namespace zt
