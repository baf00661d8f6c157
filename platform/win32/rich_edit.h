#pragma once

#include <windows.h>

#include <string>
#include <string_view>

// The system's rich-text control, as a window.
namespace tonadex::platform {

// Creates the control, as a child of `parent` or, if that is null, as a hidden top-level window.
// nullptr when the system lacks the control.
HWND MakeRichEdit(HWND parent, DWORD style);

// Get and replace the whole RTF source; false when the source is not RTF.
std::string RichEditSource(HWND richEdit);
bool SetRichEditSource(HWND richEdit, std::string_view source);

}  // namespace tonadex::platform
