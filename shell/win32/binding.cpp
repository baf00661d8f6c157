#include "shell/win32/binding.h"

#include <algorithm>
#include <array>

#include "app/control_pictures.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/hook.h"
#include "shell/win32/messages.h"
#include "shell/win32/widgets/button.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

using app::Control;
using app::ControlInfo;
using app::Event;
using app::Look;

// ---- How a control looks ------------------------------------------------------------------------

HWND MakeWindow(const wchar_t* kind, DWORD style, HWND parent, int id) {
  return CreateWindowExW(0, kind, L"", WS_CHILD | style, 0, 0, 1, 1, parent,
                         reinterpret_cast<HMENU>(LONG_PTR{id}), GetModuleHandleW(nullptr), nullptr);
}

// A bar at the side of several lines only while they do not fit.
void KeepScrollBarInNeed(HWND edit) {
  HookWindow(edit, [](HWND window, UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
    if (message != WM_PAINT) {
      return std::nullopt;
    }
    RECT area{};
    GetClientRect(window, &area);
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE;
    GetScrollInfo(window, SB_VERT, &info);
    const bool needed = info.nMax - info.nMin >= static_cast<int>(info.nPage) && info.nPage != 0;
    const bool there = (GetWindowLongPtrW(window, GWL_STYLE) & WS_VSCROLL) != 0;
    if (needed != there) {
      ShowScrollBar(window, SB_VERT, needed ? TRUE : FALSE);
    }
    return std::nullopt;
  });
}

HWND MakeEdit(Look look, HWND parent, int id) {
  const bool reading = look == Look::kReading || look == Look::kNotices;
  const bool lines = look == Look::kArea || look == Look::kNotices;
  DWORD style = WS_TABSTOP | (reading ? ES_READONLY : 0U);
  style |= lines ? ES_MULTILINE | ES_AUTOVSCROLL | WS_VSCROLL : ES_AUTOHSCROLL;
  const HWND edit = MakeWindow(L"EDIT", style, parent, id);
  SendMessageW(edit, EM_SETLIMITTEXT, 0, 0);  // as much as there is memory for
  if (lines) {
    KeepScrollBarInNeed(edit);
  }
  return edit;
}

// The frame around a field is the parent's to paint.
void RepaintFrameWithFocus(HWND field, HWND parent) {
  HookWindow(field, [parent](HWND window, UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
    if (message == WM_SETFOCUS || message == WM_KILLFOCUS) {
      constexpr int kWidestFrame = 24;
      RECT box{};
      GetWindowRect(window, &box);
      MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&box), 2);
      InflateRect(&box, kWidestFrame, kWidestFrame);
      InvalidateRect(parent, &box, FALSE);
    }
    return std::nullopt;
  });
}

bool HasFrame(Look look) {
  return look == Look::kLine || look == Look::kReading || look == Look::kArea ||
         look == Look::kNotices || look == Look::kList || look == Look::kDisplay;
}

HWND MakeBoundButton(const ControlInfo& info, HWND parent, int id) {
  const app::ControlPicture* picture = app::FindPicture(info.name);
  const ButtonLook look = app::IsNavigation(info.member)           ? ButtonLook::kNavigation
                          : picture != nullptr && picture->primary ? ButtonLook::kPrimary
                                                                   : ButtonLook::kCommand;
  return MakeButton(parent, id, look, picture != nullptr ? picture->icon : "");
}

// ---- Drawing and reading back -------------------------------------------------------------------

void DrawComboBox(HWND box, const Control& control) {
  bool same = SendMessageW(box, CB_GETCOUNT, 0, 0) == static_cast<LRESULT>(control.rows.size());
  for (std::size_t i = 0; same && i < control.rows.size(); ++i) {
    std::wstring row(static_cast<std::size_t>(SendMessageW(box, CB_GETLBTEXTLEN, i, 0)) + 1, L'\0');
    SendMessageW(box, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(row.data()));
    row.pop_back();
    same = row == platform::ToWide(control.rows[i].text);
  }
  if (!same) {
    SendMessageW(box, CB_RESETCONTENT, 0, 0);
    for (const app::ListRow& row : control.rows) {
      SendMessageW(box, CB_ADDSTRING, 0,
                   reinterpret_cast<LPARAM>(platform::ToWide(row.text).c_str()));
    }
  }
  SetText(box, control.text);
}

void DrawTimer(BoundControl& bound, const Control& control, HWND parent) {
  const auto id = static_cast<UINT_PTR>(bound.info - app::Controls().data()) + kFirstControlId;
  if (control.enabled && !bound.ticking) {
    SetTimer(parent, id, control.interval, nullptr);
  } else if (!control.enabled && bound.ticking) {
    KillTimer(parent, id);
  }
  bound.ticking = control.enabled;
}

void DrawContent(BoundControl& bound, const Control& control) {
  switch (bound.look) {
    case Look::kLabel:
    case Look::kNavigation:
    case Look::kButton:
      SetText(bound.window, control.caption);
      break;
    case Look::kLine:
    case Look::kReading:
    case Look::kArea:
    case Look::kNotices:
      SetText(bound.window, control.text);
      break;
    case Look::kList:
      bound.list->Draw(control);
      break;
    case Look::kComboBox:
      DrawComboBox(bound.window, control);
      break;
    case Look::kDisplay:  // the window gives it the text with its groups
    case Look::kPage:
    case Look::kBanner:
    case Look::kTimer:
    case Look::kNone:
      break;
  }
}

void CopyText(HWND window, Control& control) {
  const std::wstring text = WindowText(window);
  if (text != platform::ToWideLines(control.text)) {
    control.text = platform::FromWide(text);
  }
}

}  // namespace

Binding::Binding(app::Form1& form, HWND parent, const Theme& theme, Dispatch dispatch)
    : form_(form), parent_(parent), theme_(theme), dispatch_(std::move(dispatch)) {
  int id = kFirstControlId;
  for (const ControlInfo& info : app::Controls()) {
    bound_.push_back(Make(info, id++));
    SetSpokenName(bound_.back().window, info.spoken);
    if (HasFrame(bound_.back().look)) {
      RepaintFrameWithFocus(bound_.back().window, parent_);
    }
  }
  ThemeChanged();
}

BoundControl Binding::Make(const ControlInfo& info, int id) {
  BoundControl bound{&info, app::LookOf(info), nullptr, nullptr, nullptr, nullptr, false};
  switch (bound.look) {
    case Look::kLabel:
      bound.window = MakeWindow(
          L"STATIC", SS_LEFT | ((form_.*info.member).useMnemonic ? 0U : SS_NOPREFIX), parent_, id);
      break;
    case Look::kNavigation:
    case Look::kButton:
      bound.window = MakeBoundButton(info, parent_, id);
      break;
    case Look::kLine:
    case Look::kReading:
    case Look::kArea:
    case Look::kNotices:
      bound.window = MakeEdit(bound.look, parent_, id);
      break;
    case Look::kDisplay:
      bound.display = std::make_unique<PhoneDisplay>(parent_, id, theme_);
      bound.window = bound.display->window();
      break;
    case Look::kList:
      bound.list = std::make_unique<RowList>(parent_, id, theme_);
      bound.window = bound.list->window();
      break;
    case Look::kComboBox:
      bound.window = MakeWindow(
          L"COMBOBOX", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL, parent_, id);
      break;
    case Look::kPage:
    case Look::kBanner: {
      const bool banner = bound.look == Look::kBanner;
      bound.browser = std::make_unique<platform::WebControl>(
          parent_,
          banner ? platform::WebControl::Links::kReport : platform::WebControl::Links::kFollow,
          [parent = parent_] { PostMessageW(parent, kBannerLeft, 0, 0); });
      bound.window = bound.browser->window();
      SetWindowLongPtrW(bound.window, GWLP_ID, id);
      break;
    }
    case Look::kTimer:
    case Look::kNone:
      break;
  }
  return bound;
}

const BoundControl& Binding::Of(Control app::Form1::*member) const {
  return *std::ranges::find_if(
      bound_, [member](const BoundControl& row) { return row.info->member == member; });
}

const BoundControl* Binding::Find(HWND window) const {
  const auto found = std::ranges::find_if(bound_, [window](const BoundControl& row) {
    return row.window != nullptr && (row.window == window || (row.look == Look::kComboBox &&
                                                              IsChild(row.window, window) != 0));
  });
  return window == nullptr || found == bound_.end() ? nullptr : &*found;
}

void Binding::CopyIn() {
  for (const BoundControl& bound : bound_) {
    Control& control = form_.*bound.info->member;
    if (bound.look == Look::kLine || bound.look == Look::kArea) {
      CopyText(bound.window, control);
    } else if (bound.look == Look::kComboBox) {
      CopyText(bound.window, control);
      const std::string text = control.text;
      control.SetText(text);
    } else if (bound.list != nullptr && bound.list->Selected() != control.listIndex) {
      control.Select(bound.list->Selected());
    }
  }
}

void Binding::Draw() {
  drawing_ = true;
  for (BoundControl& bound : bound_) {
    const Control& control = form_.*bound.info->member;
    if (bound.look == Look::kTimer) {
      DrawTimer(bound, control, parent_);
    }
    if (bound.window == nullptr) {
      continue;
    }
    DrawContent(bound, control);
    if ((IsWindowEnabled(bound.window) != 0) != control.enabled) {
      EnableWindow(bound.window, control.enabled ? TRUE : FALSE);
    }
    const bool shown = (GetWindowLongPtrW(bound.window, GWL_STYLE) & WS_VISIBLE) != 0;
    if (shown != control.visible) {
      ShowWindow(bound.window, control.visible ? SW_SHOWNA : SW_HIDE);
    }
  }
  drawing_ = false;
}

void Binding::ThemeChanged() {
  for (const BoundControl& bound : bound_) {
    if (bound.list != nullptr) {
      bound.list->ThemeChanged();
    } else if (bound.display != nullptr) {
      bound.display->ThemeChanged();
    } else if (bound.window != nullptr && bound.browser == nullptr) {
      ApplyTheme(bound.window, theme_);
    }
    if (bound.window != nullptr && bound.display == nullptr) {
      const bool notes = bound.look == Look::kArea;
      SendMessageW(bound.window, WM_SETFONT,
                   reinterpret_cast<WPARAM>(notes ? theme_.mono.get() : theme_.body.get()), TRUE);
    }
  }
}

bool Binding::Handles(const BoundControl& bound, Event event) const {
  return std::ranges::any_of(app::Handlers(), [&](const app::HandlerInfo& row) {
    return row.control == bound.info->member && row.event == event;
  });
}

void Binding::Raise(const BoundControl& bound, Event event) {
  if (drawing_) {
    return;
  }
  for (const app::HandlerInfo& row : app::Handlers()) {
    if (row.control == bound.info->member && row.event == event) {
      dispatch_([this, handler = row.handler] { (form_.*handler)(); });
      return;
    }
  }
  if (event == Event::kClick) {
    dispatch_([] {});
  }
}

bool Binding::Command(int id, int notification) {
  const int index = id - kFirstControlId;
  if (index < 0 || index >= static_cast<int>(bound_.size())) {
    return false;
  }
  const BoundControl& bound = bound_[static_cast<std::size_t>(index)];
  switch (bound.look) {
    case Look::kNavigation:
    case Look::kButton:
      if (notification == BN_CLICKED) {
        Raise(bound, Event::kClick);
      }
      break;
    case Look::kLine:
    case Look::kArea:
      if (notification == EN_CHANGE) {
        Raise(bound, Event::kChange);
      }
      break;
    case Look::kList:
      if (notification == LBN_SELCHANGE || notification == LBN_DBLCLK) {
        Raise(bound, notification == LBN_DBLCLK ? Event::kActivate : Event::kClick);
      }
      break;
    case Look::kComboBox:
      if (notification == CBN_SELCHANGE) {
        // Its text follows only after this message.
        const auto row = SendMessageW(bound.window, CB_GETCURSEL, 0, 0);
        const auto& rows = (form_.*bound.info->member).rows;
        if (row >= 0 && row < static_cast<LRESULT>(rows.size())) {
          SetText(bound.window, rows[static_cast<std::size_t>(row)].text);
        }
      }
      if (notification == CBN_SELCHANGE || notification == CBN_EDITCHANGE) {
        Raise(bound, Event::kChange);
      }
      break;
    default:
      break;
  }
  return true;
}

bool Binding::Tick(UINT_PTR timer) {
  for (const BoundControl& bound : bound_) {
    const auto id = static_cast<UINT_PTR>(bound.info - app::Controls().data()) + kFirstControlId;
    if (bound.look == Look::kTimer && id == timer) {
      Raise(bound, Event::kTick);
      return true;
    }
  }
  return false;
}

}  // namespace tonadex::shell
