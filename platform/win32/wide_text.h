#pragma once

#include <string>
#include <string_view>

// UTF-16, which the system's W functions speak, from and to the program's texts.
namespace tonadex::platform {

std::wstring ToWide(std::string_view text);
// A character that Windows-1252 lacks becomes one "?".
std::string FromWide(std::wstring_view wide);

// The same from and to UTF-8; what is malformed becomes U+FFFD.
std::wstring WideFromUtf8(std::string_view utf8);
std::string Utf8FromWide(std::wstring_view wide);

// The text with every line ended by CR LF, as edit controls want it.
std::wstring ToWideLines(std::string_view text);

}  // namespace tonadex::platform
