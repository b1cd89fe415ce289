#include "AgreementWindow.h"

#include "ProtectionAgreementUI.h"
#include "UA.h"

namespace {

// Posted to the window by itself, so that it is handled after the messages that are waiting.
constexpr UINT kFitToDisplay = WM_APP;

// The common controls that the library's manifest asks for, while it lives. Without them (an old system) the controls
// only look older.
class CommonControls {
 public:
  explicit CommonControls(HMODULE library) {
    ACTCTXW context = {};
    context.cbSize = sizeof(context);
    context.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    context.hModule = library;
    context.lpResourceName = MAKEINTRESOURCEW(2);
    context_ = CreateActCtxW(&context);
    active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_);
  }
  ~CommonControls() {
    if (active_) DeactivateActCtx(0, cookie_);
    if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
  }
  CommonControls(const CommonControls&) = delete;
  CommonControls& operator=(const CommonControls&) = delete;

 private:
  HANDLE context_ = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

class AgreementWindow {
 public:
  AgreementWindow(const AgreementTexts& texts, const std::wstring& queue) : texts_(texts), queue_(queue) {}
  ~AgreementWindow() {
    if (headingFont_) DeleteObject(headingFont_);
  }
  AgreementWindow(const AgreementWindow&) = delete;
  AgreementWindow& operator=(const AgreementWindow&) = delete;

  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) SetWindowLongPtrW(window, DWLP_USER, lParam);
    auto* self = reinterpret_cast<AgreementWindow*>(GetWindowLongPtrW(window, DWLP_USER));
    return self ? self->Handle(window, message, wParam, lParam) : FALSE;
  }

 private:
  INT_PTR Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
      case WM_INITDIALOG:
        Fill(window);
        FitToDisplay(window);
        // On the text and not on a button, so that keys typed at the moment when the window comes up decide nothing.
        SetFocus(GetDlgItem(window, IDC_AGREEMENT));
        return FALSE;
      case WM_DPICHANGED:
        // The system gives all controls a font for the new display as soon as this message is done with.
        PostMessageW(window, kFitToDisplay, 0, 0);
        return FALSE;
      case kFitToDisplay:
        FitToDisplay(window);
        return TRUE;
      case WM_CTLCOLORSTATIC:
        return ColourText(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
      case WM_COMMAND:
        return Decide(window, LOWORD(wParam));
      default:
        return FALSE;
    }
  }

  void Fill(HWND window) const {
    SetWindowTextW(window, texts_.String(IDS_TITLE).c_str());
    SendMessageW(window, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(LoadIconW(nullptr, IDI_QUESTION)));
    for (const int control : {IDC_QUESTION, IDC_AGREE, IDC_DISAGREE, IDC_DONT_REPORT}) {
      SetDlgItemTextW(window, control, texts_.String(static_cast<unsigned>(control)).c_str());
    }
    std::wstring printer = texts_.String(IDC_PRINTER);
    if (const std::size_t at = printer.find(L"%s"); at != printer.npos) printer.replace(at, 2, queue_);
    SetDlgItemTextW(window, IDC_PRINTER, printer.c_str());
    SetDlgItemTextW(window, IDC_AGREEMENT, texts_.Agreement().c_str());
  }

  // What the system does not size with the dialog, for the density of this display.
  void FitToDisplay(HWND window) {
    RECT margin = {4, 0, 0, 0};  // dialog units
    MapDialogRect(window, &margin);
    SendDlgItemMessageW(window, IDC_AGREEMENT, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN,
                        MAKELPARAM(margin.left, margin.left));

    LOGFONTW font = {};
    if (!GetObjectW(reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof(font), &font)) return;
    font.lfWeight = FW_BOLD;
    const HFONT old = headingFont_;
    headingFont_ = CreateFontIndirectW(&font);
    SendDlgItemMessageW(window, IDC_PRINTER, WM_SETFONT, reinterpret_cast<WPARAM>(headingFont_), TRUE);
    if (old) DeleteObject(old);
  }

  // The agreement is read like a page, not greyed out like a field that cannot be edited.
  static INT_PTR ColourText(HDC device, HWND control) {
    if (GetDlgCtrlID(control) != IDC_AGREEMENT) return FALSE;
    SetTextColor(device, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(device, GetSysColor(COLOR_WINDOW));
    return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
  }

  static INT_PTR Decide(HWND window, WORD control) {
    switch (control) {
      case IDC_AGREE:
        return EndDialog(window, UA_AGREED);
      case IDC_DISAGREE:
        return EndDialog(window, UA_DISAGREED);
      case IDC_DONT_REPORT:
        return EndDialog(window, UA_DISAGREED_UNREPORTED);
      default:
        return FALSE;
    }
  }

  const AgreementTexts& texts_;
  const std::wstring& queue_;
  HFONT headingFont_ = nullptr;
};

}  // namespace

int ShowAgreementWindow(HMODULE library, const AgreementTexts& texts, const std::wstring& queue) {
  const CommonControls controls(library);
  AgreementWindow window(texts, queue);
  const INT_PTR answer = DialogBoxParamW(library, MAKEINTRESOURCEW(IDD_AGREEMENT), nullptr, &AgreementWindow::Procedure,
                                         reinterpret_cast<LPARAM>(&window));
  return answer > 0 ? static_cast<int>(answer) : UA_DISAGREED_UNREPORTED;
}
