#include "shell/win32/widgets/row_list.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>

#include "platform/win32/send.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"
#include "shell/win32/icons.h"

namespace tonadex::shell {
namespace {

using platform::Send;

constexpr DWORD kTypingMs = 1000;  // what is typed after that begins anew

}  // namespace

RowList::RowList(HWND parent, int id, const Theme& theme)
    : window_(MakeChild(L"LISTBOX",
                        WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_OWNERDRAWFIXED | LBS_NODATA |
                            LBS_NOINTEGRALHEIGHT,
                        parent, id)),
      theme_(theme) {
  ThemeChanged();
  HookWindow(window_, [this](HWND, UINT message, WPARAM wide, LPARAM data) {
    return Handle(message, wide, data);
  });
}

void RowList::ThemeChanged() {
  Send(window_, LB_SETITEMHEIGHT, 0, theme_.line + theme_.Px(kGrid));
  ApplyTheme(window_, theme_);
}

void RowList::Draw(const app::Control& control) {
  if (!list_.HasLinesOf(control) || list_.invitation != control.invitation) {
    list_ = control;
    Send(window_, LB_SETCOUNT, list_.Lines());
    InvalidateRect(window_, nullptr, TRUE);
    Send(tips_, TTM_POP);  // it may name a row that is gone
  }
  if (Send(window_, LB_GETCURSEL) != control.SelectedLine()) {
    Send(window_, LB_SETCURSEL, control.SelectedLine());
  }
}

int RowList::Selected() const {
  const auto row = static_cast<int>(Send(window_, LB_GETCURSEL));
  return row < static_cast<int>(list_.rows.size()) ? row : -1;
}

// The system's list has no texts to find a row by, or to read one out.
std::optional<LRESULT> RowList::Handle(UINT message, WPARAM wide, LPARAM data) {
  switch (message) {
    case kDrawYourself:
      PaintRow(*reinterpret_cast<const DRAWITEMSTRUCT*>(data));
      return TRUE;
    case WM_PAINT:
      if (list_.Lines() == 0) {
        const LRESULT result = DefSubclassProc(window_, message, wide, data);
        PaintInvitation();
        return result;
      }
      break;
    case WM_MOUSEMOVE:
      if (const std::size_t row = RowAt({GET_X_LPARAM(data), GET_Y_LPARAM(data)}); row != under_) {
        under_ = row;
        Send(tips_, TTM_POP);
      }
      break;
    case WM_LBUTTONUP:
      if (const app::MenuItem* button = ButtonAt({GET_X_LPARAM(data), GET_Y_LPARAM(data)})) {
        const LRESULT result = DefSubclassProc(window_, message, wide, data);
        press_(*button);
        return result;
      }
      break;
    case WM_LBUTTONDBLCLK:
      if (ButtonAt({GET_X_LPARAM(data), GET_Y_LPARAM(data)}) != nullptr) {
        return 0;
      }
      break;
    case WM_CHAR:
      if (wide >= ' ') {
        FindTyped(static_cast<wchar_t>(wide));
        return 0;
      }
      break;
    case LB_GETTEXTLEN:
    case LB_GETTEXT: {
      if (wide >= list_.Lines()) {
        return LB_ERR;
      }
      const std::wstring text = platform::ToWide(list_.LineAt(wide));
      if (message == LB_GETTEXT) {
        std::copy_n(text.c_str(), text.size() + 1, reinterpret_cast<wchar_t*>(data));
      }
      return static_cast<LRESULT>(text.size());
    }
    default:
      break;
  }
  return std::nullopt;
}

// The next row that begins so.
void RowList::FindTyped(wchar_t character) {
  const DWORD now = GetTickCount();
  if (now - typedAt_ > kTypingMs) {
    typed_.clear();
  }
  typedAt_ = now;
  typed_ += character;
  const std::size_t count = list_.rows.size();
  const auto from =
      static_cast<std::size_t>(std::max(0, Selected() + (typed_.size() == 1 ? 1 : 0)));
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t row = (from + i) % count;
    if (CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE,
                       platform::ToWide(list_.LineAt(row)).substr(0, typed_.size()).c_str(), -1,
                       typed_.c_str(), -1) == CSTR_EQUAL) {
      return Choose(row);
    }
  }
}

// As the user does.
void RowList::Choose(std::size_t row) const {
  Send(window_, LB_SETCURSEL, row);
  Send(GetParent(window_), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(window_), LBN_SELCHANGE), window_);
}

std::size_t RowList::RowAt(POINT place) const {
  const auto found =
      static_cast<DWORD>(Send(window_, LB_ITEMFROMPOINT, 0, MAKELPARAM(place.x, place.y)));
  return HIWORD(found) != 0 ? list_.rows.size()
                            : std::min<std::size_t>(LOWORD(found), list_.rows.size());
}

void RowList::SelectAt(POINT place) {
  if (const std::size_t row = RowAt(place); row < list_.rows.size()) {
    Choose(row);
  }
}

void RowList::SetButtons(std::span<const app::MenuItem> menu,
                         std::function<void(const app::MenuItem&)> press) {
  press_ = std::move(press);
  for (const app::MenuItem& item : menu) {
    if (*item.icon != '\0') {
      buttons_.push_back(&item);
    }
  }
}

RECT RowList::ButtonPlace(const RECT& row, std::size_t button) const {
  const LONG side = row.bottom - row.top;
  const LONG left =
      row.right - static_cast<LONG>(buttons_.size() - button) * (side + theme_.Px(kGrid));
  return {left, row.top, left + side, row.bottom};
}

const app::MenuItem* RowList::ButtonAt(POINT place) const {
  const std::size_t at = RowAt(place);
  RECT row{};
  Send(window_, LB_GETITEMRECT, at, &row);
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const RECT button = ButtonPlace(row, i);
    if (at < list_.rows.size() && !list_.IsHint(at) && PtInRect(&button, place) != 0) {
      return buttons_[i];
    }
  }
  return nullptr;
}

POINT RowList::MenuPlace() const {
  RECT row{};
  Send(window_, LB_GETITEMRECT, std::max(0, Selected()), &row);
  POINT place{row.left + theme_.Px(kPageMargin), row.bottom};
  ClientToScreen(window_, &place);
  return place;
}

std::wstring RowList::HelpUnderMouse() const {
  return under_ < list_.rows.size() ? platform::ToWide(list_.HelpAt(under_)) : std::wstring();
}

void RowList::PaintInvitation() const {
  const HDC context = GetDC(window_);
  RECT area = ClientArea(window_);
  InflateRect(&area, -theme_.Px(kPageMargin), -theme_.Px(kPageMargin));
  Words(context, platform::ToWide(list_.invitation), area, theme_.body.get(), theme_.colours.muted,
        DT_LEFT | DT_WORDBREAK | DT_NOPREFIX);
  ReleaseDC(window_, context);
}

// "name (file)" with the file quieter, and a sentence for the user as one.
void RowList::PaintRow(const DRAWITEMSTRUCT& item) const {
  if (item.itemID >= list_.Lines()) {
    return;
  }
  const bool hint = list_.IsHint(item.itemID);
  const bool selected = (item.itemState & ODS_SELECTED) != 0 && !hint;
  Fill(item.hDC, item.rcItem, selected ? theme_.colours.accentWash : theme_.colours.card);
  RECT box = item.rcItem;
  if (selected) {
    RECT mark = box;
    mark.right = mark.left + theme_.Px(3);
    Fill(item.hDC, mark, theme_.colours.accent);
  }
  for (std::size_t i = 0; i < buttons_.size() && !hint; ++i) {
    RECT button = ButtonPlace(item.rcItem, i);
    box.right = std::min(box.right, button.left);
    InflateRect(&button, -theme_.Px(3), -theme_.Px(3));
    DrawIcon(item.hDC, buttons_[i]->icon, button, theme_.colours.accent);
  }
  box.left += theme_.Px(kGrid + 2);
  const std::wstring text = platform::ToWide(list_.LineAt(item.itemID));
  const std::size_t split = hint ? std::wstring::npos : text.find(L" (");
  const std::wstring name = text.substr(0, split);
  const Font& font = hint ? theme_.small : selected ? theme_.bold : theme_.body;
  constexpr UINT kLine = DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS;
  Words(item.hDC, name, box, font.get(), hint ? theme_.colours.muted : theme_.colours.text, kLine);
  box.left += TextWidth(font.get(), name) + theme_.Px(kGrid);
  const std::wstring file = split == std::wstring::npos ? L"" : text.substr(split + 1);
  if (box.left + TextWidth(theme_.body.get(), file) <= box.right) {  // whole or not at all
    Words(item.hDC, file, box, theme_.body.get(), theme_.colours.muted, kLine);
  }
}

}  // namespace tonadex::shell
