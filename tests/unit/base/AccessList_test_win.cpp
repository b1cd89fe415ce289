#include "AccessList.h"

#include <windows.h>
#include <gtest/gtest.h>

#include "Handle.h"
#include "TempFolder.h"

namespace zt {
namespace {

// The list itself is read back end to end, where another program does it.
TEST(AccessList, AttributesBecomeNormal) {
  const TempFolder folder;
  const std::wstring path = folder.Path(L"file.txt");
  FileHandle(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_HIDDEN, nullptr)).Reset();
  GrantEveryoneFullAccess(path);
  EXPECT_EQ(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
}

}  // namespace
}  // namespace zt
