#include "shell/win32/widgets/busy_line.h"

#include "shell/win32/drawing.h"
#include "shell/win32/handles.h"
#include "shell/win32/hook.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

constexpr unsigned kPassMs = 1600;  // of the bar, from left to right
constexpr int kLine = 3;

void Paint(HWND window, const Theme& theme) {
  const BufferedPaint paint(window);
  RECT area = paint.area();
  Fill(paint.get(), area, theme.colours.accentWash);
  RECT line = area;
  line.bottom = area.top = theme.Px(kLine);
  Words(paint.get(), WindowText(window), area, theme.body.get(), theme.colours.text,
        DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  const int part = area.right / 4;
  const auto phase = static_cast<int>(GetTickCount64() % kPassMs);
  line.left = MulDiv(area.right + part, phase, kPassMs) - part;
  line.right = line.left + part;
  Fill(paint.get(), line, theme.colours.accent);
}

}  // namespace

HWND MakeBusyLine(HWND parent, int id, const Theme& theme) {
  const HWND line = MakeBareWindow(parent, 0, id);
  HookWindow(line, [&theme](HWND window, UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
    if (message == WM_PAINT) {
      Paint(window, theme);
      return 0;
    }
    return std::nullopt;
  });
  return line;
}

int BusyLineHeight(const Theme& theme) {
  return theme.line + theme.Px(2 * kGrid + kLine);
}

}  // namespace tonadex::shell
