#include "SystemFacts_win.h"

#include <windows.h>

#include <cstring>

#include "SystemLibrary_win.h"

namespace zt {
namespace {

constexpr std::size_t kRoom = 64;

// "10.0.19045"; no row when it is not told.
void AddWindowsVersion(std::vector<Row>& rows) {
  // GetVersionEx answers what the program's manifest names, not what is there.
  using RtlGetVersionFunction = LONG WINAPI(OSVERSIONINFOW*);
  const auto rtlGetVersion = FindFunction<RtlGetVersionFunction>(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion");
  OSVERSIONINFOW version = {};
  version.dwOSVersionInfoSize = sizeof(version);
  if (!rtlGetVersion || rtlGetVersion(&version) != 0) return;
  wchar_t text[kRoom] = L"";
  wsprintfW(text, L"%lu.%lu.%lu", version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber);
  AddRow(rows, "Windows", text);
}

// The version of this program from its resources, "1.0.0.0"; no row without one.
void AddAgentVersion(std::vector<Row>& rows) {
  const HMODULE program = GetModuleHandleW(nullptr);
  const HRSRC found = FindResourceW(program, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
  const HGLOBAL loaded = found ? LoadResource(program, found) : nullptr;
  if (!loaded) return;
  // The fixed part follows the key "VS_VERSION_INFO", at the next multiple of four bytes.
  constexpr std::size_t kFixedPart = 40;
  VS_FIXEDFILEINFO version = {};
  if (SizeofResource(program, found) < kFixedPart + sizeof(version)) return;
  std::memcpy(&version, static_cast<const char*>(LockResource(loaded)) + kFixedPart, sizeof(version));
  wchar_t text[kRoom] = L"";
  wsprintfW(text, L"%u.%u.%u.%u", HIWORD(version.dwFileVersionMS), LOWORD(version.dwFileVersionMS),
            HIWORD(version.dwFileVersionLS), LOWORD(version.dwFileVersionLS));
  AddRow(rows, "Agent", text);
}

// "YYYY-MM-DD hh:mm:ss"
void AddTime(std::vector<Row>& rows) {
  SYSTEMTIME time = {};
  GetLocalTime(&time);
  wchar_t text[kRoom] = L"";
  wsprintfW(text, L"%04u-%02u-%02u %02u:%02u:%02u", time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute,
            time.wSecond);
  AddRow(rows, "Written", text);
}

}  // namespace

DiagnosisSection DescribeComputer(const PrinterChoice* printer) {
  DiagnosisSection section;
  section.title = L"Computer and printer";
  AddTime(section.rows);
  AddWindowsVersion(section.rows);
  AddAgentVersion(section.rows);
  if (printer) {
    AddRow(section.rows, "Printer", printer->name);
    AddRow(section.rows, "Driver", printer->driver);
    AddRow(section.rows, "Port", printer->port);
    AddRow(section.rows, "Leads to", DescribeTarget(*printer));
  } else {
    AddRow(section.rows, "Printer", "none chosen");
  }
  return section;
}

}  // namespace zt
