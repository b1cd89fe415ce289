#include <gtest/gtest.h>
#include <windows.h>

#include "AccessList.h"
// after windows.h
#include <aclapi.h>

#include "Handle.h"
#include "TempFolder.h"

namespace zt {
namespace {

TEST(AccessList, OneEntryGivesEveryoneFullAccess) {
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
  ASSERT_EQ(list->AceCount, 1);
  void* entry = nullptr;
  ASSERT_TRUE(GetAce(list, 0, &entry));
  const auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
  EXPECT_EQ(allowed->Header.AceType, ACCESS_ALLOWED_ACE_TYPE);
  EXPECT_EQ(allowed->Mask & FILE_ALL_ACCESS, static_cast<DWORD>(FILE_ALL_ACCESS));
  auto* sid = const_cast<DWORD*>(&allowed->SidStart);
  EXPECT_EQ(*GetSidSubAuthorityCount(sid), 1);
  EXPECT_EQ(GetSidIdentifierAuthority(sid)->Value[5], 1) << "the world authority";
  EXPECT_EQ(*GetSidSubAuthority(sid, 0), 0u);
  LocalFree(descriptor);
}

}  // namespace
}  // namespace zt
