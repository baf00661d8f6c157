#pragma once

#include <windows.h>

#include "shell/win32/theme.h"

namespace tonadex::shell {

// The line shown while a request runs: its text and a bar that moves on with each painting.
HWND MakeBusyLine(HWND parent, int id, const Theme& theme);
int BusyLineHeight(const Theme& theme);

}  // namespace tonadex::shell
