#pragma once

#include <string>

namespace zt {

// GrantEveryoneFullAccess replaces the file's access list with one entry that gives the Everyone group full access,
// then sets normal attributes, so that an agent of a restricted user can write a file that an administrator's agent
// created. Failures are ignored: the file then keeps the access that it was created with.
void GrantEveryoneFullAccess(const std::wstring& path);

}  // namespace zt
