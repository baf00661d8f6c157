#include "shell/win32/widgets/shape_view.h"

#include <windowsx.h>

#include <cmath>
#include <utility>

#include "platform/win32/send.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

COLORREF ColourOf(app::Ink ink, const Colours& c) {
  const COLORREF colours[] = {c.text,       c.muted,         c.faint,     c.border,
                              c.card,       c.window,        c.accent,    c.accentText,
                              c.accentWash, c.displayGround, c.displayInk};
  return colours[static_cast<std::size_t>(ink)];
}

}  // namespace

ShapeView::ShapeView(HWND parent, int id, const Theme& theme)
    : window_(MakeBareWindow(parent, WS_TABSTOP, id)), theme_(theme) {
  HookWindow(window_,
             [this](HWND, UINT message, WPARAM, LPARAM lParam) { return Handle(message, lParam); });
}

void ShapeView::SetPicture(const Source& source, std::string_view spoken) {
  source_ = source;
  if (TextOf(window_) != spoken) {
    SetText(window_, spoken);
    NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, window_, OBJID_CLIENT, CHILDID_SELF);
  }
  Update();
}

void ShapeView::Update() {
  const RECT area = ClientArea(window_);
  const double scale = theme_.dpi / 96.0;
  app::Picture picture =
      source_ ? source_(area.right / scale, area.bottom / scale) : app::Picture();
  if (picture != picture_) {
    picture_ = std::move(picture);
    InvalidateRect(window_, nullptr, FALSE);
  }
}

std::optional<LRESULT> ShapeView::Handle(UINT message, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
      Update();
      [[fallthrough]];
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateRect(window_, nullptr, FALSE);
      return 0;
    case WM_LBUTTONDOWN:
      hit_ = app::HitAt(picture_, GET_X_LPARAM(lParam) * 96.0 / theme_.dpi,
                        GET_Y_LPARAM(lParam) * 96.0 / theme_.dpi);
      SetFocus(window_);
      platform::Send(GetParent(window_), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(window_), BN_CLICKED),
                     window_);
      return 0;
    default:
      return std::nullopt;
  }
}

void ShapeView::Paint() {
  const BufferedPaint paint(window_);
  PaintCard(window_, paint.get(), theme_);
  for (const app::Shape& shape : picture_) {
    PaintShape(paint.get(), shape);
  }
}

void ShapeView::PaintShape(HDC context, const app::Shape& shape) const {
  const auto pixels = [this](double distance) {
    return static_cast<LONG>(std::lround(distance * theme_.dpi / 96.0));
  };
  const RECT box = {pixels(shape.box.x), pixels(shape.box.y), pixels(shape.box.right()),
                    pixels(shape.box.bottom())};
  const COLORREF ink = ColourOf(shape.ink, theme_.colours);
  const int radius = std::max(1, static_cast<int>(pixels(shape.radius)));
  if (shape.kind == app::Shape::Kind::kText) {
    PaintText(context, shape, box, ink);
  } else if (shape.kind == app::Shape::Kind::kFilled) {
    RoundedBox(context, box, radius, ink, ink, 0);
  } else {
    RoundedFrame(context, box, radius, ink, static_cast<int>(pixels(shape.size)));
  }
}

void ShapeView::PaintText(HDC context, const app::Shape& shape, const RECT& box,
                          COLORREF ink) const {
  LOGFONTW type{};
  GetObjectW((shape.mono ? theme_.mono : theme_.body).get(), sizeof type, &type);
  type.lfWeight = shape.bold ? FW_SEMIBOLD : FW_NORMAL;
  const std::wstring text = platform::ToWide(shape.text);
  const auto sized = [&type](double size) {
    type.lfHeight = -std::max(1L, std::lround(size));
    return Font(CreateFontIndirectW(&type));
  };
  const double size = shape.size * theme_.dpi / 96.0;
  Font font = sized(size);
  if (const int width = TextWidth(font.get(), text); width > box.right - box.left) {
    font = sized(std::floor(size * (box.right - box.left) / width));
  }
  constexpr UINT kAligns[] = {DT_LEFT, DT_CENTER, DT_RIGHT};
  Words(context, text, box, font.get(), ink,
        kAligns[static_cast<std::size_t>(shape.align)] | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX |
            DT_NOCLIP);
}

}  // namespace tonadex::shell
