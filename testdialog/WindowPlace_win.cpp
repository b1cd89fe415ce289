#include "WindowPlace_win.h"

#include <windows.h>

#include <algorithm>

#include "WindowDensity_win.h"

namespace zt {
namespace {

constexpr wchar_t kKey[] = L"Software\\Tressil\\ZOLT\\TestDialog";
constexpr wchar_t kValue[] = L"Place";

// What the registry holds.
struct StoredPlace {
  RECT normal;  // in the coordinates of WINDOWPLACEMENT
  DWORD maximised;
  DWORD density;  // of the display on which it stood
};

// Moves and cuts the rectangle so that it lies in the work area.
RECT FitInto(RECT rect, const RECT& area) {
  const LONG width = std::min(rect.right - rect.left, area.right - area.left);
  const LONG height = std::min(rect.bottom - rect.top, area.bottom - area.top);
  const LONG left = std::clamp(rect.left, area.left, area.right - width);
  const LONG top = std::clamp(rect.top, area.top, area.bottom - height);
  return {left, top, left + width, top + height};
}

bool IsSensible(const RECT& rect) {
  constexpr LONG kFarthest = 100000;
  for (const LONG edge : {rect.left, rect.top, rect.right, rect.bottom}) {
    if (edge < -kFarthest || edge > kFarthest) return false;
  }
  return rect.right > rect.left && rect.bottom > rect.top;
}

}  // namespace

bool RestorePlace(HWND window) {
  RegistryHandle key;
  StoredPlace stored = {};
  DWORD size = sizeof(stored);
  DWORD type = 0;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_QUERY_VALUE, key.Receive()) != ERROR_SUCCESS ||
      RegQueryValueExW(key.Get(), kValue, nullptr, &type, reinterpret_cast<BYTE*>(&stored), &size) != ERROR_SUCCESS ||
      type != REG_BINARY || size != sizeof(stored) || !IsSensible(stored.normal)) {
    return false;
  }
  const HMONITOR monitor = MonitorFromRect(&stored.normal, MONITOR_DEFAULTTONULL);
  MONITORINFO information = {};
  information.cbSize = sizeof(information);
  if (!monitor || !GetMonitorInfoW(monitor, &information)) return false;

  // First there, as the density is that of the monitor; then as large as it was, should that have changed meanwhile.
  RECT place = FitInto(stored.normal, information.rcWork);
  SetWindowPos(window, nullptr, place.left, place.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  if (const int density = DensityOf(window); stored.density > 0 && stored.density < 10000) {
    const int before = static_cast<int>(stored.density);
    place.right = place.left + MulDiv(place.right - place.left, density, before);
    place.bottom = place.top + MulDiv(place.bottom - place.top, density, before);
    place = FitInto(place, information.rcWork);
  }
  SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
  if (stored.maximised == 1) ShowWindow(window, SW_MAXIMIZE);
  return true;
}

void StorePlace(HWND window) {
  WINDOWPLACEMENT placement = {};
  placement.length = sizeof(placement);
  RegistryHandle key;
  if (!GetWindowPlacement(window, &placement) || RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_SET_VALUE,
                                                                 nullptr, key.Receive(), nullptr) != ERROR_SUCCESS) {
    return;
  }
  const StoredPlace stored = {placement.rcNormalPosition, IsZoomed(window) ? 1UL : 0UL,
                              static_cast<DWORD>(DensityOf(window))};
  RegSetValueExW(key.Get(), kValue, 0, REG_BINARY, reinterpret_cast<const BYTE*>(&stored), sizeof(stored));
}

}  // namespace zt
