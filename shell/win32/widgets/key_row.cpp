#include "shell/win32/widgets/key_row.h"

#include "platform/win32/wide_text.h"
#include "shell/common/look.h"
#include "shell/win32/hook.h"
#include "shell/win32/widgets/button.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {

KeyRow::KeyRow(HWND parent, int firstId, Pressed pressed)
    : firstId_(firstId), pressed_(std::move(pressed)) {
  const auto& keys = app::ComposerKeys();
  for (std::size_t i = 0; i < keys.size(); ++i) {
    keys_[i] = MakeButton(parent, firstId + static_cast<int>(i), ButtonLook::kKey, {});
    SetWords(keys_[i], platform::ToWide(keys[i].label) + L"\r\n" + platform::ToWide(keys[i].word));
    SetSpokenName(keys_[i], keys[i].help);
    HookWindow(keys_[i], [this](HWND, UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
      if (message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK) {
        downSince_ = GetTickCount64();
      }
      return std::nullopt;
    });
  }
}

bool KeyRow::Command(int id) {
  const int index = id - firstId_;
  if (index < 0 || index >= static_cast<int>(keys_.size())) {
    return false;
  }
  const bool held =
      (downSince_ != 0 && GetTickCount64() - downSince_ >= static_cast<ULONGLONG>(kHoldMs)) ||
      GetKeyState(VK_SHIFT) < 0;
  downSince_ = 0;
  pressed_(app::ComposerKeys()[static_cast<std::size_t>(index)].label, held);
  return true;
}

}  // namespace tonadex::shell
