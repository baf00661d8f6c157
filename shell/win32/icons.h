#pragma once

#include <windows.h>

#include <string_view>

namespace tonadex::shell {

// Draws an icon as vector strokes into a square. Names are those of kIcons in icons.cpp; an unknown
// one draws nothing.
void DrawIcon(HDC context, std::string_view name, const RECT& square, COLORREF colour);

}  // namespace tonadex::shell
