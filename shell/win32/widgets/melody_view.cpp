#include "shell/win32/widgets/melody_view.h"

#include "platform/win32/wide_text.h"
#include "shell/win32/hook.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {

MelodyView::MelodyView(HWND parent, int id, const Theme& theme)
    : window_(MakeBareWindow(parent, WS_TABSTOP | WS_HSCROLL, id)), theme_(theme) {
  ShowScrollBar(window_, SB_HORZ, FALSE);
  HookWindow(window_, [this](HWND, UINT message, WPARAM wide, LPARAM data) {
    return Handle(message, wide, data);
  });
}

void MelodyView::SetDrawing(const app::Drawing& drawing, const std::wstring& invitation) {
  if (drawing.notes == picture_.drawing().notes && invitation == invitation_) {
    Show(picture_.Show(drawing.shown));
    return;  // where it was scrolled to, and the sounding note, stay
  }
  invitation_ = invitation;
  picture_.SetDrawing(drawing);
  SetText(window_, app::DrawingInWords(drawing));
  FitPicture();
  InvalidateRect(window_, nullptr, FALSE);
}

void MelodyView::Show(bool changed) {
  if (changed) {
    ScrollTo(picture_.scrolled());
  }
}

std::optional<LRESULT> MelodyView::Handle(UINT message, WPARAM wide, LPARAM) {
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
      FitPicture();
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateRect(window_, nullptr, FALSE);
      return 0;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_LBUTTONDOWN:
      SetFocus(window_);
      return 0;
    case WM_KEYDOWN:
      if (wide == VK_LEFT || wide == VK_RIGHT) {
        Scroll(wide == VK_LEFT ? SB_LINELEFT : SB_LINERIGHT);
        return 0;
      }
      break;
    case WM_MOUSEWHEEL:
      ScrollTo(picture_.scrolled() - GET_WHEEL_DELTA_WPARAM(wide));
      return 0;
    case WM_HSCROLL:
      Scroll(LOWORD(wide));
      return 0;
    default:
      break;
  }
  return std::nullopt;
}

Gdiplus::RectF MelodyView::RectOf(const app::Box& box) const {
  using Gdiplus::REAL;
  const double scale = Scale();
  return {static_cast<REAL>(box.x * scale), static_cast<REAL>(box.y * scale),
          static_cast<REAL>(box.width * scale), static_cast<REAL>(box.height * scale)};
}

// The client area leaves the scroll bar out.
void MelodyView::FitPicture() {
  const RECT area = ClientArea(window_);
  picture_.SetSize({area.right / Scale(), area.bottom / Scale(),
                    TextWidth(theme_.small.get(), L"sol") / Scale()});
  const double page = picture_.Page(), overflow = picture_.Overflow();
  auto info = Sized<SCROLLINFO>();
  info.fMask = SIF_RANGE | SIF_PAGE;
  info.nMax = overflow > 0 ? static_cast<int>(page + overflow) - 1 : 0;
  info.nPage = static_cast<UINT>(page);
  ShowScrollBar(window_, SB_HORZ, overflow > 0);
  SetScrollInfo(window_, SB_HORZ, &info, TRUE);
  ScrollTo(picture_.scrolled());
}

void MelodyView::ScrollTo(double position) {
  picture_.ScrollTo(position);
  SetScrollPos(window_, SB_HORZ, static_cast<int>(picture_.scrolled()), TRUE);
  InvalidateRect(window_, nullptr, FALSE);
}

void MelodyView::Scroll(WORD how) {
  const double at = picture_.scrolled(), step = app::MelodyPicture::kScrollStep;
  auto info = Sized<SCROLLINFO>();
  switch (how) {
    case SB_LINELEFT:
      return ScrollTo(at - step);
    case SB_LINERIGHT:
      return ScrollTo(at + step);
    case SB_PAGELEFT:
      return ScrollTo(at - picture_.Page());
    case SB_PAGERIGHT:
      return ScrollTo(at + picture_.Page());
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      info.fMask = SIF_TRACKPOS;
      GetScrollInfo(window_, SB_HORZ, &info);
      return ScrollTo(info.nTrackPos);
    default:
      break;
  }
}

void MelodyView::Paint() {
  const BufferedPaint paint(window_);
  RECT area = paint.area();
  PaintCard(window_, paint.get(), theme_);
  Gdiplus::Graphics graphics(paint.get());
  graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
  InflateRect(&area, -theme_.Px(2), -theme_.Px(2));
  IntersectClipRect(paint.get(), area.left, area.top, area.right, area.bottom);
  graphics.SetClip(
      Gdiplus::Rect(area.left, area.top, area.right - area.left, area.bottom - area.top));
  for (const app::PictureMark& mark : picture_.Marks()) {
    PaintMark(graphics, paint.get(), mark);
  }
  if (picture_.drawing().notes.empty()) {
    InflateRect(&area, -theme_.Px(kPageMargin), -theme_.Px(kGrid));
    Words(paint.get(), invitation_, area, theme_.body.get(), theme_.colours.muted,
          DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
  }
}

void MelodyView::PaintMark(Gdiplus::Graphics& graphics, HDC context,
                           const app::PictureMark& mark) const {
  using Shape = app::PictureMark::Shape;
  const auto& colours = theme_.colours;
  const auto box = RectOf(mark.box);
  const COLORREF ink = mark.shape == Shape::kLine ? colours.border
                       : mark.sounds              ? colours.accent
                                                  : colours.text;
  const Gdiplus::Color paint = Colour(ink, static_cast<int>(255 * mark.opacity));
  const Gdiplus::SolidBrush brush(paint);
  switch (mark.shape) {
    case Shape::kLine: {
      const Gdiplus::Pen pen(paint, 1);
      graphics.DrawLine(&pen, box.X, box.Y, box.GetRight(), box.GetBottom());
      break;
    }
    case Shape::kHatched: {
      const Gdiplus::HatchBrush hatch(Gdiplus::HatchStyleWideUpwardDiagonal, paint,
                                      Colour(colours.card));
      const Gdiplus::Pen frame(paint, 1.25F);
      graphics.FillRectangle(&hatch, box);
      graphics.DrawRectangle(&frame, box);
      break;
    }
    case Shape::kNote: {
      const RECT place{static_cast<LONG>(box.X), static_cast<LONG>(box.Y),
                       static_cast<LONG>(box.GetRight()), static_cast<LONG>(box.GetBottom())};
      const int radius =
          std::min(static_cast<int>(app::kNoteRadius * Scale()), static_cast<int>(box.Width / 2));
      RoundedBox(context, place, std::max(radius, 1), Blend(ink, colours.card, mark.opacity), 0, 0);
      break;
    }
    case Shape::kDot:
      graphics.FillEllipse(&brush, box);
      break;
    case Shape::kNoteName:
      PaintName(context, mark, box);
  }
}

void MelodyView::PaintName(HDC context, const app::PictureMark& mark,
                           const Gdiplus::RectF& box) const {
  const std::wstring name = platform::ToWide(mark.name);
  const HFONT font = mark.sounds ? theme_.bold.get() : theme_.small.get();
  if (TextWidth(font, name) <= static_cast<int>(box.Width)) {
    const auto left = static_cast<LONG>(box.X), bottom = static_cast<LONG>(box.GetBottom()) + 2;
    Words(context, name, {left, bottom - theme_.line, left + 2 * theme_.line, bottom}, font,
          mark.sounds ? theme_.colours.accent : theme_.colours.text,
          DT_LEFT | DT_BOTTOM | DT_SINGLELINE | DT_NOPREFIX | DT_NOCLIP);
  }
}

}  // namespace tonadex::shell
