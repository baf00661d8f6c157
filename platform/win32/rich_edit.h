#pragma once

#include <windows.h>

#include <string>
#include <string_view>

// The system's rich-text control, as a window.
namespace tonadex::platform {

// A new control, `style` added to WS_CHILD or, without a parent, a hidden window of its own.
// nullptr when the system has none.
HWND MakeRichEdit(HWND parent, DWORD style);

// The whole RTF source, and its replacement. False when the source is no RTF.
std::string RichEditSource(HWND richEdit);
bool SetRichEditSource(HWND richEdit, std::string_view source);

}  // namespace tonadex::platform
