#include "shell/win32/widgets/button.h"

#include <memory>

#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"
#include "shell/win32/icons.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

using app::Look;

constexpr wchar_t kFaceProperty[] = L"TonadexFace";
constexpr int kIconSize = 20, kNavigationIconSize = 24, kNavigationWidth = 84;

struct Face {
  Look look;
  std::string_view icon;
  bool hot = false, checked = false;
  app::Tone tone = app::Tone::kText;
};

Face* FaceOf(HWND button) {
  return static_cast<Face*>(GetPropW(button, kFaceProperty));
}

void SetHot(HWND button, Face& face, bool hot) {
  if (face.hot == hot) {
    return;
  }
  face.hot = hot;
  InvalidateRect(button, nullptr, TRUE);
  if (hot) {
    TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, button, 0};
    TrackMouseEvent(&track);
  }
}

bool IsUnderMouse(HWND window) {
  POINT mouse{};
  return GetCursorPos(&mouse) != 0 && WindowFromPoint(mouse) == window;
}

struct Ink {
  COLORREF fill, frame, text;
  int frameWidth;
};

Ink InkOf(const Face& face, const DRAWITEMSTRUCT& item, const Theme& theme) {
  const Colours& c = theme.colours;
  const bool focus = (item.itemState & ODS_FOCUS) != 0;
  const bool pressed = (item.itemState & ODS_SELECTED) != 0;
  const bool primary = face.look == Look::kPrimary && face.checked;
  Ink ink{c.card, c.border, c.text, theme.Px(1)};
  if (face.look == Look::kNavigation || face.look == Look::kLink) {
    ink.fill = ink.frame = c.card;
    ink.text = face.checked ? c.accent : c.text;
  } else if (primary) {
    ink = {c.accent, c.accent, c.accentText, theme.Px(1)};
  }
  if (face.look == Look::kMark && (face.tone == app::Tone::kBad || face.tone == app::Tone::kGood)) {
    ink.text = ink.frame = face.tone == app::Tone::kBad ? c.bad : c.good;
  }
  if (face.checked && (face.look == Look::kKeys || face.look == Look::kChoice)) {
    ink.fill = c.accentWash;
    ink.frame = c.accent;
  }
  if (face.hot && !pressed) {
    ink.fill = primary ? Blend(c.text, c.accent, 0.15) : c.hover;
  }
  if (pressed && !primary) {
    ink.fill = c.accentWash;
  }
  if ((item.itemState & ODS_DISABLED) != 0) {
    ink = {c.window, c.border, c.faint, theme.Px(1)};
  }
  if (focus) {
    ink.frame = primary ? c.text : c.accent;
    ink.frameWidth = theme.Px(2);
  }
  return ink;
}

// Of a button's words beside its picture.
HFONT FontOf(Look look, const Theme& theme) {
  return (look == Look::kMark ? theme.bold : look == Look::kLink ? theme.small : theme.body).get();
}

UINT PrefixFlag(const DRAWITEMSTRUCT& item) {
  return (item.itemState & ODS_NOACCEL) != 0 ? DT_HIDEPREFIX : 0U;
}

void DrawNavigation(const DRAWITEMSTRUCT& item, const Face& face, const Ink& ink,
                    const Theme& theme) {
  const RECT& box = item.rcItem;
  const int size = theme.Px(kNavigationIconSize);
  const int left = (box.left + box.right - size) / 2;
  const int top = box.top + theme.Px(kGrid);
  DrawIcon(item.hDC, face.icon, {left, top, left + size, top + size}, ink.text);
  RECT words = box;
  words.top = top + size + theme.Px(2);
  Words(item.hDC, WindowText(item.hwndItem), words,
        face.checked ? theme.bold.get() : theme.body.get(), ink.text,
        DT_CENTER | DT_SINGLELINE | PrefixFlag(item));
  if (face.checked) {
    RECT mark = box;
    mark.top = mark.bottom - theme.Px(3);
    Fill(item.hDC, mark, theme.colours.accent);
  }
}

void DrawKey(const DRAWITEMSTRUCT& item, const Ink& ink, const Theme& theme) {
  const std::wstring caption = WindowText(item.hwndItem);
  const std::size_t end = caption.find(L"\r\n");
  RECT upper = item.rcItem;
  upper.top += theme.Px(3);
  Words(item.hDC, caption.substr(0, end), upper, theme.bold.get(), ink.text,
        DT_CENTER | DT_SINGLELINE | DT_NOPREFIX);
  if (end != std::wstring::npos) {
    RECT lower = item.rcItem;
    lower.top += theme.Px(2) + theme.line;
    Words(item.hDC, caption.substr(end + 2), lower, theme.small.get(), theme.colours.muted,
          DT_CENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
  }
}

void DrawCard(const DRAWITEMSTRUCT& item, const Face& face, const Ink& ink, const Theme& theme) {
  const std::wstring caption = WindowText(item.hwndItem);
  const std::size_t end = std::min(caption.find(L"\r\n"), caption.size());
  const int icon = theme.Px(kNavigationIconSize), left = item.rcItem.left + theme.Px(kPageMargin);
  const int top = (item.rcItem.top + item.rcItem.bottom - icon) / 2;
  DrawIcon(item.hDC, face.icon, {left, top, left + icon, top + icon}, theme.colours.accent);
  RECT line = item.rcItem;
  InflateRect(&line, -theme.Px(kGrid), -theme.Px(kGrid));
  line.left = left + icon + theme.Px(kPageMargin);
  constexpr UINT kFormat = DT_LEFT | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS;
  Words(item.hDC, caption.substr(0, end), line, theme.bold.get(), ink.text, kFormat);
  line.top += theme.line;
  Words(item.hDC, caption.substr(std::min(end + 2, caption.size())), line, theme.small.get(),
        theme.colours.muted, kFormat);
}

void DrawCommand(const DRAWITEMSTRUCT& item, const Face& face, const Ink& ink, const Theme& theme) {
  const std::wstring caption = WindowText(item.hwndItem);
  const int icon = face.icon.empty() ? 0 : theme.Px(kIconSize);
  const int gap = icon == 0 ? 0 : theme.Px(6);
  const HFONT font = FontOf(face.look, theme);
  const int width = icon + gap + TextWidth(font, PlainWords(caption));
  RECT words = item.rcItem;
  words.left = std::max(words.left + LONG{theme.Px(4)}, (words.left + words.right - width) / 2);
  const int top = (words.top + words.bottom - icon) / 2;
  DrawIcon(item.hDC, face.icon, {words.left, top, words.left + icon, top + icon}, ink.text);
  words.left += icon + gap;
  words.right -= theme.Px(4);
  Words(item.hDC, caption, words, font, ink.text,
        DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | PrefixFlag(item));
}

void Draw(const DRAWITEMSTRUCT& item, const Face& face, const Theme& theme) {
  FillRect(item.hDC, &item.rcItem, GroundUnder(item.hwndItem, item.hDC));
  const Ink ink = InkOf(face, item, theme);
  RoundedBox(item.hDC, item.rcItem,
             face.look == Look::kNavigation ? 1
             : face.look == Look::kMark     ? theme.Px(12)
                                            : theme.Px(kRadius),
             ink.fill, ink.frame, ink.frameWidth);
  if (face.look == Look::kNavigation) {
    DrawNavigation(item, face, ink, theme);
  } else if (face.look == Look::kKeys) {
    DrawKey(item, ink, theme);
  } else if (face.look == Look::kCard) {
    DrawCard(item, face, ink, theme);
  } else {
    DrawCommand(item, face, ink, theme);
  }
}

}  // namespace

HWND MakeButton(HWND parent, int id, Look look, std::string_view icon, const Theme& theme) {
  const HWND button = MakeChild(L"BUTTON", WS_TABSTOP | BS_OWNERDRAW, parent, id);
  auto face = std::make_shared<Face>(Face{look, icon});
  SetPropW(button, kFaceProperty, face.get());
  HookWindow(
      button,
      [face, &theme](HWND window, UINT message, WPARAM, LPARAM data) -> std::optional<LRESULT> {
        if (message == WM_MOUSEMOVE) {
          SetHot(window, *face, true);
        } else if (message == WM_MOUSELEAVE) {
          SetHot(window, *face, false);
        } else if (message == WM_ERASEBKGND) {
          return 1;
        } else if (message == kDrawYourself) {
          face->hot = face->hot && IsUnderMouse(window);  // the leaving may get lost
          Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(data), *face, theme);
          return TRUE;
        }
        return std::nullopt;
      });
  return button;
}

void SetChecked(HWND button, bool checked) {
  Face* face = FaceOf(button);
  if (face->checked != checked) {
    face->checked = checked;
    InvalidateRect(button, nullptr, TRUE);
    if (face->look == Look::kNavigation) {
      SetSpokenTab(button, checked);
    }
  }
}

void SetTone(HWND button, app::Tone tone) {
  Face* face = FaceOf(button);
  if (face->tone != tone) {
    face->tone = tone;
    InvalidateRect(button, nullptr, TRUE);
  }
}

app::Size ButtonSize(HWND button, const Theme& theme) {
  const Face* face = FaceOf(button);
  const std::wstring caption = PlainWords(WindowText(button));
  if (face->look == Look::kNavigation) {
    return {std::max(theme.Px(kNavigationWidth),
                     TextWidth(theme.bold.get(), caption) + theme.Px(3 * kGrid)),
            theme.line + theme.Px(kGrid + kNavigationIconSize + 2 + 9)};
  }
  if (face->look == Look::kMark) {
    return {TextWidth(FontOf(face->look, theme), caption) + theme.Px(3 * kGrid),
            theme.line + theme.Px(6)};
  }
  if (face->look == Look::kCard) {
    return {0, theme.line + theme.smallLine + theme.Px(2 * kGrid)};
  }
  const int icon = face->icon.empty() ? 0 : theme.Px(kIconSize + 6);
  return {TextWidth(FontOf(face->look, theme), caption) + icon + theme.Px(4 * kGrid),
          theme.control};
}

int KeyHeight(const Theme& theme) {
  return theme.line + theme.smallLine + theme.Px(7);
}

}  // namespace tonadex::shell
