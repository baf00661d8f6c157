#include "shell/win32/widgets/busy_line.h"

#include "shell/win32/handles.h"
#include "shell/win32/hook.h"

namespace tonadex::shell {
namespace {

constexpr unsigned kPassMs = 1600;  // once from left to right

}  // namespace

BusyLine::BusyLine(HWND parent, const Theme& theme)
    : window_(MakeBareWindow(parent, WS_VISIBLE)), theme_(theme) {
  HookWindow(window_, [this](HWND, UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
    if (message == WM_PAINT) {
      Paint();
      return 0;
    }
    return std::nullopt;
  });
}

void BusyLine::SetBusy(bool busy) {
  busy_ = busy;
  Step();
}

void BusyLine::Step() {
  InvalidateRect(window_, nullptr, FALSE);
}

void BusyLine::Paint() {
  const BufferedPaint paint(window_);
  const RECT area = paint.area();
  const Brush ground(CreateSolidBrush(busy_ ? theme_.colours.accentWash : theme_.colours.border));
  FillRect(paint.get(), &area, busy_ ? ground.get() : theme_.windowBrush.get());
  RECT line = area;
  if (busy_) {
    const int part = area.right / 4;
    const auto phase = static_cast<int>(GetTickCount64() % kPassMs);
    line.left = MulDiv(area.right + part, phase, kPassMs) - part;
    line.right = line.left + part;
    const Brush accent(CreateSolidBrush(theme_.colours.accent));
    FillRect(paint.get(), &line, accent.get());
  } else {
    line.bottom = line.top + theme_.Px(1);
    FillRect(paint.get(), &line, ground.get());
  }
}

}  // namespace tonadex::shell
