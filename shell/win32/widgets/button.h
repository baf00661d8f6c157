#pragma once

#include <windows.h>

#include <string_view>

#include "shell/win32/theme.h"

namespace tonadex::shell {

enum class ButtonLook { kCommand, kPrimary, kNavigation, kKey, kLink };

// A push button that we paint and that stays the system's in all else: focus, mnemonic, access.
// A caption of two lines (CR LF) sets the second smaller.
HWND MakeButton(HWND parent, int id, ButtonLook look, std::string_view icon);

// The mark of the page that is shown.
void SetChecked(HWND button, bool checked);

// Answers the parent's WM_DRAWITEM.
void DrawButton(const DRAWITEMSTRUCT& item, const Theme& theme);

// How wide the button has to be for its caption.
int ButtonWidth(HWND button, const Theme& theme);

}  // namespace tonadex::shell
