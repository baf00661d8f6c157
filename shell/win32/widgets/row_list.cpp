#include "shell/win32/widgets/row_list.h"

#include <string_view>
#include <utility>

#include "platform/win32/wide_text.h"
#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"
#include "shell/win32/widgets/button.h"

namespace tonadex::shell {
namespace {

constexpr std::string_view kNothingChosen = "0";  // what is saved before any choice

}  // namespace

RowList::RowList(HWND parent, int id, const Theme& theme)
    : window_(CreateWindowExW(0, L"LISTBOX", L"",
                              WS_CHILD | WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_OWNERDRAWFIXED |
                                  LBS_HASSTRINGS | LBS_NOINTEGRALHEIGHT,
                              0, 0, 1, 1, parent, reinterpret_cast<HMENU>(LONG_PTR{id}),
                              GetModuleHandleW(nullptr), nullptr)),
      theme_(theme) {
  ThemeChanged();
  HookWindow(window_,
             [this](HWND window, UINT message, WPARAM wide, LPARAM data) -> std::optional<LRESULT> {
               if (message == WM_PAINT && rows_.empty()) {
                 const LRESULT result = DefSubclassProc(window, message, wide, data);
                 PaintInvitation();
                 return result;
               }
               return std::nullopt;
             });
}

void RowList::ThemeChanged() {
  SendMessageW(window_, LB_SETITEMHEIGHT, 0, theme_.line + theme_.Px(kGrid));
  ApplyTheme(window_, theme_);
}

void RowList::Draw(const app::Control& control) {
  const bool foreign =
      control.listIndex < 0 && !control.text.empty() && control.text != kNothingChosen;
  const std::size_t count = control.rows.size();
  app::ListRows rows = control.rows;
  if (foreign) {
    rows.push_back({control.text});
  }
  if (foreign != foreign_ || rows_ != rows) {
    foreign_ = foreign;
    rows_ = std::move(rows);
    SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
    SendMessageW(window_, LB_RESETCONTENT, 0, 0);
    for (const app::ListRow row : rows_) {
      const LRESULT index = SendMessageW(
          window_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(platform::ToWide(row.text).c_str()));
      SendMessageW(window_, LB_SETITEMDATA, static_cast<WPARAM>(index), row.hint ? 1 : 0);
    }
    SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(window_, nullptr, TRUE);
  }
  const int marked = foreign ? static_cast<int>(count) : control.listIndex;
  if (SendMessageW(window_, LB_GETCURSEL, 0, 0) != marked) {
    SendMessageW(window_, LB_SETCURSEL, static_cast<WPARAM>(marked), 0);
  }
}

void RowList::SetInvitation(const std::wstring& invitation) {
  if (invitation_ != invitation) {
    invitation_ = invitation;
    InvalidateRect(window_, nullptr, TRUE);
  }
}

int RowList::Selected() const {
  const auto row = static_cast<int>(SendMessageW(window_, LB_GETCURSEL, 0, 0));
  return foreign_ && row == static_cast<int>(rows_.size()) - 1 ? -1 : row;
}

void RowList::PaintInvitation() {
  const HDC context = GetDC(window_);
  RECT area{};
  GetClientRect(window_, &area);
  InflateRect(&area, -theme_.Px(kPageMargin), -theme_.Px(kPageMargin));
  Words(context, invitation_, area, theme_.body.get(), theme_.colours.muted,
        DT_LEFT | DT_WORDBREAK | DT_NOPREFIX);
  ReleaseDC(window_, context);
}

void RowList::DrawRow(const DRAWITEMSTRUCT& item, const Theme& theme) {
  if (item.itemID == static_cast<UINT>(-1)) {
    return;
  }
  const bool hint = item.itemData != 0;
  const bool selected = (item.itemState & ODS_SELECTED) != 0 && !hint;
  const auto length = SendMessageW(item.hwndItem, LB_GETTEXTLEN, item.itemID, 0);
  std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
  SendMessageW(item.hwndItem, LB_GETTEXT, item.itemID, reinterpret_cast<LPARAM>(text.data()));
  text.pop_back();

  const Brush ground(CreateSolidBrush(selected ? theme.colours.accentWash : theme.colours.card));
  FillRect(item.hDC, &item.rcItem, ground.get());
  RECT box = item.rcItem;
  if (selected) {
    RECT mark = box;
    mark.right = mark.left + theme.Px(3);
    const Brush accent(CreateSolidBrush(theme.colours.accent));
    FillRect(item.hDC, &mark, accent.get());
  }
  box.left += theme.Px(kGrid + 2);
  Words(item.hDC, text, box, hint ? theme.small.get() : theme.body.get(),
        hint ? theme.colours.muted : theme.colours.text,
        DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

void DrawItem(const DRAWITEMSTRUCT& item, const Theme& theme) {
  item.CtlType == ODT_LISTBOX ? RowList::DrawRow(item, theme) : DrawButton(item, theme);
}

}  // namespace tonadex::shell
