#include "HostVersion.h"

#include <gtest/gtest.h>

#include "TempFolder.h"

namespace zt {
namespace {

TEST(ReadHostVersion, FilesAndValues) {
  TempFolder folder;
  const std::wstring program = folder.Path(L"ZT.exe");
  EXPECT_EQ(ReadHostVersion(program), std::nullopt);
  EXPECT_EQ(ReadHostVersion(L""), std::nullopt);

  folder.Write(L"ZT.ver", "[Version]\r\nMainVersion=3.1\r\n");
  EXPECT_EQ(ReadHostVersion(program), "3.1");
  folder.Write(L"other.ver", "[Version]\r\nMainVersion=3.2\r\n");
  EXPECT_EQ(ReadHostVersion(folder.Path(L"other")), "3.2");  // a program without an extension

  // The first file that exists decides, also when it has no value.
  folder.Write(L"pp.ver", "[Version]\r\nMainVersion=\r\n[Other]\r\nMainVersion=9\r\n");
  EXPECT_EQ(ReadHostVersion(program), std::nullopt);
  folder.Write(L"pp.ver", "[Version]\r\nMainVersion=" + std::string(300, '1') + "\r\n");
  EXPECT_EQ(ReadHostVersion(program), std::string(259, '1'));
}

}  // namespace
}  // namespace zt
