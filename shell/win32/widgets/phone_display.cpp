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

void AppendEscaped(std::string& source, std::string_view text) {
  constexpr std::string_view kHex = "0123456789abcdef";
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (c == '\\' || c == '{' || c == '}') {
      source += '\\';
      source += c;
    } else if (c == '\n') {
      source += "\\par ";
    } else if (code >= 0x80) {
      source += "\\'";
      source += kHex[code >> 4];
      source += kHex[code & 15];
    } else {
      source += c;
    }
  }
}

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
  columns_ = 0;
  LayOut();
}

void PhoneDisplay::SetResult(const std::string& text, std::vector<app::ResultGroup> groups,
                             bool counted) {
  if (text == result_ && groups == groups_ && counted == counted_) {
    return;
  }
  result_ = text;
  groups_ = std::move(groups);
  counted_ = counted && !groups_.empty();
  columns_ = 0;
  LayOut();
}

void PhoneDisplay::SetInvitation(const std::string& invitation) {
  if (invitation != invitation_) {
    invitation_ = invitation;
    columns_ = 0;
    LayOut();
  }
}

void PhoneDisplay::SetPixelSize(int pixels) {
  pixels_ = std::clamp(pixels, kSmallestType, kLargestType);
  columns_ = 0;
  LayOut();
}

std::size_t PhoneDisplay::Columns() const {
  RECT area{};
  GetClientRect(window_, &area);
  const Font font(CreateFontW(-theme_.Px(pixels_), 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE,
                              DEFAULT_CHARSET, 0, 0, 0, FIXED_PITCH, theme_.monoName.c_str()));
  constexpr int kSample = 50;
  const int sample = std::max(1, TextWidth(font.get(), std::wstring(kSample, L'0')));
  const int width = area.right - 2 * theme_.Px(kPadding);
  return static_cast<std::size_t>(std::max(8, width * kSample / sample - 1));
}

void PhoneDisplay::LayOut() {
  RECT area{};
  GetClientRect(window_, &area);
  RECT inner = area;
  InflateRect(&inner, -theme_.Px(kPadding), -theme_.Px(kPadding));
  SendMessageW(window_, EM_SETRECT, 0, reinterpret_cast<LPARAM>(&inner));
  const std::size_t columns = Columns();
  if (columns == columns_) {
    return;
  }
  columns_ = columns;
  const bool empty = result_.empty();
  shown_ = empty ? LayOutDisplay(invitation_, app::ResultGroups(invitation_), false, columns)
                 : LayOutDisplay(result_, groups_, counted_, columns);
  platform::SetRichEditSource(window_, Source());
  SendMessageW(window_, EM_SETRECT, 0, reinterpret_cast<LPARAM>(&inner));
}

std::string PhoneDisplay::Source() const {
  std::vector<Change> changes;
  for (const TextRange& range : shown_.held) {
    changes.push_back({range.from, "\\b "});
    changes.push_back({range.to, "\\b0 "});
  }
  for (const TextRange& range : shown_.margin) {
    changes.push_back({range.from, "\\cf2 "});
    changes.push_back({range.to, "\\cf1 "});
  }
  std::ranges::stable_sort(changes, {}, &Change::at);

  // Half points: a pixel at 96 dpi is one and a half of them.
  std::string source = "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0\\fmodern\\fprq1 " +
                       platform::FromWide(theme_.monoName) + ";}}{\\colortbl;" +
                       ColourEntry(theme_.colours.displayInk) +
                       ColourEntry(theme_.colours.displayFaint) + "}\\f0\\b0\\cf1\\fs" +
                       std::to_string(pixels_ * 3 / 2) + "\\sl276\\slmult1 ";
  std::size_t at = 0;
  for (const Change& change : changes) {
    AppendEscaped(source, std::string_view(shown_.text).substr(at, change.at - at));
    source += change.words;
    at = change.at;
  }
  AppendEscaped(source, std::string_view(shown_.text).substr(at));
  return source + "}";
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
