// The floor of each road that a start of the agent may take: the calls of Windows that the road cannot do without, with
// nothing around them.
//
//   agent_floor ROAD [QUEUE MESSAGES]
//
// ROAD is nothing, no-queue, disabled, skip, skip-serial, full or usb. QUEUE is the print queue. MESSAGES is a file
// with what the agent sends on that road: SNMP requests, an empty one, the body of an HTTP request, and the same once
// more, each with its length before it (32 bits, little-endian).
//
// What comes back is waited for and not looked at. Exit code 1 when a call fails, and the debugger output says which.

#include <winsock2.h>
// after winsock2.h
#include <windows.h>
#include <setupapi.h>
#include <shellapi.h>
#include <shlobj.h>
#include <shlwapi.h>
#include <wininet.h>
#include <winspool.h>
#include <ws2tcpip.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <cwchar>

namespace {

constexpr DWORD kBufferSize = 64 * 1024;
alignas(8) BYTE buffer[kBufferSize];
alignas(8) BYTE messages[kBufferSize];
const BYTE* message = messages;  // the next of them
wchar_t settingsPath[MAX_PATH];
char baseUrl[MAX_PATH];

void Need(bool worked, const char* call) {
  if (worked) return;
  OutputDebugStringA(call);
  ExitProcess(1);
}

// The next message, and its length; none when that is 0.
const BYTE* TakeMessage(DWORD& length) {
  std::memcpy(&length, message, sizeof length);
  const BYTE* const bytes = message + sizeof length;
  message = bytes + length;
  return bytes;
}

void ReadWholeFile(const wchar_t* path, BYTE* bytes) {
  const HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  Need(file != INVALID_HANDLE_VALUE, "CreateFileW");
  DWORD read = 0;
  Need(ReadFile(file, bytes, kBufferSize, &read, nullptr), "ReadFile");
  CloseHandle(file);
}

// Start of the program: the single instance, the log's configuration, the command line.
wchar_t** Begin(HANDLE& instance) {
  instance = CreateMutexW(nullptr, FALSE, L"Global\\{758F66C0-4B4C-4c4a-81F9-D289C5CCE8E5}");
  OutputDebugStringA("ZOLT - start");
  static wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  HKEY key = nullptr;
  RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tressil\\Logger\\ZOLT", 0, KEY_READ, &key);
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  Need(arguments != nullptr, "CommandLineToArgvW");
  return arguments;
}

void ReadQueue(wchar_t* queue) {
  HANDLE printer = nullptr;
  Need(OpenPrinterW(queue, &printer, nullptr), "OpenPrinterW");
  DWORD size = 0;
  GetPrinterW(printer, 2, nullptr, 0, &size);
  Need(GetPrinterW(printer, 2, buffer, size, &size), "GetPrinterW");
  ClosePrinter(printer);
}

DWORD ReadFlag(HKEY key, const wchar_t* name) {
  DWORD type = 0;
  DWORD value = 0;
  DWORD size = sizeof value;
  RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size);
  return value;
}

HKEY OpenFlags() {
  HKEY key = nullptr;
  Need(RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tressil\\ZOLT", 0, KEY_READ, &key) == 0, "RegOpenKeyExW");
  return key;
}

void ReadFlags() {
  const HKEY key = OpenFlags();
  const wchar_t* const names[] = {L"Disable", L"ShowResultBeforeSend", L"DontCheckSkip", L"VirtualTest", L"TestMode"};
  for (const wchar_t* name : names) Need(ReadFlag(key, name) == 0, "flag");
  wchar_t url[MAX_PATH] = {};
  DWORD size = sizeof url;
  RegQueryValueExW(key, L"URL", nullptr, nullptr, reinterpret_cast<BYTE*>(url), &size);
  WideCharToMultiByte(CP_ACP, 0, url, -1, baseUrl, MAX_PATH, nullptr, nullptr);
  RegCloseKey(key);
}

void ReadSettings() {
  wchar_t folder[MAX_PATH];
  Need(SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, 0, folder) == S_OK, "SHGetFolderPathW");
  PathAppendW(folder, L"Velnora");
  PathAppendW(folder, L"Printer");
  PathCombineW(settingsPath, folder, L"ZT.ini");
  for (wchar_t* end = std::wcschr(folder, L'\\'); end; end = std::wcschr(end + 1, L'\\')) {
    *end = L'\0';
    CreateDirectoryW(folder, nullptr);
    *end = L'\\';
  }
  CreateDirectoryW(folder, nullptr);
  GetFileAttributesW(settingsPath);
  const HANDLE probe =
      CreateFileW(settingsPath, GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  Need(probe != INVALID_HANDLE_VALUE, "CreateFileW");
  CloseHandle(probe);
  ReadWholeFile(settingsPath, buffer);
}

void CompareTime() {
  std::tm yesterday = {};
  yesterday.tm_year = 120;
  yesterday.tm_mday = 1;
  Need(std::mktime(&yesterday) < std::time(nullptr), "mktime");
}

void RecordTime() {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  Need(localtime_s(&local, &now) == 0, "localtime_s");
  OutputDebugStringW(settingsPath);
  const HANDLE file = CreateFileW(settingsPath, GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  Need(WriteFile(file, "[History]\r\n", 11, &written, nullptr), "WriteFile");
  CloseHandle(file);
}

void ResolveTcpIpPort() {
  wchar_t port[] = L",XcvPort IP_OFFICE";
  PRINTER_DEFAULTSW defaults = {nullptr, nullptr, SERVER_ACCESS_ENUMERATE};
  HANDLE monitor = nullptr;
  Need(OpenPrinterW(port, &monitor, &defaults), "OpenPrinterW of the port");
  BYTE request[132] = {};
  request[128] = 1;
  DWORD needed = 0;
  DWORD status = 0;
  Need(XcvDataW(monitor, L"GetConfigInfo", request, sizeof request, buffer, 964, &needed, &status), "XcvDataW");
  ClosePrinter(monitor);
}

HANDLE OpenUsb(const wchar_t* path, DWORD access, DWORD sharing, DWORD flags) {
  const HANDLE device = CreateFileW(path, access, sharing, nullptr, OPEN_EXISTING, flags, nullptr);
  Need(device != INVALID_HANDLE_VALUE, "CreateFileW of the device");
  return device;
}

// The path of the USB printer; there is one.
void FindUsb(wchar_t* path) {
  constexpr GUID kPrinters = {0x28D78FAD, 0x5A12, 0x11D1, {0xAE, 0x5B, 0x00, 0x00, 0xF8, 0x03, 0xA8, 0xC2}};
  const HDEVINFO list = SetupDiGetClassDevsW(&kPrinters, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
  SP_DEVICE_INTERFACE_DATA device = {};
  device.cbSize = sizeof device;
  Need(SetupDiEnumDeviceInterfaces(list, nullptr, &kPrinters, 0, &device), "SetupDiEnumDeviceInterfaces");
  const HKEY key = SetupDiOpenDeviceInterfaceRegKey(list, &device, 0, KEY_READ);
  Need(ReadFlag(key, L"Port Number") == 1, "Port Number");
  RegCloseKey(key);
  auto* const detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(buffer);
  detail->cbSize = sizeof *detail;
  Need(SetupDiGetDeviceInterfaceDetailW(list, &device, detail, kBufferSize, nullptr, nullptr), "path");
  std::wcscpy(path, detail->DevicePath);
  CloseHandle(OpenUsb(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, 0));
  SetupDiEnumDeviceInterfaces(list, nullptr, &kPrinters, 1, &device);
  SetupDiDestroyDeviceInfoList(list);
}

// One request to the device, which is opened for it. No request: the device ID.
void AskUsb(const wchar_t* path, const char* request) {
  const HANDLE device = OpenUsb(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE, FILE_ATTRIBUTE_NORMAL);
  DWORD filled = 0;
  char bytes[3];
  if (request) std::memcpy(bytes, request, sizeof bytes);
  Need(DeviceIoControl(device, request ? 0x0022003C : 0x0016000C, request ? bytes : nullptr, request ? sizeof bytes : 0,
                       buffer, request ? 255 : 1024, &filled, nullptr),
       "DeviceIoControl");
  CloseHandle(device);
}

DWORD Transfer(HANDLE device, const char* out, DWORD size) {
  OVERLAPPED overlapped = {};
  overlapped.hEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  const BOOL done =
      out ? WriteFile(device, out, size, nullptr, &overlapped) : ReadFile(device, buffer, size, nullptr, &overlapped);
  if (!done) Need(GetLastError() == ERROR_IO_PENDING, "transfer");
  if (!done) WaitForSingleObject(overlapped.hEvent, 5000);
  DWORD moved = 0;
  Need(GetOverlappedResult(device, &overlapped, &moved, FALSE) && moved == size, "GetOverlappedResult");
  CloseHandle(overlapped.hEvent);
  return moved;
}

void ReadUsbDocument(const wchar_t* path) {
  Need(!LoadLibraryExW(L"klpmon.dll", nullptr, LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32),
       "klpmon.dll is here");
  const HANDLE device = OpenUsb(path, GENERIC_READ | GENERIC_WRITE, 0, FILE_FLAG_OVERLAPPED);
  Transfer(device, "\x1B\x91\0\0\0\0\0\x06\0\0\0\x01\0\0\0", 16);
  Transfer(device, nullptr, 16);
  const DWORD length =
      (DWORD{buffer[12]} << 24) | (DWORD{buffer[13]} << 16) | (DWORD{buffer[14]} << 8) | DWORD{buffer[15]};
  Transfer(device, "\x1B\x91\0\0\0\0\0\x06\0\0\0\x02\0\0\0", 16);
  Transfer(device, nullptr, length);
  CloseHandle(device);
}

void CountJobs(wchar_t* queue) {
  HANDLE printer = nullptr;
  Need(OpenPrinterW(queue, &printer, nullptr), "OpenPrinterW");
  DWORD size = 0;
  DWORD count = 0;
  EnumJobsW(printer, 0, 0xFFFFFFFF, 1, nullptr, 0, &size, &count);
  Need(EnumJobsW(printer, 0, 0xFFFFFFFF, 1, buffer, size, &size, &count), "EnumJobsW");
  ClosePrinter(printer);
  std::printf("%lu jobs\n", count);
}

bool IsReady(SOCKET socket, bool toRead) {
  fd_set set;
  FD_ZERO(&set);
  FD_SET(socket, &set);
  timeval patience = {3, 0};
  return select(0, toRead ? &set : nullptr, toRead ? nullptr : &set, nullptr, &patience) == 1;
}

addrinfo* LookUp(const char* name, const char* service, int flags) {
  addrinfo hints = {};
  hints.ai_flags = flags;
  hints.ai_socktype = SOCK_DGRAM;
  hints.ai_protocol = IPPROTO_UDP;
  addrinfo* found = nullptr;
  Need(getaddrinfo(name, service, &hints, &found) == 0, "getaddrinfo");
  return found;
}

// Each operation looks up the addresses of this machine and has a socket of its own, bound to them.
void Ask(const BYTE* request, DWORD length) {
  char name[1025];
  Need(gethostname(name, sizeof name) == 0, "gethostname");
  addrinfo* const local = LookUp(name, nullptr, 0);
  const SOCKET socket = WSASocketW(AF_INET, SOCK_DGRAM, IPPROTO_UDP, nullptr, 0, WSA_FLAG_OVERLAPPED);
  u_long on = 1;
  ioctlsocket(socket, static_cast<long>(FIONBIO), &on);
  bind(socket, local->ai_addr, static_cast<int>(local->ai_addrlen));
  freeaddrinfo(local);
  const BOOL broadcast = FALSE;
  setsockopt(socket, SOL_SOCKET, SO_BROADCAST, reinterpret_cast<const char*>(&broadcast), sizeof broadcast);
  addrinfo* const agent = LookUp("127.0.0.1", "161", AI_NUMERICHOST);
  Need(IsReady(socket, false), "select");
  sendto(socket, reinterpret_cast<const char*>(request), static_cast<int>(length), 0, agent->ai_addr,
         static_cast<int>(agent->ai_addrlen));
  freeaddrinfo(agent);
  Need(IsReady(socket, true), "select of an answer");
  sockaddr_storage sender;
  int senderLength = sizeof sender;
  Need(recvfrom(socket, reinterpret_cast<char*>(buffer), 2048, 0, reinterpret_cast<sockaddr*>(&sender), &senderLength) >
           0,
       "recvfrom");
  closesocket(socket);
}

void AskAll() {
  DWORD length = 0;
  for (const BYTE* request = TakeMessage(length); length != 0; request = TakeMessage(length)) Ask(request, length);
}

void Post(const char* page) {
  char url[MAX_PATH];
  std::snprintf(url, sizeof url, "%s%s", baseUrl, page);
  char scheme[32];
  char host[260];
  char user[260];
  char password[260];
  char path[1040];
  URL_COMPONENTSA parts = {};
  parts.dwStructSize = sizeof parts;
  parts.lpszScheme = scheme;
  parts.dwSchemeLength = sizeof scheme;
  parts.lpszHostName = host;
  parts.dwHostNameLength = sizeof host;
  parts.lpszUserName = user;
  parts.dwUserNameLength = sizeof user;
  parts.lpszPassword = password;
  parts.dwPasswordLength = sizeof password;
  parts.lpszUrlPath = path;
  parts.dwUrlPathLength = sizeof path;
  Need(InternetCrackUrlA(url, 0, 0, &parts), "InternetCrackUrlA");
  const HINTERNET internet = InternetOpenA("ZOLTConnector", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0);
  const HINTERNET connection =
      InternetConnectA(internet, host, parts.nPort, user, password, INTERNET_SERVICE_HTTP, 0, 1);
  const HINTERNET request =
      HttpOpenRequestA(connection, "POST", path, nullptr, "*/*", nullptr, INTERNET_FLAG_NO_CACHE_WRITE, 1);
  constexpr char kType[] = "Content-Type: application/x-www-form-urlencoded";
  HttpAddRequestHeadersA(request, kType, sizeof kType - 1, HTTP_ADDREQ_FLAG_ADD | HTTP_ADDREQ_FLAG_REPLACE);
  DWORD length = 0;
  const BYTE* const body = TakeMessage(length);
  Need(HttpSendRequestA(request, nullptr, 0, const_cast<BYTE*>(body), length), "HttpSendRequestA");
  wchar_t status[5];
  DWORD size = sizeof status;
  HttpQueryInfoW(request, HTTP_QUERY_STATUS_CODE, status, &size, nullptr);
  Need(std::wcscmp(status, L"200") == 0, "status");
  OutputDebugStringA("[KVF] nStatusCode : 200");
  DWORD available = 0;
  while (InternetQueryDataAvailable(request, &available, 0, 0) && available != 0) {
    DWORD read = 0;
    InternetReadFile(request, buffer, available, &read);
  }
  InternetCloseHandle(request);
  InternetCloseHandle(connection);
  InternetCloseHandle(internet);
}

bool Is(const wchar_t* road, const wchar_t* name) { return std::wcscmp(road, name) == 0; }

void ReadSerialNumber(wchar_t* queue, const wchar_t* usbPath) {
  CountJobs(queue);
  if (usbPath) {
    AskUsb(usbPath, nullptr);
    AskUsb(usbPath, "\x49\0\x01");
  }
  AskAll();
  CompareTime();
}

void Report(wchar_t* queue, const wchar_t* usbPath) {
  Post("CheckDate.aspx");
  CountJobs(queue);
  if (usbPath) {
    CountJobs(queue);
    ReadUsbDocument(usbPath);
    AskUsb(usbPath, "\x56\0\0");
  }
  AskAll();
  Post("Connector.aspx");
  RecordTime();
}

// The roads have their beginnings in common.
void Run(const wchar_t* road, wchar_t* queue, const wchar_t* recorded) {
  if (Is(road, L"no-queue")) return;
  ReadQueue(queue);
  if (Is(road, L"disabled")) {
    const HKEY key = OpenFlags();
    Need(ReadFlag(key, L"Disable") == 1, "flag");
    RegCloseKey(key);
    return;
  }
  ReadFlags();
  ReadSettings();
  WSADATA data;
  Need(WSAStartup(MAKEWORD(2, 2), &data) == 0, "WSAStartup");
  ReadQueue(queue);
  wchar_t device[MAX_PATH];
  const wchar_t* usbPath = nullptr;
  if (Is(road, L"usb")) {
    FindUsb(device);
    usbPath = device;
  } else {
    ResolveTcpIpPort();
  }
  CompareTime();
  if (!Is(road, L"skip")) {
    ReadWholeFile(recorded, messages);
    ReadSerialNumber(queue, usbPath);
    if (!Is(road, L"skip-serial")) Report(queue, usbPath);
  }
  WSACleanup();
  OutputDebugStringA("ZOLT - end");
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t* commandLine, int) {
  if (std::wcscmp(commandLine, L"nothing") == 0) return 0;
  HANDLE instance = nullptr;
  wchar_t** const arguments = Begin(instance);
  Run(arguments[1], arguments[2], arguments[3]);
  LocalFree(arguments);
  CloseHandle(instance);
  return 0;
}
