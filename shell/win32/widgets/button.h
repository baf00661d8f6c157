#pragma once

#include <windows.h>

#include <string_view>

#include "app/layout.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// An owner-drawn push button; focus, mnemonics and accessibility remain the system's. A phone's key
// (kKeys) has two lines, the second one smaller.
HWND MakeButton(HWND parent, int id, app::Look look, std::string_view icon, const Theme& theme);

// Marks the button of the page that is shown, or a key that is held.
void SetChecked(HWND button, bool checked);

// The colour of a mark.
void SetTone(HWND button, app::Tone tone);

// The size that the caption needs, in pixels.
app::Size ButtonSize(HWND button, const Theme& theme);
int KeyHeight(const Theme& theme);

}  // namespace tonadex::shell
