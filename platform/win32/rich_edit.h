#pragma once

#include <windows.h>

#include <string>
#include <string_view>

// The system's rich-text control, as a window.
namespace tonadex::platform {

// Creates the control, as a child of `parent` or, without one, as a hidden top-level window.
// nullptr when the system has no such control.
HWND MakeRichEdit(HWND parent, DWORD style);

// Gets and replaces the whole RTF source. False when the source is not RTF.
std::string RichEditSource(HWND richEdit);
bool SetRichEditSource(HWND richEdit, std::string_view source);

}  // namespace tonadex::platform
