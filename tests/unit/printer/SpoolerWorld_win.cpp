#include "SpoolerWorld.h"

#include <windows.h>

#include "SpoolerWorld.h"
#include "Text.h"

namespace zt {

SpoolerWorld::SpoolerWorld(std::string_view spoolScript, std::string_view discoveryScript) {
  folder_.Write(L"winspool.ini", spoolScript);
  folder_.Write(L"function-discovery.ini", discoveryScript);
  SetEnvironmentVariableW(L"ZT_SPOOL_SCRIPT", folder_.Path(L"winspool.ini").c_str());
  SetEnvironmentVariableW(L"ZT_SPOOL_FOLDER", folder_.Path(L".").c_str());
  SetEnvironmentVariableW(L"ZT_DISCOVERY_SCRIPT", folder_.Path(L"function-discovery.ini").c_str());
  // This program's own copy of Function Discovery becomes that of the system.
  const HMODULE library = LoadLibraryW(L"function-discovery.dll");
  const auto registerServer = reinterpret_cast<void (*)()>(
      reinterpret_cast<void*>(library ? GetProcAddress(library, "DllRegisterServer") : nullptr));
  if (registerServer) registerServer();
}

std::vector<std::string> SpoolerWorld::Calls() {
  const std::string transcript = folder_.Read(L"transcript.txt");
  std::vector<std::string> calls;
  for (const std::string_view call : SplitAny(std::string_view(transcript).substr(callsSeen_), "\r\n")) {
    calls.emplace_back(call);
  }
  callsSeen_ = transcript.size();
  return calls;
}

}  // namespace zt
