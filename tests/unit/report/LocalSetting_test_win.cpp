#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "FolderChain.h"
#include "KVFLocalSetting.h"
#include "TempFolder.h"
#include "TraceCapture.h"

namespace zt {
namespace {

// What a file goes through in a run is tested from end to end.
TEST(LocalSettingTest, WhatNoRunComesTo) {
  KVFLocalSetting nameless;
  EXPECT_TRUE(nameless.Path().empty());
  EXPECT_FALSE(nameless.Load() || nameless.DeleteSettingsFile());

  KVFLocalSetting settings("ZTTest");
  const std::filesystem::path path = settings.Path();
  for (const std::size_t size : {16u * 1024 * 1024, 16u * 1024 * 1024 + 1}) {
    std::ofstream(path, std::ios::binary) << std::string(size, '\n');
    EXPECT_EQ(settings.Load(), size == 16u * 1024 * 1024);
  }
  // A folder in the file's place is an empty store that cannot be saved.
  std::filesystem::remove(path);
  std::filesystem::create_directory(path);
  EXPECT_TRUE(settings.Load());
  EXPECT_FALSE(settings.CanBeKept() || settings.Save(path.wstring()));
  std::filesystem::remove(path);

  const TraceCapture trace;
  EXPECT_FALSE(settings.DeleteSettingsFile());
  const std::string message = "Can't delete file (" + path.string() + ")!!!";
  EXPECT_EQ(trace.Texts(), std::vector{"3 " + message});
  EXPECT_EQ(trace.debug, std::vector{"[KVF] " + message});
}

TEST(FolderChainTest, CreatesEveryFolderOnTheWay) {
  const TempFolder folder;
  const TraceCapture trace;
  CreateFolderChain(folder.Path(L"a\\b\\c"));
  EXPECT_TRUE(folder.Exists(L"a\\b\\c"));
  CreateFolderChain(L"");
  EXPECT_TRUE(trace.debug.empty());
  CreateFolderChain(L"Q:\\no\\such\\drive");
  EXPECT_EQ(trace.debug, std::vector<std::string>{"LE : 3"});
}

}  // namespace
}  // namespace zt
