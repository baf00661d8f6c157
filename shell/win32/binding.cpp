#include "shell/win32/binding.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>

#include "platform/win32/send.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/hook.h"
#include "shell/win32/icons.h"
#include "shell/win32/messages.h"
#include "shell/win32/widgets/busy_line.h"
#include "shell/win32/widgets/button.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

using app::Control;
using app::ControlInfo;
using app::Event;
using app::Look;
using platform::Send;

// ---- How a control looks ------------------------------------------------------------------------

// Shows the scroll bar of a multi-line edit only while its text does not fit.
void KeepScrollBarInNeed(HWND edit) {
  HookWindow(edit, [](HWND window, UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
    if (message != WM_PAINT) {
      return std::nullopt;
    }
    auto info = Sized<SCROLLINFO>();
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
  const HWND edit = MakeChild(L"EDIT", style, parent, id);
  Send(edit, EM_SETLIMITTEXT);  // no limit
  if (lines) {
    KeepScrollBarInNeed(edit);
  }
  return edit;
}

// The parent paints the frame around a field, which shows the focus.
void RepaintFrameWithFocus(HWND field, HWND parent) {
  HookWindow(field, [parent](HWND window, UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
    if (message == WM_SETFOCUS || message == WM_KILLFOCUS) {
      constexpr int kWidestFrame = 24;
      RECT box = PlaceIn(parent, window);
      InflateRect(&box, kWidestFrame, kWidestFrame);
      InvalidateRect(parent, &box, FALSE);
    }
    return std::nullopt;
  });
}

// A click on a button that has keys of its own leaves the keys where they were.
void GiveFocusBack(HWND button) {
  HookWindow(button, [](HWND window, UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
    if (message == WM_LBUTTONUP) {
      PostMessageW(GetParent(window), WM_SETFOCUS, 0, 0);  // after what the button does now
    }
    return std::nullopt;
  });
}

HWND MakeLabel(const ControlInfo& info, HWND parent, int id) {
  // SS_EDITCONTROL: a word longer than the line, such as an example, is broken.
  const DWORD style = SS_EDITCONTROL | (info.right ? SS_RIGHT : SS_LEFT) |
                      (info.field == nullptr ? SS_NOPREFIX : 0U);
  return MakeChild(L"STATIC", style, parent, id);
}

HWND MakePicture(const ControlInfo& info, HWND parent, int id, const Theme& theme) {
  const HWND picture = MakeChild(L"STATIC", SS_OWNERDRAW, parent, id);
  HookWindow(picture,
             [icon = info.icon, &theme](HWND, UINT message, WPARAM,
                                        LPARAM data) -> std::optional<LRESULT> {
               if (message != kDrawYourself) {
                 return std::nullopt;
               }
               const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(data);
               FillRect(item.hDC, &item.rcItem, theme.cardBrush.get());
               DrawIcon(item.hDC, icon, item.rcItem, theme.colours.text);
               return TRUE;
             });
  return picture;
}

HWND MakeSlider(HWND parent, int id) {
  const HWND slider = MakeChild(TRACKBAR_CLASSW, WS_TABSTOP | TBS_HORZ | TBS_NOTICKS, parent, id);
  Send(slider, TBM_SETRANGE, TRUE, MAKELPARAM(kSmallestType, kLargestType));
  return slider;
}

// Of the controls that need no object of their own; null for a timer and for storage.
HWND MakeWindow(const ControlInfo& info, HWND parent, int id, const Theme& theme) {
  if (app::IsButton(info.look)) {
    return MakeButton(parent, id, info.look, info.icon, theme);
  }
  if (app::IsTextBox(info.look)) {
    return MakeEdit(info.look, parent, id);
  }
  switch (info.look) {
    case Look::kLabel:
      return MakeLabel(info, parent, id);
    case Look::kComboBox:
      return MakeChild(L"COMBOBOX", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL,
                       parent, id);
    case Look::kPicture:
      return MakePicture(info, parent, id, theme);
    case Look::kSlider:
      return MakeSlider(parent, id);
    case Look::kBusyLine:
      return MakeBusyLine(parent, id, theme);
    default:
      return nullptr;
  }
}

// ---- Drawing and reading back -------------------------------------------------------------------

void DrawComboBox(HWND box, const Control& control) {
  bool same = Send(box, CB_GETCOUNT) == static_cast<LRESULT>(control.rows.size());
  for (std::size_t i = 0; same && i < control.rows.size(); ++i) {
    std::wstring row(static_cast<std::size_t>(Send(box, CB_GETLBTEXTLEN, i)) + 1, L'\0');
    Send(box, CB_GETLBTEXT, i, row.data());
    row.pop_back();
    same = row == platform::ToWide(control.rows[i].text);
  }
  if (!same) {
    Send(box, CB_RESETCONTENT);
    for (const app::ListRow& row : control.rows) {
      Send(box, CB_ADDSTRING, 0, platform::ToWide(row.text).c_str());
    }
  }
  SetText(box, control.text);
}

// Replaces the text as one step that the user can undo.
void DrawArea(HWND area, const Control& control) {
  const std::wstring text = platform::ToWideLines(control.text);
  if (WindowText(area) != text) {
    Send(area, EM_SETSEL, 0, -1);
    Send(area, EM_REPLACESEL, TRUE, text.c_str());
    Send(area, EM_SETSEL, control.cursor, control.cursor);
  }
}

void DrawTimer(BoundControl& bound, const Control& control, HWND parent) {
  const auto id = static_cast<UINT_PTR>(bound.Id());
  if (control.enabled && !bound.ticking) {
    SetTimer(parent, id, control.interval, nullptr);
  } else if (!control.enabled && bound.ticking) {
    KillTimer(parent, id);
  }
  bound.ticking = control.enabled;
}

void DrawContent(BoundControl& bound, const Control& control, const app::Form1& form) {
  if (app::IsButton(bound.info->look)) {
    const bool more = bound.info->look == Look::kCard && !control.text.empty();
    SetText(bound.window, control.caption + (more ? "\r\n" + control.text : ""));
    SetTone(bound.window, control.tone);
    return SetChecked(bound.window, control.checked);
  }
  switch (bound.info->look) {
    case Look::kLabel:
    case Look::kBusyLine:
      return SetText(bound.window, control.caption);
    case Look::kLine:
      Send(bound.window, EM_SETCUEBANNER, TRUE, platform::ToWide(control.invitation).c_str());
      [[fallthrough]];
    case Look::kReading:
    case Look::kNotices:
      return SetText(bound.window, control.text);
    case Look::kArea:
      DrawArea(bound.window, control);
      return bound.waves->Show(control.faults);
    case Look::kList:
      return bound.list->Draw(control);
    case Look::kComboBox:
      return DrawComboBox(bound.window, control);
    case Look::kDisplay:
      if (!control.visible) {
        return;
      }
      bound.display->SetInvitation(control.invitation);
      if (control.value != 0 && control.value != bound.display->PixelSize()) {
        bound.display->SetPixelSize(control.value);
      }
      bound.display->SetResult(control.text, form.ResultGroupsShown(), form.ResultIsCounted());
      return bound.display->Follow(control.marked);
    case Look::kDrawing:
      bound.view->SetDrawing(form.*bound.info->drawing, platform::ToWide(control.invitation));
      if (bound.info->sounds == app::Sounding::kNothing) {
        bound.view->Mark(control.listIndex);
      }
      return;
    case Look::kShapes:
      return bound.shapes->SetPicture(
          [&form, picture = bound.info->picture](double width, double height) {
            return (form.*picture)(width, height);
          },
          control.text);
    default:
      return;
  }
}

void CopyText(HWND window, Control& control) {
  const std::wstring text = WindowText(window);
  if (text != platform::ToWideLines(control.text)) {
    control.text = app::TextOfBox(platform::Utf8FromWide(text));
  }
}

}  // namespace

Binding::Binding(app::Form1& form, HWND parent, const Theme& theme, Dispatch dispatch)
    : form_(form), parent_(parent), theme_(theme), dispatch_(std::move(dispatch)) {
  for (const ControlInfo& info : app::Controls()) {
    bound_.push_back(Make(info));
    const HWND window = bound_.back().window;
    if (info.look != Look::kDrawing && info.look != Look::kShapes) {  // they describe themselves
      SetSpokenName(window, info.spoken);
    }
    if (info.leadsTo != app::kNoPage) {
      SetSpokenTab(window, false);
    } else if (app::IsButton(info.look) && !info.shortcut.empty()) {
      GiveFocusBack(window);
    }
    if (window != nullptr && bound_.back().browser == nullptr) {
      RepaintFrameWithFocus(window, parent_);
    }
  }
  ThemeChanged();
}

BoundControl Binding::Make(const ControlInfo& info) {
  BoundControl bound{};
  bound.info = &info;
  const int id = bound.Id();
  const auto make = [&]<typename Widget>(std::unique_ptr<Widget>& widget, auto... more) {
    widget = std::make_unique<Widget>(parent_, id, theme_, more...);
    bound.window = widget->window();
  };
  switch (info.look) {
    case Look::kDisplay:
      make(bound.display);
      break;
    case Look::kList:
      make(bound.list);
      bound.list->SetButtons(info.menu, [this](const app::MenuItem& item) {
        dispatch_([this, &item] { (form_.*item.handler)(); });
      });
      break;
    case Look::kDrawing:
      make(bound.view);
      break;
    case Look::kShapes:
      make(bound.shapes);
      break;
    case Look::kKeys:
      make(bound.keys, [this](std::string_view key, bool held) {
        dispatch_([this, key, held] { form_.keyRow_KeyPressed(key, held); });
      });
      break;
    case Look::kPage:
    case Look::kBanner: {
      using Links = platform::WebControl::Links;
      bound.browser = std::make_unique<platform::WebControl>(
          parent_, info.look == Look::kBanner ? Links::kReport : Links::kFollow,
          [parent = parent_] { PostMessageW(parent, kBannerLeft, 0, 0); });
      bound.window = bound.browser->window();
      SetWindowLongPtrW(bound.window, GWLP_ID, id);
      break;
    }
    default:
      bound.window = MakeWindow(info, parent_, id, theme_);
  }
  if (info.look == Look::kArea) {
    bound.waves = std::make_unique<FaultWaves>(bound.window, theme_);
  }
  return bound;
}

const BoundControl& Binding::Of(Control app::Form1::*member) const {
  return *std::ranges::find_if(
      bound_, [member](const BoundControl& row) { return row.info->member == member; });
}

const BoundControl& Binding::The(Look look) const {
  return *std::ranges::find(bound_, look,
                            [](const BoundControl& bound) { return bound.info->look; });
}

const BoundControl* Binding::Find(HWND window) const {
  const auto found = std::ranges::find_if(bound_, [window](const BoundControl& row) {
    return row.window != nullptr && (row.window == window || (row.info->look == Look::kComboBox &&
                                                              IsChild(row.window, window) != 0));
  });
  return window == nullptr || found == bound_.end() ? nullptr : &*found;
}

void Binding::CopyIn() {
  for (const BoundControl& bound : bound_) {
    Control& control = form_.*bound.info->member;
    const Look look = bound.info->look;
    if (look == Look::kLine || look == Look::kArea || look == Look::kComboBox) {
      CopyText(bound.window, control);
    }
    if (look == Look::kArea) {
      DWORD end = 0;
      Send(bound.window, EM_GETSEL, 0, &end);
      control.cursor = end;
    } else if (look == Look::kComboBox) {
      control.SetText(std::string(control.text));
    } else if (look == Look::kDisplay) {
      control.value = bound.display->ChosenPixelSize();
    } else if (look == Look::kSlider) {
      control.value = static_cast<int>(Send(bound.window, TBM_GETPOS));
    } else if (look == Look::kShapes) {
      control.value = bound.shapes->Hit();
    } else if (bound.list != nullptr && bound.list->Selected() != control.listIndex) {
      control.Select(bound.list->Selected());
    }
  }
}

void Binding::Draw() {
  drawing_ = true;
  for (BoundControl& bound : bound_) {
    const Control& control = form_.*bound.info->member;
    if (bound.info->look == Look::kTimer) {
      DrawTimer(bound, control, parent_);
    }
    if (bound.window == nullptr) {
      continue;
    }
    DrawContent(bound, control, form_);
    if ((IsWindowEnabled(bound.window) != 0) != control.enabled) {
      EnableWindow(bound.window, control.enabled ? TRUE : FALSE);
    }
    const bool shown = (GetWindowLongPtrW(bound.window, GWL_STYLE) & WS_VISIBLE) != 0;
    if (shown != control.Shows()) {
      ShowWindow(bound.window, control.Shows() ? SW_SHOWNA : SW_HIDE);
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
      const Look look = bound.info->look;
      const Font& font = look == Look::kArea ? theme_.mono : theme_.FontOf(bound.info->font);
      SetWindowFont(bound.window, font.get(), TRUE);
      if (look == Look::kComboBox) {
        Send(bound.window, CB_SETITEMHEIGHT, -1, theme_.control - theme_.Px(kGrid));
      }
    }
  }
}

void Binding::Raise(const BoundControl& bound, Event event) {
  if (drawing_) {
    return;
  }
  if (const app::Handler handler = app::HandlerOf(*bound.info, event)) {
    dispatch_([this, handler] { (form_.*handler)(); });
  } else if (event == Event::kClick) {
    dispatch_([] {});
  }
}

void Binding::Command(int id, int notification) {
  const int index = id - kFirstControlId;
  if (index < 0 || index >= static_cast<int>(bound_.size())) {
    return;
  }
  const BoundControl& bound = bound_[static_cast<std::size_t>(index)];
  if (app::IsButton(bound.info->look) || bound.info->look == Look::kShapes) {
    if (notification == BN_CLICKED) {
      Raise(bound, Event::kClick);
    }
    return;
  }
  switch (bound.info->look) {
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
        // The control sets its text only after this message.
        const auto row = Send(bound.window, CB_GETCURSEL);
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
}

void Binding::Tick(UINT_PTR timer) {
  for (const BoundControl& bound : bound_) {
    if (bound.info->look == Look::kTimer && static_cast<UINT_PTR>(bound.Id()) == timer) {
      Raise(bound, Event::kTick);
    }
  }
}

}  // namespace tonadex::shell
