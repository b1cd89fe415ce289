// zt-ui: what a person would see and press in the windows of a simulated Windows, from a test.
//
//   zt-ui list                        every visible window, its controls and their texts
//   zt-ui wait TITLE [SECONDS]        waits for a window and lists it
//   zt-ui gone TITLE [SECONDS]        waits until there is none of that title
//   zt-ui press TITLE TEXT [SECONDS]  waits for a window and its control with that text, and clicks it
//   zt-ui type TITLE ID TEXT          replaces the text of the control with that number
//   zt-ui close TITLE                 closes a window as its cross does
//
// Titles are whole, texts of controls are whole but for their "&". Exit code 0 when it was done, 1 when there was no
// such window or control within the time (10 seconds), 2 for a wrong command.
#include <windows.h>

#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr DWORD kDefaultSeconds = 10;
constexpr DWORD kPollMilliseconds = 50;

std::wstring TextOf(HWND window) {
  // A window whose program hangs must not hang its observer.
  wchar_t text[4096] = L"";
  DWORD_PTR length = 0;
  SendMessageTimeoutW(window, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG, 2000,
                      &length);
  return text;
}

std::wstring ClassOf(HWND window) {
  wchar_t name[256] = L"";
  GetClassNameW(window, name, static_cast<int>(std::size(name)));
  return name;
}

BOOL CALLBACK Collect(HWND window, LPARAM list) {
  if (IsWindowVisible(window)) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

std::vector<HWND> TopWindows() {
  std::vector<HWND> windows;
  EnumWindows(&Collect, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

std::vector<HWND> ControlsOf(HWND window) {
  std::vector<HWND> controls;
  EnumChildWindows(window, &Collect, reinterpret_cast<LPARAM>(&controls));
  return controls;
}

HWND FindTop(const std::wstring& title) {
  for (const HWND window : TopWindows()) {
    if (TextOf(window) == title) return window;
  }
  return nullptr;
}

HWND FindControl(HWND window, const std::wstring& text) {
  for (const HWND control : ControlsOf(window)) {
    std::wstring label = TextOf(control);
    std::erase(label, L'&');
    if (label == text) return control;
  }
  return nullptr;
}

void Print(const std::wstring& line) {
  std::string text(line.size() * 3, '\0');
  const int length = WideCharToMultiByte(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), text.data(),
                                         static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(static_cast<size_t>(length));
  std::printf("%s\n", text.c_str());
}

// One line a text, so that line ends within it are shown as \n.
std::wstring OneLine(const std::wstring& text) {
  std::wstring line;
  for (const wchar_t c : text) {
    if (c == L'\n') line += L"\\n";
    if (c != L'\r' && c != L'\n') line += c;
  }
  return line;
}

void PrintWindow(HWND window) {
  Print(L"window \"" + OneLine(TextOf(window)) + L"\"");
  for (const HWND control : ControlsOf(window)) {
    const std::wstring state = IsWindowEnabled(control) ? L"" : L" disabled";
    Print(L"  " + ClassOf(control) + L" " + std::to_wstring(GetDlgCtrlID(control)) + state + L" \"" +
          OneLine(TextOf(control)) + L"\"");
  }
}

// Whether the condition came true within the time.
bool Await(DWORD seconds, const std::function<bool()>& condition) {
  const ULONGLONG end = GetTickCount64() + seconds * 1000ULL;
  while (!condition()) {
    if (GetTickCount64() >= end) return false;
    Sleep(kPollMilliseconds);
  }
  return true;
}

bool List() {
  for (const HWND window : TopWindows()) PrintWindow(window);
  return true;
}

bool Wait(const std::wstring& title, DWORD seconds) {
  HWND window = nullptr;
  if (!Await(seconds, [&] { return (window = FindTop(title)) != nullptr; })) return false;
  PrintWindow(window);
  return true;
}

bool Gone(const std::wstring& title, DWORD seconds) {
  return Await(seconds, [&] { return FindTop(title) == nullptr; });
}

bool Press(const std::wstring& title, const std::wstring& text, DWORD seconds) {
  HWND control = nullptr;
  const bool found = Await(seconds, [&] {
    const HWND window = FindTop(title);
    control = window ? FindControl(window, text) : nullptr;
    return control && IsWindowEnabled(control);
  });
  // Posted, as what the click opens may stay open.
  return found && PostMessageW(control, BM_CLICK, 0, 0);
}

bool Type(const std::wstring& title, int id, const std::wstring& text) {
  const HWND window = FindTop(title);
  for (const HWND control : window ? ControlsOf(window) : std::vector<HWND>()) {
    if (GetDlgCtrlID(control) != id) continue;
    return SendMessageW(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str())) == TRUE;
  }
  return false;
}

bool Close(const std::wstring& title) {
  const HWND window = FindTop(title);
  return window && PostMessageW(window, WM_CLOSE, 0, 0);
}

// Absent: no such command.
std::optional<bool> Run(const std::vector<std::wstring>& words) {
  const size_t count = words.size();
  const auto is = [&](const wchar_t* command, size_t least, size_t most) {
    return words[0] == command && count >= least && count <= most;
  };
  const auto secondsAt = [&](size_t index) {
    return count > index ? static_cast<DWORD>(wcstoul(words[index].c_str(), nullptr, 10)) : kDefaultSeconds;
  };
  if (count == 0) return std::nullopt;
  if (is(L"list", 1, 1)) return List();
  if (is(L"wait", 2, 3)) return Wait(words[1], secondsAt(2));
  if (is(L"gone", 2, 3)) return Gone(words[1], secondsAt(2));
  if (is(L"press", 3, 4)) return Press(words[1], words[2], secondsAt(3));
  if (is(L"type", 4, 4)) return Type(words[1], _wtoi(words[2].c_str()), words[3]);
  if (is(L"close", 2, 2)) return Close(words[1]);
  return std::nullopt;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const std::optional<bool> done = Run(std::vector<std::wstring>(argv + 1, argv + argc));
  if (done) return *done ? 0 : 1;
  std::fputs(
      "usage: zt-ui list | wait TITLE [SECONDS] | gone TITLE [SECONDS] | press TITLE TEXT [SECONDS] |\n"
      "       type TITLE ID TEXT | close TITLE\n",
      stderr);
  return 2;
}
