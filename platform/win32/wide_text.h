#pragma once

#include <string>
#include <string_view>

// Conversion of Windows-1252 to and from UTF-16, which the system's W functions use.
namespace tonadex::platform {

std::wstring ToWide(std::string_view text);
// A character that Windows-1252 lacks becomes one "?".
std::string FromWide(std::wstring_view wide);

// The same for UTF-8. Malformed sequences become U+FFFD.
std::wstring WideFromUtf8(std::string_view utf8);
std::string Utf8FromWide(std::wstring_view wide);

// Converts to UTF-16 with CR LF line ends, as edit controls require.
std::wstring ToWideLines(std::string_view text);

}  // namespace tonadex::platform
