#pragma once

#include <windows.h>

#include <string>
#include <string_view>

// The texts of windows.
namespace tonadex::shell {

std::wstring WindowText(HWND window);
// Windows-1252.
std::string TextOf(HWND window);
// Sets the text (Windows-1252) where it differs: line ends as edit controls want them.
void SetText(HWND window, std::string_view text);
void SetWords(HWND window, const std::wstring& words);

// A caption without the marks of its mnemonics.
std::wstring PlainWords(const std::wstring& caption);

// What those hear who do not see the window.
void SetSpokenName(HWND window, std::string_view name);

}  // namespace tonadex::shell
