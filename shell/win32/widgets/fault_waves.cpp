#include "shell/win32/widgets/fault_waves.h"

#include <windowsx.h>

#include <algorithm>

#include "platform/win32/send.h"
#include "shell/win32/hook.h"

namespace tonadex::shell {
namespace {

using platform::Send;

// After these messages the control has painted a part of itself.
bool Paints(UINT message) {
  constexpr UINT kPainting[] = {WM_PAINT,      WM_SETFOCUS,  WM_KILLFOCUS,  WM_KEYDOWN,
                                WM_CHAR,       WM_MOUSEMOVE, WM_LBUTTONUP,  WM_VSCROLL,
                                WM_MOUSEWHEEL, WM_TIMER,     WM_LBUTTONDOWN};
  return std::ranges::find(kPainting, message) != std::end(kPainting);
}

// Pixels; `top` is the wave's upper edge.
void DrawWave(HDC context, int left, int right, int top, int height) {
  std::vector<POINT> points;
  for (int x = left; x <= right; x += height) {
    points.push_back({x, points.size() % 2 == 0 ? top + height : top});
  }
  Polyline(context, points.data(), static_cast<int>(points.size()));
}

}  // namespace

FaultWaves::FaultWaves(HWND edit, const Theme& theme) : edit_(edit), theme_(theme) {
  HookWindow(edit,
             [this](HWND window, UINT message, WPARAM wide, LPARAM data) -> std::optional<LRESULT> {
               if (faults_.empty() || !Paints(message)) {
                 return std::nullopt;
               }
               const LRESULT result = DefSubclassProc(window, message, wide, data);
               Paint();
               return result;
             });
}

void FaultWaves::Show(const std::vector<core::TextRange>& faults) {
  if (faults.empty() && faults_.empty()) {
    return;
  }
  faults_ = faults;
  InvalidateRect(edit_, nullptr, TRUE);
}

void FaultWaves::Paint() const {
  HideCaret(edit_);
  const HDC context = GetDC(edit_);
  RECT visible{};
  Send(edit_, EM_GETRECT, 0, &visible);
  IntersectClipRect(context, visible.left, visible.top, visible.right, visible.bottom);
  const HGDIOBJ font = SelectObject(context, theme_.mono.get());
  const HPEN pen = CreatePen(PS_SOLID, theme_.Px(1), theme_.colours.bad);
  const HGDIOBJ before = SelectObject(context, pen);
  for (const core::TextRange& fault : faults_) {
    DrawUnder(context, fault, visible.bottom);
  }
  SelectObject(context, before);
  SelectObject(context, font);
  DeleteObject(pen);
  ReleaseDC(edit_, context);
  ShowCaret(edit_);
}

// A wave for each line of the range, from the first visible line to the bottom.
void FaultWaves::DrawUnder(HDC context, core::TextRange fault, int bottom) const {
  TEXTMETRICW metrics{};
  GetTextMetricsW(context, &metrics);
  const int end = static_cast<int>(fault.start + fault.length);
  const auto lineStart = [this](LRESULT line) {
    return static_cast<int>(Send(edit_, EM_LINEINDEX, line));
  };
  int at = std::max(static_cast<int>(fault.start), lineStart(Send(edit_, EM_GETFIRSTVISIBLELINE)));
  while (at >= 0 && at < end) {
    const LRESULT line = Send(edit_, EM_LINEFROMCHAR, at);
    const int lineEnd = lineStart(line) + static_cast<int>(Send(edit_, EM_LINELENGTH, at));
    const LRESULT place = Send(edit_, EM_POSFROMCHAR, at);
    if (GET_Y_LPARAM(place) > bottom) {
      return;
    }
    const int width = std::max(0, std::min(end, lineEnd) - at) * metrics.tmAveCharWidth;
    DrawWave(context, GET_X_LPARAM(place), GET_X_LPARAM(place) + width,
             GET_Y_LPARAM(place) + metrics.tmHeight - theme_.Px(2), theme_.Px(2));
    at = lineStart(line + 1);  // -1 behind the last
  }
}

}  // namespace tonadex::shell
