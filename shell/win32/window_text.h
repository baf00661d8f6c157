#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace tonadex::shell {

std::wstring WindowText(HWND window);
// Windows-1252.
std::string TextOf(HWND window);
// Sets the text (Windows-1252, any line ends) if it differs.
void SetText(HWND window, std::string_view text);
void SetWords(HWND window, const std::wstring& words);

// The caption without the ampersands of its mnemonics.
std::wstring PlainWords(const std::wstring& caption);

// The accessible name, which screen readers say.
void SetSpokenName(HWND window, std::string_view name);
// Makes screen readers call a button a tab.
void SetSpokenTab(HWND window, bool selected);

}  // namespace tonadex::shell
