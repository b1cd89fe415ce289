#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "FolderChain.h"
#include "Handle.h"
#include "KVFLocalSetting.h"
#include "TraceCapture.h"

namespace zt {
namespace {

// What a run meets in place of its settings file, and what it leaves there, is seen end to end.
TEST(LocalSettingTest, AFileThatCannotBeUsedIsRefused) {
  KVFLocalSetting settings("ZTTest");
  const std::filesystem::path path = settings.Path();
  const auto write = [&](std::size_t size) { std::ofstream(path, std::ios::binary) << std::string(size, '\n'); };
  write(16 * 1024 * 1024);
  EXPECT_TRUE(settings.Load());
  write(16 * 1024 * 1024 + 1);
  EXPECT_FALSE(settings.Load());
  const TraceCapture trace;
  {
    const FileHandle held(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    KVFLocalSetting("ZTTest").SetValue("Section", "Key", "value");
  }
  EXPECT_EQ(trace.Texts(), std::vector<std::string>{"2 Failed to save to file!"});
  std::filesystem::remove(path);
}

TEST(FolderChainTest, EndsWhereAParentIsMissing) {
  const TraceCapture trace;
  CreateFolderChain(L"Q:\\no\\such\\drive");
  EXPECT_EQ(trace.debug, std::vector<std::string>{"LE : 3"});
}

}  // namespace
}  // namespace zt
