#include "AccessList.h"

#include <windows.h>
#include <aclapi.h>

#include <memory>

#include "Handle.h"

namespace zt {
namespace {

void SetEveryoneList(const std::wstring& path) {
  SID_IDENTIFIER_AUTHORITY world = SECURITY_WORLD_SID_AUTHORITY;
  BYTE everyone[SECURITY_MAX_SID_SIZE] = {};
  if (!InitializeSid(everyone, &world, 1)) return;
  *GetSidSubAuthority(everyone, 0) = SECURITY_WORLD_RID;

  EXPLICIT_ACCESSW access = {};
  access.grfAccessPermissions = GENERIC_ALL;
  access.grfAccessMode = SET_ACCESS;
  access.grfInheritance = NO_INHERITANCE;
  access.Trustee.TrusteeForm = TRUSTEE_IS_SID;
  access.Trustee.TrusteeType = TRUSTEE_IS_WELL_KNOWN_GROUP;
  access.Trustee.ptstrName = reinterpret_cast<wchar_t*>(everyone);

  ACL* list = nullptr;
  if (SetEntriesInAclW(1, &access, nullptr, &list) != ERROR_SUCCESS) return;
  const std::unique_ptr<ACL, LocalFreeDeleter> owner(list);

  SECURITY_DESCRIPTOR descriptor;
  if (!InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION)) return;
  if (!SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE)) return;
  SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, &descriptor);
}

}  // namespace

void GrantEveryoneFullAccess(const std::wstring& path) {
  SetEveryoneList(path);
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

}  // namespace zt
