#include "shell/win32/widgets/phone_display.h"

#include <richedit.h>

#include <algorithm>
#include <map>

#include "platform/win32/rich_edit.h"
#include "platform/win32/send.h"
#include "platform/win32/system_services.h"
#include "platform/win32/wide_text.h"
#include "rtf/rtf_escape.h"
#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"

namespace tonadex::shell {
namespace {

using platform::Send;

constexpr int kPadding = 10;
constexpr double kLineSpacing = 1.15;

std::string ColourEntry(COLORREF colour) {
  return "\\red" + std::to_string(GetRValue(colour)) + "\\green" +
         std::to_string(GetGValue(colour)) + "\\blue" + std::to_string(GetBValue(colour)) + ";";
}

struct Change {
  std::size_t at;
  std::string_view words;
};

}  // namespace

PhoneDisplay::PhoneDisplay(HWND parent, int id, const Theme& theme)
    : window_(platform::MakeRichEdit(
          parent, WS_TABSTOP | WS_VSCROLL | ES_READONLY | ES_AUTOVSCROLL | ES_NOHIDESEL)),
      theme_(theme),
      display_([this](int pixels) { return MeasureType(pixels); }) {
  SetWindowLongPtrW(window_, GWLP_ID, id);
  Send(window_, EM_SETTARGETDEVICE, 0, 1);  // lines end where ours do
  ThemeChanged();
  HookWindow(window_, [this](HWND, UINT message, WPARAM wide, LPARAM data) {
    return Handle(message, wide, data);
  });
}

void PhoneDisplay::ThemeChanged() {
  Send(window_, EM_SETBKGNDCOLOR, 0, theme_.colours.displayGround);
  ApplyTheme(window_, theme_);
  display_.LayOut();
  Draw();
}

void PhoneDisplay::SetResult(const std::string& text, std::vector<app::ResultGroup> groups,
                             bool counted) {
  if (display_.SetResult(text, std::move(groups), counted)) {
    Draw();
  }
}

void PhoneDisplay::SetInvitation(const std::string& invitation) {
  if (invitation != invitation_) {
    invitation_ = invitation;
    Draw();
  }
}

void PhoneDisplay::SetPixelSize(int pixels) {
  if (display_.SetPixelSize(pixels)) {
    Draw();
  }
}

app::TypeMeasure PhoneDisplay::MeasureType(int pixels) const {
  const Font font(CreateFontW(-theme_.Px(pixels), 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE,
                              DEFAULT_CHARSET, 0, 0, 0, FIXED_PITCH, theme_.monoName.c_str()));
  constexpr int kSample = 50;
  const std::wstring sample(kSample, L'0');
  return {std::max(1, TextWidth(font.get(), sample)) / double{kSample},
          kLineSpacing * TextSize(font.get(), L"0", kAnyWidth).cy};
}

RECT PhoneDisplay::TextArea() const {
  RECT area = ClientArea(window_);
  InflateRect(&area, -theme_.Px(kPadding), -theme_.Px(kPadding));
  return area;
}

void PhoneDisplay::LayOut() {
  const RECT area = TextArea();
  const bool changed = display_.SetPlace(area.right - area.left, area.bottom - area.top);
  if (changed || display_.result().empty()) {
    Draw();
  } else {
    Send(window_, EM_SETRECT, 0, &area);
  }
}

void PhoneDisplay::Draw() {
  platform::SetRichEditSource(
      window_,
      Source(display_.result().empty() ? display_.Sentence(invitation_) : display_.shown()));
  // A scroll bar that came and went meanwhile has changed the area, and may have hidden the ends of
  // the lines.
  const RECT area = TextArea();
  Send(window_, EM_SETRECT, 0, &area);
  InvalidateRect(window_, nullptr, TRUE);
}

std::string PhoneDisplay::Source(const app::DisplayText& shown) const {
  std::vector<Change> changes;
  for (const app::TextRange& range : shown.held) {
    changes.push_back({range.from, "\\b "});
    changes.push_back({range.to, "\\b0 "});
  }
  for (const app::TextRange& range : shown.margin) {
    changes.push_back({range.from, "\\cf2 "});
    changes.push_back({range.to, "\\cf1 "});
  }
  std::ranges::stable_sort(changes, {}, &Change::at);

  // Half points: a pixel at 96 dpi is one and a half of them.
  std::string source = "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0\\fmodern\\fprq1 " +
                       platform::FromWide(theme_.monoName) + ";}}{\\colortbl;" +
                       ColourEntry(theme_.colours.displayInk) +
                       ColourEntry(theme_.colours.displayFaint) + "}\\f0\\b0\\cf1\\fs" +
                       std::to_string(PixelSize() * 3 / 2) + "\\sl276\\slmult1 ";
  std::size_t at = 0;
  for (const Change& change : changes) {
    source += rtf::Escaped(std::string_view(shown.text).substr(at, change.at - at));
    source += change.words;
    at = change.at;
  }
  return source + rtf::Escaped(std::string_view(shown.text).substr(at)) + "}";
}

std::optional<LRESULT> PhoneDisplay::Handle(UINT message, WPARAM wide, LPARAM data) {
  switch (message) {
    case WM_SIZE:
      DefSubclassProc(window_, message, wide, data);
      LayOut();
      return 0;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;  // Tab and Enter belong to the window
    case WM_COPY:
      CopySelection();
      return 0;
    case WM_KEYDOWN:
      if (GetKeyState(VK_CONTROL) < 0 && (wide == 'C' || wide == VK_INSERT)) {
        CopySelection();
        return 0;
      }
      if (GetKeyState(VK_SHIFT) >= 0 && GetKeyState(VK_CONTROL) >= 0 && MoveMark(wide)) {
        return 0;
      }
      break;
    case WM_MOUSEMOVE:
      if ((wide & MK_LBUTTON) == 0) {
        MarkAt({static_cast<short>(LOWORD(data)), static_cast<short>(HIWORD(data))});
      }
      break;
    case WM_LBUTTONDOWN:
    case WM_KILLFOCUS:
      Mark(-1);
      break;
    case WM_MOUSELEAVE:
      if (GetFocus() != window_) {
        Mark(-1);
      }
      break;
    case WM_MOUSEWHEEL:
      if ((LOWORD(wide) & MK_CONTROL) != 0) {
        SetPixelSize(PixelSize() + (static_cast<short>(HIWORD(wide)) > 0 ? 2 : -2));
        return 0;
      }
      break;
    case WM_PAINT: {
      const LRESULT painted = DefSubclassProc(window_, message, wide, data);
      PaintMark();
      return painted;
    }
    default:
      break;
  }
  return std::nullopt;
}

bool PhoneDisplay::MoveMark(WPARAM key) {
  using app::Move;
  static const std::map<WPARAM, Move> kMoves = {
      {VK_LEFT, Move::kPrevious}, {VK_RIGHT, Move::kNext},     {VK_UP, Move::kUp},
      {VK_DOWN, Move::kDown},     {VK_HOME, Move::kLineBegin}, {VK_END, Move::kLineEnd},
      {VK_PRIOR, Move::kFirst},   {VK_NEXT, Move::kLast}};
  const auto move = kMoves.find(key);
  if (move == kMoves.end() || display_.shown().groups.empty()) {
    return false;
  }
  Mark(MovedMark(display_.shown(), display_.marked(), move->second));
  GoToMark();
  return true;
}

void PhoneDisplay::GoToMark() {
  if (display_.marked() < 0) {
    return;
  }
  const auto& groups = display_.shown().groups;
  const auto at = static_cast<LONG>(groups[static_cast<std::size_t>(display_.marked())].from);
  CHARRANGE range{at, at};
  Send(window_, EM_EXSETSEL, 0, &range);
  Send(window_, EM_SCROLLCARET);
}

void PhoneDisplay::Follow(int group) {
  if (display_.Follow(group)) {
    InvalidateRect(window_, nullptr, FALSE);
    GoToMark();
  }
}

void PhoneDisplay::Mark(int group) {
  if (display_.Mark(group)) {
    InvalidateRect(window_, nullptr, FALSE);
  }
}

void PhoneDisplay::MarkAt(POINT place) {
  POINTL point{place.x, place.y};
  const auto at = Send(window_, EM_CHARFROMPOS, 0, &point);
  if (at >= 0 && display_.MarkAt(static_cast<std::size_t>(at))) {
    InvalidateRect(window_, nullptr, FALSE);
  }
  TRACKMOUSEEVENT leaving{sizeof leaving, TME_LEAVE, window_, 0};
  TrackMouseEvent(&leaving);
}

// Ink and ground change places. A group broken over several lines stays as it is.
void PhoneDisplay::PaintMark() const {
  if (display_.marked() < 0) {
    return;
  }
  const app::TextRange& group =
      display_.shown().groups[static_cast<std::size_t>(display_.marked())];
  POINTL from{}, to{};
  Send(window_, EM_POSFROMCHAR, &from, group.from);
  Send(window_, EM_POSFROMCHAR, &to, group.to);
  if (to.y == from.y) {
    const Brush both(CreateSolidBrush(theme_.colours.displayInk ^ theme_.colours.displayGround));
    const HDC context = GetDC(window_);
    const HGDIOBJ before = SelectObject(context, both.get());
    PatBlt(context, from.x, from.y, to.x - from.x, static_cast<int>(MeasureType(PixelSize()).line),
           PATINVERT);
    SelectObject(context, before);
    ReleaseDC(window_, context);
  }
}

void PhoneDisplay::CopySelection() const {
  CHARRANGE selection{};
  Send(window_, EM_EXGETSEL, 0, &selection);
  const std::string part = display_.Part(
      {static_cast<std::size_t>(selection.cpMin), static_cast<std::size_t>(selection.cpMax)});
  if (!part.empty()) {
    platform::PutOnClipboard(part);
  }
}

}  // namespace tonadex::shell
