#pragma once

#include <windows.h>

#include <string_view>

#include "app/controls.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// A push button that we paint and that stays the system's in all else: focus, mnemonic, access.
// A phone's key (kKeys) sets the second of its two lines smaller.
HWND MakeButton(HWND parent, int id, app::Look look, std::string_view icon, const Theme& theme);

// The mark of the page that is shown, and of a key that stays down.
void SetChecked(HWND button, bool checked);

// How large the button has to be for its caption.
SIZE ButtonSize(HWND button, const Theme& theme);
int KeyHeight(const Theme& theme);

}  // namespace tonadex::shell
