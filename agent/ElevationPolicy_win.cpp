#include "ElevationPolicy.h"

#include "CodePage.h"
#include "RegistryKey.h"

namespace zt {

void RegisterElevationPolicy(const ModulePath& program) {
  constexpr std::uint32_t kStartSilentlyAtMediumIntegrity = 3;
  RegistryKey key = RegistryKey::OpenOrCreate(L"SOFTWARE\\Microsoft\\Internet Explorer\\Low Rights\\ElevationPolicy\\" +
                                                  ToWide(ElevationPolicyIdentifier(ToUtf8(program.baseName))),
                                              KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY);
  key.WriteString(L"AppName", program.baseName + program.extension);
  key.WriteString(L"AppPath", program.directory);
  key.WriteDword(L"Policy", kStartSilentlyAtMediumIntegrity);
}

}  // namespace zt
