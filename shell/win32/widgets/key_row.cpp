#include "shell/win32/widgets/key_row.h"

#include <algorithm>
#include <utility>

#include "platform/win32/wide_text.h"
#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"
#include "shell/win32/widgets/button.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

const app::ComposerKey& KeyAt(std::size_t index) {
  return index < app::kKeyCount ? app::ComposerKeys()[index] : app::kHoldKey;
}

}  // namespace

KeyRow::KeyRow(HWND parent, int id, const Theme& theme, Pressed pressed)
    : window_(MakeBareWindow(parent, 0, id)), theme_(theme), pressed_(std::move(pressed)) {
  SetWindowLongPtrW(window_, GWL_EXSTYLE, WS_EX_CONTROLPARENT);
  for (std::size_t i = 0; i < kCount; ++i) {
    const app::ComposerKey key = KeyAt(i);
    keys_[i] = MakeButton(window_, static_cast<int>(i), app::Look::kKeys, {}, theme);
    SetText(keys_[i], std::string(key.label) + "\r\n" + std::string(key.word));
    SetSpokenName(keys_[i], key.help);
    ShowWindow(keys_[i], SW_SHOWNA);
    HookWindow(keys_[i], [this](HWND, UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
      if (message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK) {
        downSince_ = GetTickCount64();
      }
      return std::nullopt;
    });
  }
  HookWindow(window_, [this](HWND, UINT message, WPARAM wide, LPARAM data) {
    return Handle(message, wide, data);
  });
}

void KeyRow::ForEachKey(const std::function<void(HWND, std::string_view)>& visit) const {
  for (std::size_t i = 0; i < kCount; ++i) {
    visit(keys_[i], KeyAt(i).help);
  }
}

int KeyRow::Rows(int width) const {
  int widest = 0;
  for (std::size_t i = 0; i < kCount; ++i) {
    widest = std::max(widest, TextWidth(theme_.small.get(), platform::ToWide(KeyAt(i).word)));
  }
  return (widest + theme_.Px(kFieldGap)) * static_cast<int>(kCount) <= width ? 1 : 2;
}

int KeyRow::Height(int width) const {
  return Rows(width) * (KeyHeight(theme_) + theme_.Px(kFieldGap)) - theme_.Px(kFieldGap);
}

void KeyRow::LayOut() {
  const RECT area = ClientArea(window_);
  const int rows = Rows(area.right), gap = theme_.Px(kFieldGap), height = KeyHeight(theme_);
  const int inRow = (static_cast<int>(kCount) + rows - 1) / rows;
  for (int i = 0; i < static_cast<int>(kCount); ++i) {
    const int column = i % inRow;
    const int left = (area.right + gap) * column / inRow;
    MoveWindow(keys_[static_cast<std::size_t>(i)], left, i / inRow * (height + gap),
               (area.right + gap) * (column + 1) / inRow - gap - left, height, TRUE);
  }
}

void KeyRow::Press(std::size_t index) {
  if (index == app::kKeyCount) {
    hold_ = !hold_;
    SetChecked(keys_[index], hold_);
    return;
  }
  const ULONGLONG since = std::exchange(downSince_, 0);
  const bool longPress = since != 0 && GetTickCount64() - since >= ULONGLONG{kHoldMs};
  pressed_(KeyAt(index).label, hold_ || longPress || GetKeyState(VK_SHIFT) < 0);
}

std::optional<LRESULT> KeyRow::Handle(UINT message, WPARAM wide, LPARAM data) {
  switch (message) {
    case WM_SIZE:
      LayOut();
      return 0;
    case WM_COMMAND:
      if (HIWORD(wide) == BN_CLICKED && LOWORD(wide) < kCount) {
        Press(LOWORD(wide));
      }
      return 0;
    case WM_DRAWITEM:
      return ReflectDraw(data);
    case WM_ERASEBKGND: {
      const RECT area = ClientArea(window_);
      FillRect(reinterpret_cast<HDC>(wide), &area,
               GroundUnder(window_, reinterpret_cast<HDC>(wide)));
      return 1;
    }
    case WM_CTLCOLORBTN:
      return reinterpret_cast<LRESULT>(GroundUnder(window_, reinterpret_cast<HDC>(wide)));
    default:
      return std::nullopt;
  }
}

}  // namespace tonadex::shell
