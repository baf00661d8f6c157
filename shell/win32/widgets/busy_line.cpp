#include "shell/win32/widgets/busy_line.h"

#include "app/words.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/drawing.h"
#include "shell/win32/handles.h"
#include "shell/win32/hook.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

constexpr unsigned kPassMs = 1600;  // once from left to right
constexpr int kLine = 3;

}  // namespace

BusyLine::BusyLine(HWND parent, const Theme& theme)
    : window_(MakeBareWindow(parent, WS_VISIBLE)), theme_(theme) {
  HookWindow(window_, [this](HWND, UINT message, WPARAM, LPARAM data) -> std::optional<LRESULT> {
    if (message == WM_WINDOWPOSCHANGING && busy_) {
      KeepTall(*reinterpret_cast<WINDOWPOS*>(data));
    }
    if (message == WM_PAINT) {
      Paint();
      return 0;
    }
    return std::nullopt;
  });
}

int BusyLine::TallHeight() const {
  return theme_.smallLine + theme_.Px(kGrid + kLine);
}

void BusyLine::SetBusy(bool busy) {
  if (busy == busy_) {
    return;
  }
  RECT area{};
  GetClientRect(window_, &area);
  slim_ = busy ? area.bottom : slim_;
  busy_ = busy;
  SetText(window_, busy ? app::words::kWaiting : "");
  SetWindowPos(window_, HWND_TOP, 0, 0, area.right, busy ? TallHeight() : slim_,
               SWP_NOMOVE | SWP_NOACTIVATE);
  Step();
}

// Whatever height it is given while it waits comes true afterwards.
void BusyLine::KeepTall(WINDOWPOS& place) {
  if ((place.flags & SWP_NOSIZE) == 0 && place.cy != TallHeight()) {
    slim_ = place.cy;
    place.cy = TallHeight();
  }
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
    RECT words = area;
    words.left += theme_.Px(kPageMargin);
    words.bottom -= theme_.Px(kLine);
    Words(paint.get(), platform::ToWide(app::words::kWaiting), words, theme_.small.get(),
          theme_.colours.text, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    line.top = line.bottom - theme_.Px(kLine);
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
