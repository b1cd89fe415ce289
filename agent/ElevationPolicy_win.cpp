#include <windows.h>

#include "CodePage.h"
#include "ElevationPolicy.h"
#include "RegistryKey.h"

namespace zt {
namespace {

std::string ToUtf8(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  const int needed = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(needed > 0 ? needed : 0), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, utf8.data(), needed, nullptr, nullptr);
  return utf8;
}

constexpr std::uint32_t startSilentlyAtMediumIntegrity = 3;

}  // namespace

void RegisterElevationPolicy(const ModulePath& program) {
  RegistryKey key = RegistryKey::OpenOrCreate(L"SOFTWARE\\Microsoft\\Internet Explorer\\Low Rights\\ElevationPolicy\\" +
                                                  ToWide(ElevationPolicyIdentifier(ToUtf8(program.baseName))),
                                              KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY);
  key.WriteString(L"AppName", program.baseName + program.extension);
  key.WriteString(L"AppPath", program.directory);
  key.WriteDword(L"Policy", startSilentlyAtMediumIntegrity);
}

}  // namespace zt
