#include "shell/win32/message_boxes.h"

#include <utility>

#include "platform/win32/wide_text.h"

namespace tonadex::shell {
namespace {

UINT IconFlag(core::Icon icon) {
  switch (icon) {
    case core::Icon::kInformation:
      return MB_ICONINFORMATION;
    case core::Icon::kExclamation:
      return MB_ICONEXCLAMATION;
    case core::Icon::kNone:
      break;
  }
  return 0;
}

thread_local const std::function<void(HWND)>* placeNext = nullptr;

// Called for each window activated in this thread; the first one is the box.
LRESULT CALLBACK Activated(int code, WPARAM wide, LPARAM data) {
  if (code == HCBT_ACTIVATE && placeNext != nullptr) {
    (*std::exchange(placeNext, nullptr))(reinterpret_cast<HWND>(wide));
  }
  return CallNextHookEx(nullptr, code, wide, data);
}

}  // namespace

void MessageBoxes::Show(const core::Message& message) {
  if (owner_.opening) {
    owner_.opening();
  }
  const std::wstring text = platform::ToWideLines(message.text);
  const std::wstring title = platform::ToWide(message.title);
  placeNext = owner_.place ? &owner_.place : nullptr;
  const HHOOK hook = SetWindowsHookExW(WH_CBT, Activated, nullptr, GetCurrentThreadId());
  MessageBoxW(owner_.window, text.c_str(), title.c_str(),
              MB_OK | IconFlag(message.icon) | (owner_.window == nullptr ? MB_TOPMOST : 0U));
  UnhookWindowsHookEx(hook);
  placeNext = nullptr;
  if (owner_.closed) {
    owner_.closed();
  }
}

}  // namespace tonadex::shell
