#include "shell/win32/widgets/melody_view.h"

#include <cmath>

#include "platform/win32/wide_text.h"
#include "shell/win32/hook.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

using Gdiplus::REAL;

constexpr double kShortestNote = 18;  // pixels at 96 dpi: a short note can still be told and named
constexpr double kMostPixelsPerMs = 0.12;
constexpr int kNoteHeight = 12;
constexpr int kStaffLines = 5;
constexpr int kLeastSemitones = 12;
constexpr BYTE kNoteAlpha = 158;

double ShortestNote(const app::Drawing& drawing) {
  double shortest = drawing.length;
  for (const app::DrawnNote& note : drawing.notes) {
    shortest = note.length > 0 ? std::min(shortest, note.length) : shortest;
  }
  return shortest;
}

}  // namespace

MelodyView::MelodyView(HWND parent, const Theme& theme)
    : window_(MakeBareWindow(parent, WS_TABSTOP | WS_HSCROLL)), theme_(theme) {
  ShowScrollBar(window_, SB_HORZ, FALSE);
  HookWindow(window_, [this](HWND, UINT message, WPARAM wide, LPARAM data) {
    return Handle(message, wide, data);
  });
}

void MelodyView::SetDrawing(const app::Drawing& drawing, const std::string& words,
                            const std::wstring& invitation) {
  if (drawing.notes == drawing_.notes && invitation == invitation_) {
    return;  // where it was scrolled to, and the sounding note, stay
  }
  drawing_ = drawing;
  invitation_ = invitation;
  sounding_ = -1;
  scrolled_ = 0;
  SetText(window_, words);
  PlaceScrollBar();
  InvalidateRect(window_, nullptr, FALSE);
}

void MelodyView::SetPosition(double ms) {
  const int sounding = ms < 0 ? -1 : app::NoteAt(drawing_, ms);
  if (sounding == sounding_) {
    return;
  }
  sounding_ = sounding;
  if (sounding >= 0) {
    const auto box = NoteBox(drawing_.notes[static_cast<std::size_t>(sounding)]);
    const auto staff = Staff();
    if (box.GetRight() > staff.GetRight() || box.X < staff.X) {
      ScrollTo(scrolled_ + static_cast<int>(box.X - staff.X) - theme_.Px(6 * kGrid));
    }
  }
  InvalidateRect(window_, nullptr, FALSE);
}

std::optional<LRESULT> MelodyView::Handle(UINT message, WPARAM wide, LPARAM) {
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
      PlaceScrollBar();
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
      ScrollTo(scrolled_ - GET_WHEEL_DELTA_WPARAM(wide));
      return 0;
    case WM_HSCROLL:
      Scroll(LOWORD(wide));
      return 0;
    default:
      break;
  }
  return std::nullopt;
}

int MelodyView::Width() const {
  RECT area{};
  GetClientRect(window_, &area);
  return area.right;
}

Gdiplus::RectF MelodyView::Staff() const {
  RECT area{};
  GetClientRect(window_, &area);
  const auto side = static_cast<REAL>(theme_.Px(12)), top = static_cast<REAL>(theme_.Px(20));
  const auto bottom = static_cast<REAL>(theme_.Px(kGrid));
  return {side, top, static_cast<REAL>(area.right) - 2 * side,
          static_cast<REAL>(area.bottom) - top - bottom};
}

// The whole melody in view where its shortest note stays legible, else as long as it takes.
double MelodyView::PixelsPerMs() const {
  if (drawing_.length <= 0) {
    return 0;
  }
  const double scale = theme_.dpi / 96.0;
  const double fitting = static_cast<double>(Staff().Width) / drawing_.length;
  const double legible = scale * kShortestNote / ShortestNote(drawing_);
  return std::max(fitting, std::min(legible, scale * kMostPixelsPerMs));
}

void MelodyView::PlaceScrollBar() {
  const int wanted = static_cast<int>(std::ceil(PixelsPerMs() * drawing_.length));
  const int page = static_cast<int>(Staff().Width);
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  info.nMax = wanted > page + 1 ? wanted - 1 : 0;
  info.nPage = static_cast<UINT>(std::max(page, 1));
  info.nPos = scrolled_;
  ShowScrollBar(window_, SB_HORZ, info.nMax > 0);
  SetScrollInfo(window_, SB_HORZ, &info, TRUE);
  ScrollTo(scrolled_);
}

void MelodyView::ScrollTo(int position) {
  const int wanted = static_cast<int>(std::ceil(PixelsPerMs() * drawing_.length));
  scrolled_ = std::clamp(position, 0, std::max(0, wanted - static_cast<int>(Staff().Width)));
  SetScrollPos(window_, SB_HORZ, scrolled_, TRUE);
  InvalidateRect(window_, nullptr, FALSE);
}

void MelodyView::Scroll(WORD how) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  GetScrollInfo(window_, SB_HORZ, &info);
  const int page = static_cast<int>(info.nPage), step = theme_.Px(6 * kGrid);
  switch (how) {
    case SB_LINELEFT:
      return ScrollTo(scrolled_ - step);
    case SB_LINERIGHT:
      return ScrollTo(scrolled_ + step);
    case SB_PAGELEFT:
      return ScrollTo(scrolled_ - page);
    case SB_PAGERIGHT:
      return ScrollTo(scrolled_ + page);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      return ScrollTo(info.nTrackPos);
    default:
      break;
  }
}

Gdiplus::RectF MelodyView::NoteBox(const app::DrawnNote& note) const {
  const auto staff = Staff();
  const double height = theme_.Px(kNoteHeight);
  const int spread = std::max(kLeastSemitones, drawing_.highest - drawing_.lowest);
  const double middle = (drawing_.highest + drawing_.lowest) / 2.0;
  const double step = (static_cast<double>(staff.Height) - height) / spread;
  const double centre = static_cast<double>(staff.Y + staff.Height / 2);
  const double y = centre - (note.pitch - middle) * step - height / 2;
  const double x = static_cast<double>(staff.X) + note.start * PixelsPerMs() - scrolled_;
  return {static_cast<REAL>(x), static_cast<REAL>(y),
          static_cast<REAL>(std::max(3.0, note.length * PixelsPerMs() - 2)),
          static_cast<REAL>(height)};
}

void MelodyView::Paint() {
  const BufferedPaint paint(window_);
  RECT area = paint.area();
  FillRect(paint.get(), &area, theme_.windowBrush.get());
  const bool focus = GetFocus() == window_;
  RoundedBox(paint.get(), area, theme_.Px(kRadius), theme_.colours.card,
             focus ? theme_.colours.accent : theme_.colours.border, theme_.Px(focus ? 2 : 1));
  Gdiplus::Graphics graphics(paint.get());
  graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
  InflateRect(&area, -theme_.Px(2), -theme_.Px(2));
  IntersectClipRect(paint.get(), area.left, area.top, area.right, area.bottom);
  graphics.SetClip(
      Gdiplus::Rect(area.left, area.top, area.right - area.left, area.bottom - area.top));
  PaintGround(graphics);
  if (drawing_.notes.empty()) {
    InflateRect(&area, -theme_.Px(kPageMargin), -theme_.Px(kGrid));
    Words(paint.get(), invitation_, area, theme_.body.get(), theme_.colours.muted,
          DT_CENTER | DT_VCENTER | DT_WORDBREAK | DT_NOPREFIX);
    return;
  }
  for (std::size_t i = 0; i < drawing_.notes.size(); ++i) {
    if (!drawing_.notes[i].pause) {
      PaintNote(graphics, paint.get(), drawing_.notes[i], static_cast<int>(i) == sounding_);
    }
  }
}

void MelodyView::PaintGround(Gdiplus::Graphics& graphics) const {
  const auto staff = Staff();
  const auto width = static_cast<REAL>(Width());
  const Gdiplus::Pen faint(Colour(theme_.colours.border, drawing_.notes.empty() ? 90 : 178), 1);
  for (int line = 0; line < kStaffLines; ++line) {
    const REAL y = staff.Y + (static_cast<REAL>(line) + 0.5F) * staff.Height / kStaffLines;
    graphics.DrawLine(&faint, 0.0F, y, width, y);
  }
  if (drawing_.barLength <= 0) {
    return;
  }
  const Gdiplus::Pen bar(Colour(theme_.colours.border), 1);
  const int bars = static_cast<int>(std::ceil(drawing_.length / drawing_.barLength));
  for (int i = 0; i < bars; ++i) {
    const double at = i * drawing_.barLength * PixelsPerMs();
    const auto x = static_cast<REAL>(static_cast<double>(staff.X) + at - scrolled_ - 1);
    if (x > -2 && x < width) {
      graphics.DrawLine(&bar, x, staff.Y - static_cast<REAL>(theme_.Px(kGrid)), x,
                        staff.GetBottom());
    }
  }
}

void MelodyView::PaintNote(Gdiplus::Graphics& graphics, HDC context, const app::DrawnNote& note,
                           bool sounds) const {
  const auto box = NoteBox(note);
  if (box.GetRight() < 0 || box.X > static_cast<REAL>(Width())) {
    return;
  }
  const COLORREF ink = sounds ? theme_.colours.accent : theme_.colours.text;
  const Gdiplus::Color paint = Colour(ink, sounds ? 255 : kNoteAlpha);
  if (note.outside) {
    const Gdiplus::HatchBrush hatch(Gdiplus::HatchStyleWideUpwardDiagonal, paint,
                                    Colour(theme_.colours.card));
    const Gdiplus::Pen frame(paint, 1.25F);
    graphics.FillRectangle(&hatch, box);
    graphics.DrawRectangle(&frame, box);
  } else {
    const RECT place{static_cast<LONG>(box.X), static_cast<LONG>(box.Y),
                     static_cast<LONG>(box.GetRight()), static_cast<LONG>(box.GetBottom())};
    const int radius = std::min(theme_.Px(4), static_cast<int>(box.Width / 2));
    RoundedBox(context, place, std::max(radius, 1),
               sounds ? ink : Blend(ink, theme_.colours.card, kNoteAlpha / 255.0), ink, 0);
  }
  if (note.dotted) {
    const Gdiplus::SolidBrush dot(Colour(ink));
    const auto size = static_cast<REAL>(theme_.Px(4));
    graphics.FillEllipse(&dot, box.GetRight() - size, box.Y - 1.5F * size, size, size);
  }
  const std::wstring name = platform::ToWide(note.name);
  const HFONT font = sounds ? theme_.bold.get() : theme_.small.get();
  if (static_cast<REAL>(TextWidth(font, name)) <= box.Width + static_cast<REAL>(theme_.Px(6))) {
    const auto left = static_cast<LONG>(box.X), bottom = static_cast<LONG>(box.Y) - 1;
    Words(context, name, {left, bottom - theme_.line, left + 2 * theme_.line, bottom}, font, ink,
          DT_LEFT | DT_BOTTOM | DT_SINGLELINE | DT_NOPREFIX | DT_NOCLIP);
  }
}

}  // namespace tonadex::shell
