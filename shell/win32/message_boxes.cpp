#include "shell/win32/message_boxes.h"

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

}  // namespace

void MessageBoxes::Show(const core::Message& message) {
  if (owner_.opening) {
    owner_.opening();
  }
  if (owner_.showInWindow && owner_.showInWindow(message)) {
    return;
  }
  const std::wstring text = platform::ToWideLines(message.text);
  const std::wstring title = platform::ToWide(message.title);
  MessageBoxW(owner_.window, text.c_str(), title.c_str(),
              MB_OK | IconFlag(message.icon) | (owner_.window == nullptr ? MB_TOPMOST : 0U));
}

}  // namespace tonadex::shell
