#pragma once

#include <windows.h>

#include "shell/win32/theme.h"

namespace tonadex::shell {

// Its text and a line that moves on whenever it is painted, shown while a request runs.
HWND MakeBusyLine(HWND parent, int id, const Theme& theme);
int BusyLineHeight(const Theme& theme);

}  // namespace tonadex::shell
