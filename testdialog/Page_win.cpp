#include "Page_win.h"

#include <windows.h>

#include "SystemLibrary_win.h"
#include "WindowDensity_win.h"

namespace zt {
namespace {

// The page lies on a tab, which has a background of its own where windows have themes.
void UseTabBackground(HWND window) {
  using EnableThemeDialogTextureFunction = HRESULT WINAPI(HWND, DWORD flags);
  constexpr DWORD kEnableTab = 6;
  const auto enable =
      FindFunction<EnableThemeDialogTextureFunction>(GetModuleHandleW(L"uxtheme.dll"), "EnableThemeDialogTexture");
  if (enable) enable(window, kEnableTab);
}

}  // namespace

// The messages of a page's child dialog.
class PageWindow {
 public:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
      SetWindowLongPtrW(window, DWLP_USER, lParam);
      auto& page = *reinterpret_cast<Page*>(lParam);
      page.window_ = window;
      LeaveScalingToProgram(window);
      UseTabBackground(window);
      page.layout_.Learn(window, page.anchors_);
      page.Init();
      return FALSE;
    }
    auto* page = reinterpret_cast<Page*>(GetWindowLongPtrW(window, DWLP_USER));
    if (!page) return FALSE;
    switch (message) {
      case WM_SIZE:
        page->Arrange();
        return FALSE;
      case WM_COMMAND:
        // Esc and Enter in a field of the page are meant for the whole window.
        if (LOWORD(wParam) == IDCANCEL || LOWORD(wParam) == IDOK) {
          SendMessageW(GetParent(window), message, wParam, lParam);
        } else {
          page->Command(LOWORD(wParam), HIWORD(wParam));
        }
        return TRUE;
      case WM_NOTIFY:
        page->Notify(*reinterpret_cast<const NMHDR*>(lParam));
        return FALSE;
      case WM_DRAWITEM:
        page->Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
      case WM_CLOSE:
        // A field of several lines sends it for Esc.
        SendMessageW(GetParent(window), WM_COMMAND, IDCANCEL, 0);
        return TRUE;
      default:
        return FALSE;
    }
  }
};

bool Page::Create(HWND parent) {
  return CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(dialog_), parent, &PageWindow::Procedure,
                            reinterpret_cast<LPARAM>(this)) != nullptr;
}

void Page::Arrange() {
  layout_.Arrange(window_);
  AfterArranging();
}

void Page::EnableControl(int number, bool on) const { EnableWindow(Control(number), on); }

bool Page::IsConfirmed(const std::wstring& question, const wchar_t* title) const {
  return MessageBoxW(GetParent(window_), question.c_str(), title, MB_OKCANCEL | MB_ICONWARNING | MB_DEFBUTTON2) == IDOK;
}

}  // namespace zt
