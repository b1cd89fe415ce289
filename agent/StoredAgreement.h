#pragma once

#include <string>

namespace zt {

// ReadStoredAgreement reports whether the user's agreement to product protection is stored for the model (bit 0 of
// ZOLTAgree under HKEY_LOCAL_MACHINE\SOFTWARE\Velnora\WEB_Agreement\<model>). The model's key is created where it is
// missing and the key above it exists.
bool ReadStoredAgreement(const std::wstring& model);

// FindStoredAgreement reports the same and creates nothing.
bool FindStoredAgreement(const std::wstring& model);

}  // namespace zt
