// zt-ui: what a person would see and press in the windows of a simulated Windows, from a test.
//
//   zt-ui list                           every visible window, its controls and their texts
//   zt-ui wait TITLE [SECONDS]           waits for a window and lists it
//   zt-ui gone TITLE [SECONDS]           waits until there is none of that title
//   zt-ui press TITLE TEXT [SECONDS]     waits for a window and its control with that text, and clicks it
//   zt-ui type TITLE ID TEXT             replaces the text of the control with that number
//   zt-ui read TITLE ID                  the whole text of a control; of a list its lines, cells between " | "
//   zt-ui await TITLE ID PART [SECONDS]  waits until what "read" prints holds that part, and prints it
//   zt-ui choose TITLE ID PART           chooses the first line of a list, or the first tab, that holds that part
//   zt-ui key TITLE NUMBER               presses a key, by the number of its virtual key
//   zt-ui size TITLE WIDTH HEIGHT        gives a window that size
//   zt-ui clipboard                      the text on the clipboard
//   zt-ui close TITLE                    closes a window as its cross does
//   zt-ui serve                          takes commands from its input until that ends
//
// Titles are whole, texts of controls are whole but for their "&". Exit code 0 when it was done, 1 when there was no
// such window, control, line or text within the time (10 seconds), 2 for a wrong command. In the service a command is a
// line with its words between tabs; its answer is a line of that code and of the output's size in bytes, and the
// output.
#include <windows.h>
#include <commctrl.h>
#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr DWORD kDefaultSeconds = 10;
constexpr DWORD kPollMilliseconds = 10;

// A window whose program hangs must not hang its observer.
size_t Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  DWORD_PTR result = 0;
  SendMessageTimeoutW(window, message, wParam, lParam, SMTO_ABORTIFHUNG, 2000, &result);
  return result;
}

std::wstring TextOf(HWND window) {
  std::wstring text(Send(window, WM_GETTEXTLENGTH, 0, 0) + 1, L'\0');
  text.resize(std::min(text.size(), Send(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
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

HWND FindControl(const std::wstring& title, int id) {
  const HWND window = FindTop(title);
  for (const HWND control : window ? ControlsOf(window) : std::vector<HWND>()) {
    if (GetDlgCtrlID(control) == id) return control;
  }
  return nullptr;
}

// Lists and tabs read and write their items in the memory of their own program.
class TheirItem {
 public:
  explicit TheirItem(HWND control) {
    DWORD id = 0;
    GetWindowThreadProcessId(control, &id);
    process_ = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id);
    memory_ = VirtualAllocEx(process_, nullptr, kSize, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
  }
  ~TheirItem() {
    VirtualFreeEx(process_, memory_, 0, MEM_RELEASE);
    CloseHandle(process_);
  }
  TheirItem(const TheirItem&) = delete;
  TheirItem& operator=(const TheirItem&) = delete;

  // The room for an item's text.
  wchar_t* Text() const { return reinterpret_cast<wchar_t*>(static_cast<char*>(memory_) + kTextAt); }
  static constexpr int kTextSize = 1024;

  // Sends a message about the item.
  template <class Item>
  size_t Send(HWND control, UINT message, WPARAM wParam, const Item& item) const {
    static_assert(sizeof(item) <= kTextAt);
    WriteProcessMemory(process_, memory_, &item, sizeof(item), nullptr);
    return ::Send(control, message, wParam, reinterpret_cast<LPARAM>(memory_));
  }

  std::wstring ReadText() const {
    wchar_t text[kTextSize + 1] = L"";
    ReadProcessMemory(process_, Text(), text, kTextSize * sizeof(wchar_t), nullptr);
    return text;
  }

 private:
  static constexpr size_t kTextAt = 256;
  static constexpr size_t kSize = kTextAt + kTextSize * sizeof(wchar_t);
  HANDLE process_;
  void* memory_;
};

std::vector<std::wstring> LinesOf(HWND list) {
  const TheirItem theirs(list);
  const size_t columns = Send(reinterpret_cast<HWND>(Send(list, LVM_GETHEADER, 0, 0)), HDM_GETITEMCOUNT, 0, 0);
  std::vector<std::wstring> lines(Send(list, LVM_GETITEMCOUNT, 0, 0));
  for (size_t number = 0; number < lines.size(); ++number) {
    for (size_t column = 0; column < columns; ++column) {
      LVITEMW item = {};
      item.iSubItem = static_cast<int>(column);
      item.pszText = theirs.Text();
      item.cchTextMax = TheirItem::kTextSize;
      const size_t length = theirs.Send(list, LVM_GETITEMTEXTW, number, item);
      if (column > 0) lines[number] += L" | ";
      if (length > 0) lines[number] += theirs.ReadText();
    }
  }
  return lines;
}

std::vector<std::wstring> TitlesOf(HWND tabs) {
  const TheirItem theirs(tabs);
  std::vector<std::wstring> titles(Send(tabs, TCM_GETITEMCOUNT, 0, 0));
  for (size_t number = 0; number < titles.size(); ++number) {
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = theirs.Text();
    item.cchTextMax = TheirItem::kTextSize;
    if (theirs.Send(tabs, TCM_GETITEMW, number, item)) titles[number] = theirs.ReadText();
  }
  return titles;
}

std::string output;

void Print(const std::wstring& line) {
  std::string text(line.size() * 3, '\0');
  const int length = WideCharToMultiByte(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), text.data(),
                                         static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(static_cast<size_t>(length));
  output += text + "\n";
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
  const HWND control = FindControl(title, id);
  return control && SendMessageW(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str())) == TRUE;
}

// Absent: no such control.
std::optional<std::wstring> ContentOf(const std::wstring& title, int id) {
  const HWND control = FindControl(title, id);
  if (!control) return std::nullopt;
  if (ClassOf(control) != WC_LISTVIEWW) return TextOf(control);
  std::wstring text;
  for (const std::wstring& line : LinesOf(control)) text += line + L"\n";
  return text;
}

bool Read(const std::wstring& title, int id) {
  const auto content = ContentOf(title, id);
  if (content) Print(*content);
  return content.has_value();
}

bool AwaitContent(const std::wstring& title, int id, const std::wstring& part, DWORD seconds) {
  const bool came = Await(seconds, [&] { return ContentOf(title, id).value_or(L"").find(part) != std::wstring::npos; });
  return Read(title, id) && came;
}

bool Choose(const std::wstring& title, int id, const std::wstring& part) {
  const HWND control = FindControl(title, id);
  if (!control) return false;
  const bool isList = ClassOf(control) == WC_LISTVIEWW;
  const std::vector<std::wstring> items = isList ? LinesOf(control) : TitlesOf(control);
  const auto found =
      std::ranges::find_if(items, [&](const std::wstring& item) { return item.find(part) != std::wstring::npos; });
  if (found == items.end()) return false;
  const auto number = static_cast<WPARAM>(found - items.begin());
  if (isList) {
    LVITEMW item = {};
    item.stateMask = item.state = LVIS_SELECTED | LVIS_FOCUSED;
    TheirItem(control).Send(control, LVM_SETITEMSTATE, number, item);
    Send(control, LVM_ENSUREVISIBLE, number, FALSE);
  } else {
    Send(control, TCM_SETCURFOCUS, number, 0);  // unlike TCM_SETCURSEL, this tells the window
  }
  return true;
}

bool Press(const std::wstring& title, WORD key) {
  const HWND window = FindTop(title);
  return window && PostMessageW(window, WM_KEYDOWN, key, 1);
}

bool Size(const std::wstring& title, int width, int height) {
  const HWND window = FindTop(title);
  return window && SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool Clipboard() {
  // Somebody may be about to fill it.
  if (!Await(kDefaultSeconds, [] { return OpenClipboard(nullptr) != FALSE; })) return false;
  const HANDLE data = GetClipboardData(CF_UNICODETEXT);
  if (const auto* text = data ? static_cast<const wchar_t*>(GlobalLock(data)) : nullptr) {
    Print(text);
    GlobalUnlock(data);
  }
  CloseClipboard();
  return data != nullptr;
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
  const auto numberAt = [&](size_t index) { return _wtoi(words[index].c_str()); };
  const auto secondsAt = [&](size_t index) {
    return count > index ? static_cast<DWORD>(numberAt(index)) : kDefaultSeconds;
  };
  if (count == 0) return std::nullopt;
  if (is(L"list", 1, 1)) return List();
  if (is(L"wait", 2, 3)) return Wait(words[1], secondsAt(2));
  if (is(L"gone", 2, 3)) return Gone(words[1], secondsAt(2));
  if (is(L"press", 3, 4)) return Press(words[1], words[2], secondsAt(3));
  if (is(L"type", 4, 4)) return Type(words[1], numberAt(2), words[3]);
  if (is(L"read", 3, 3)) return Read(words[1], numberAt(2));
  if (is(L"await", 4, 5)) return AwaitContent(words[1], numberAt(2), words[3], secondsAt(4));
  if (is(L"choose", 4, 4)) return Choose(words[1], numberAt(2), words[3]);
  if (is(L"key", 3, 3)) return Press(words[1], static_cast<WORD>(numberAt(2)));
  if (is(L"size", 4, 4)) return Size(words[1], numberAt(2), numberAt(3));
  if (is(L"clipboard", 1, 1)) return Clipboard();
  if (is(L"close", 2, 2)) return Close(words[1]);
  return std::nullopt;
}

// The command's exit code; what it printed stands in `output`.
int Do(const std::vector<std::wstring>& words) {
  output.clear();
  const std::optional<bool> done = Run(words);
  return done ? (*done ? 0 : 1) : 2;
}

std::vector<std::wstring> WordsOf(const std::string& line) {
  std::wstring text(line.size(), L'\0');
  text.resize(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, line.data(), static_cast<int>(line.size()),
                                                      text.data(), static_cast<int>(text.size()))));
  std::vector<std::wstring> words;
  for (size_t begin = 0, end = 0; end != text.npos; begin = end + 1) {
    end = text.find(L'\t', begin);
    words.push_back(text.substr(begin, end == text.npos ? end : end - begin));
  }
  return words;
}

void Serve() {
  std::string line;
  for (int c = 0; (c = std::getchar()) != EOF;) {
    if (c != '\n') {
      line += static_cast<char>(c);
      continue;
    }
    const int code = Do(WordsOf(line));
    std::printf("%d %zu\n%s", code, output.size(), output.c_str());
    std::fflush(stdout);
    line.clear();
  }
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  const std::vector<std::wstring> words(argv + 1, argv + argc);
  if (words == std::vector<std::wstring>{L"serve"}) {
    Serve();
    return 0;
  }
  const int code = Do(words);
  std::fputs(output.c_str(), stdout);
  if (code == 2) std::fputs("usage: see the head of this program's source, or sim/README.md\n", stderr);
  return code;
}
