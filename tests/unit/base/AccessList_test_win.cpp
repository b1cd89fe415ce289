#include <gtest/gtest.h>
#include <windows.h>

#include "AccessList.h"
// after windows.h
#include <aclapi.h>

#include "Handle.h"
#include "TempFolder.h"

namespace zt {
namespace {

TEST(AccessList, EveryoneHasFullAccess) {
  const TempFolder folder;
  const std::wstring path = folder.Path(L"file.txt");
  FileHandle(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_HIDDEN, nullptr)).Reset();

  GrantEveryoneFullAccess(path);

  EXPECT_EQ(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
  ACL* list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  ASSERT_EQ(GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list,
                                  nullptr, &descriptor),
            static_cast<DWORD>(ERROR_SUCCESS));
  // On Windows the entry for Everyone is the only one. Wine keeps permission bits and shows entries of the owner as
  // well.
  constexpr DWORD usable = FILE_GENERIC_READ | FILE_GENERIC_WRITE | FILE_GENERIC_EXECUTE | DELETE;
  int entriesOfEveryone = 0;
  for (DWORD at = 0; at < list->AceCount; ++at) {
    void* entry = nullptr;
    ASSERT_TRUE(GetAce(list, at, &entry));
    auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
    EXPECT_EQ(allowed->Header.AceType, ACCESS_ALLOWED_ACE_TYPE);
    if (!IsWellKnownSid(&allowed->SidStart, WinWorldSid)) continue;
    ++entriesOfEveryone;
    EXPECT_EQ(allowed->Mask & usable, usable);
  }
  EXPECT_EQ(entriesOfEveryone, 1);
  LocalFree(descriptor);
}

}  // namespace
}  // namespace zt
