#include "TestDialog.h"

#include <windows.h>
#include <commctrl.h>
#include <ztsnmp/SNMPManager.h>

#include "MainWindow_win.h"
#include "SystemLibrary_win.h"
#include "resource.h"

namespace zt {
namespace {

// The common controls that the dialog's own manifest asks for, while it lives. Without them the dialog only looks
// older.
class CommonControls {
 public:
  CommonControls() {
    ACTCTXW context = {};
    context.cbSize = sizeof(context);
    context.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    context.hModule = GetModuleHandleW(nullptr);
    context.lpResourceName = MAKEINTRESOURCEW(IDM_COMMON_CONTROLS);
    context_ = CreateActCtxW(&context);
    active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_);
    // By its bare name, so that the context leads to the version that was asked for.
    library_ = LoadSystemLibrary(L"comctl32.dll");
    INITCOMMONCONTROLSEX classes = {sizeof(classes),
                                    ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES | ICC_PROGRESS_CLASS | ICC_STANDARD_CLASSES};
    if (const auto init = FindFunction<decltype(InitCommonControlsEx)>(library_.Get(), "InitCommonControlsEx")) {
      init(&classes);
    }
  }
  ~CommonControls() {
    if (active_) DeactivateActCtx(0, cookie_);
    if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
  }
  CommonControls(const CommonControls&) = delete;
  CommonControls& operator=(const CommonControls&) = delete;

 private:
  LibraryHandle library_;
  HANDLE context_ = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

struct SnmpLibrary {
  SnmpLibrary() : started(SNMPStartup() == 0) {}
  ~SnmpLibrary() {
    if (started) SNMPCleanup();
  }
  SnmpLibrary(const SnmpLibrary&) = delete;
  SnmpLibrary& operator=(const SnmpLibrary&) = delete;
  bool started;
};

}  // namespace

void ShowTestDialog(const TestDialogStart& start) {
  const SnmpLibrary snmp;
  const CommonControls controls;
  const LibraryHandle richText = LoadSystemLibrary(L"msftedit.dll");
  MainWindow window(start);
  if (!window.Run()) {
    MessageBoxW(nullptr, L"The test dialog cannot be shown.", L"TOVAgent", MB_OK | MB_ICONERROR);
  }
}

}  // namespace zt
