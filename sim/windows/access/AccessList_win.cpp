// zt-access PATH: prints the access list of a file, an entry a line: "allow S-1-1-0 1f01ff". Exit code 1 when it cannot
// be read.
#include <windows.h>
// after windows.h
#include <aclapi.h>
#include <sddl.h>

#include <cstdio>

int wmain(int count, wchar_t** arguments) {
  ACL* list = nullptr;
  void* descriptor = nullptr;
  if (count != 2 || GetNamedSecurityInfoW(arguments[1], SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                          &list, nullptr, &descriptor) != ERROR_SUCCESS) {
    return 1;
  }
  if (!list) std::puts("no list");  // then nothing is refused to anybody
  for (DWORD index = 0; list && index < list->AceCount; ++index) {
    // Entries that allow and entries that deny have the same form.
    ACCESS_ALLOWED_ACE* entry = nullptr;
    wchar_t* account = nullptr;
    if (!GetAce(list, index, reinterpret_cast<void**>(&entry))) return 1;
    if (!ConvertSidToStringSidW(&entry->SidStart, &account)) return 1;
    std::printf("%s %ls %lx\n", entry->Header.AceType == ACCESS_ALLOWED_ACE_TYPE ? "allow" : "deny", account,
                entry->Mask);
    LocalFree(account);
  }
  LocalFree(descriptor);
  return 0;
}
