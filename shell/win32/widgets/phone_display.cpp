#include "shell/win32/widgets/phone_display.h"

#include <richedit.h>

#include <algorithm>

#include "platform/win32/rich_edit.h"
#include "platform/win32/system_services.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

constexpr int kPadding = 10;
constexpr int kLineHeight = 140;  // percent of the type's size

Font DisplayFont(const Theme& theme, int pixels) {
  return Font(CreateFontW(-theme.Px(pixels), 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                          0, 0, 0, FIXED_PITCH, theme.monoName.c_str()));
}

}  // namespace

PhoneDisplay::PhoneDisplay(HWND parent, int id, const Theme& theme)
    : window_(platform::MakeRichEdit(
          parent, WS_TABSTOP | WS_VSCROLL | ES_READONLY | ES_AUTOVSCROLL | ES_NOHIDESEL)),
      theme_(theme) {
  SetWindowLongPtrW(window_, GWLP_ID, id);
  SendMessageW(window_, EM_SETTARGETDEVICE, 0, 1);  // lines end where ours do
  ThemeChanged();
  HookWindow(window_,
             [this](HWND, UINT message, WPARAM wide, LPARAM) { return Handle(message, wide); });
}

void PhoneDisplay::ThemeChanged() {
  SendMessageW(window_, EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(theme_.colours.displayGround));
  ApplyTheme(window_, theme_);
  Show();
}

void PhoneDisplay::Draw(const app::Control& control, std::vector<app::ResultGroup> groups,
                        bool counted) {
  result_ = control.text;
  invitation_ = control.invitation;
  groups_ = std::move(groups);
  counted_ = counted && !groups_.empty();
  wanted_ = control.value;
  LayOut();
}

DisplayText PhoneDisplay::LaidOut(int pixels, int width) const {
  constexpr int kSample = 50;
  const int sample = TextWidth(DisplayFont(theme_, pixels).get(), std::wstring(kSample, L'0'));
  const auto columns = static_cast<std::size_t>(std::max(8, width * kSample / sample - 1));
  return result_.empty()
             ? LayOutDisplay(invitation_, app::ResultGroups(invitation_), false, columns)
             : LayOutDisplay(result_, groups_, counted_, columns);
}

void PhoneDisplay::LayOut() {
  RECT area{};
  GetClientRect(window_, &area);
  InflateRect(&area, -theme_.Px(kPadding), -theme_.Px(kPadding));
  const bool fits = wanted_ == 0 && !result_.empty();
  int pixels = fits ? kLargestFit : wanted_ != 0 ? wanted_ : kSmallestFit;
  DisplayText shown = LaidOut(pixels, area.right - area.left);
  while (fits && pixels > kSmallestFit &&
         (std::ranges::count(shown.text, '\n') + 1) * theme_.Px(pixels * kLineHeight / 100) >
             area.bottom - area.top) {
    pixels -= 2;
    shown = LaidOut(pixels, area.right - area.left);
  }
  if (pixels != pixels_ || shown != shown_) {
    pixels_ = pixels;
    shown_ = std::move(shown);
    Show();
  }
  SendMessageW(window_, EM_SETRECT, 0, reinterpret_cast<LPARAM>(&area));
}

void PhoneDisplay::Format(TextRange range, DWORD mask, COLORREF colour) {
  const CHARRANGE selection{static_cast<LONG>(range.from), static_cast<LONG>(range.to)};
  SendMessageW(window_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&selection));
  CHARFORMAT2W format{};
  format.cbSize = sizeof format;
  format.dwMask = mask;
  format.dwEffects = (mask & (CFM_BOLD | CFM_FACE)) == CFM_BOLD ? CFE_BOLD : 0;
  format.crTextColor = colour;
  format.yHeight = pixels_ * 15;  // a pixel at 96 dpi is so many twips
  format.bPitchAndFamily = FIXED_PITCH | FF_MODERN;
  lstrcpynW(format.szFaceName, theme_.monoName.c_str(), LF_FACESIZE);
  SendMessageW(window_, EM_SETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
}

void PhoneDisplay::Show() {
  SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
  SetWindowTextW(window_, platform::ToWide(shown_.text).c_str());
  Format({0, shown_.text.size()}, CFM_FACE | CFM_SIZE | CFM_COLOR | CFM_BOLD,
         theme_.colours.displayInk);
  PARAFORMAT2 lines{};
  lines.cbSize = sizeof lines;
  lines.dwMask = PFM_LINESPACING;
  lines.bLineSpacingRule = 5;  // in twentieths of a line
  lines.dyLineSpacing = 23;
  SendMessageW(window_, EM_SETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&lines));
  for (const TextRange& range : shown_.held) {
    Format(range, CFM_BOLD, 0);
  }
  for (const TextRange& range : shown_.margin) {
    Format(range, CFM_COLOR, theme_.colours.displayFaint);
  }
  SendMessageW(window_, EM_SETSEL, 0, 0);
  SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(window_, nullptr, TRUE);
}

std::optional<LRESULT> PhoneDisplay::Handle(UINT message, WPARAM wide) {
  switch (message) {
    case WM_SIZE:
      DefSubclassProc(window_, message, wide, 0);
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
      if ((wide == VK_LEFT || wide == VK_RIGHT) && GetKeyState(VK_SHIFT) >= 0) {
        MarkGroup(wide == VK_LEFT ? -1 : 1);
        return 0;
      }
      break;
    default:
      break;
  }
  return std::nullopt;
}

// Selects the group before or behind the selection.
void PhoneDisplay::MarkGroup(int step) {
  CHARRANGE selection{};
  SendMessageW(window_, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selection));
  const auto from = static_cast<std::size_t>(selection.cpMin);
  const auto to = static_cast<std::size_t>(selection.cpMax);
  const TextRange* marked = nullptr;
  for (const TextRange& group : shown_.groups) {
    const bool before = step < 0 && group.to <= from && group.from < from;
    const bool behind = step > 0 && group.from >= to && (to > from || group.from >= from);
    if (before) {
      marked = &group;
    } else if (behind) {
      marked = &group;
      break;
    }
  }
  if (marked != nullptr) {
    const CHARRANGE range{static_cast<LONG>(marked->from), static_cast<LONG>(marked->to)};
    SendMessageW(window_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
    SendMessageW(window_, EM_SCROLLCARET, 0, 0);
  }
}

void PhoneDisplay::CopySelection() const {
  CHARRANGE selection{};
  SendMessageW(window_, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selection));
  const auto end = static_cast<LONG>(shown_.text.size());
  const TextRange range{static_cast<std::size_t>(std::min(selection.cpMin, end)),
                        static_cast<std::size_t>(std::min(selection.cpMax, end))};
  if (!result_.empty() && range.to > range.from) {
    platform::PutOnClipboard(ShownPart(result_, shown_, range));
  }
}

}  // namespace tonadex::shell
