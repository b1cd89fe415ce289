#include "SpoolerWorld.h"

#include <windows.h>

#include "Logger.h"
#include "RegistryKey.h"
#include "Text.h"

namespace zt {
namespace {

std::vector<std::string> LinesBehind(std::size_t& seen, const std::string& text) {
  std::vector<std::string> lines;
  for (const std::string_view line : SplitAny(std::string_view(text).substr(seen), "\r\n")) lines.emplace_back(line);
  seen = text.size();
  return lines;
}

// Makes this program's own copy of Function Discovery that of the system.
void RegisterFunctionDiscovery() {
  const HMODULE library = LoadLibraryW(L"function-discovery.dll");
  const auto registerServer = reinterpret_cast<void (*)()>(
      reinterpret_cast<void*>(library ? GetProcAddress(library, "DllRegisterServer") : nullptr));
  if (registerServer) registerServer();
}

}  // namespace

SpoolerWorld::SpoolerWorld(std::string_view spoolScript, std::string_view discoveryScript) {
  folder_.Write(L"winspool.ini", spoolScript);
  folder_.Write(L"function-discovery.ini", discoveryScript);
  SetEnvironmentVariableW(L"ZT_SPOOL_SCRIPT", folder_.Path(L"winspool.ini").c_str());
  SetEnvironmentVariableW(L"ZT_SPOOL_FOLDER", folder_.Path(L".").c_str());
  SetEnvironmentVariableW(L"ZT_DISCOVERY_SCRIPT", folder_.Path(L"function-discovery.ini").c_str());
  RegisterFunctionDiscovery();
  RegistryKey key = RegistryKey::OpenOrCreate(L"SOFTWARE\\Tressil\\Logger\\TEST", KEY_READ | KEY_SET_VALUE);
  key.WriteDword(L"Level", 4);
  key.WriteString(L"File", folder_.Path(L"trace.log"));
  processLogger.Start(L"TEST");
}

std::vector<std::string> SpoolerWorld::Calls() { return LinesBehind(callsSeen_, folder_.Read(L"transcript.txt")); }

std::string SpoolerWorld::Job(int number) const { return folder_.Read(L"job-" + std::to_wstring(number) + L".raw"); }

std::vector<std::string> SpoolerWorld::TraceTexts() {
  processLogger.Flush();
  std::vector<std::string> texts;
  for (const std::string& line : LinesBehind(tracesSeen_, folder_.Read(L"trace.log"))) {
    std::string text = line.substr(line.find_last_of('\t', line.rfind('\t') - 1) + 1);
    text[text.find('\t')] = ' ';
    texts.push_back(text);
  }
  return texts;
}

}  // namespace zt
