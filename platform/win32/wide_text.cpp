#include "platform/win32/wide_text.h"

#include <windows.h>

#include "core/windows1252.h"

namespace tonadex::platform {
namespace {

constexpr wchar_t kFirstHighSurrogate = 0xD800;
constexpr wchar_t kFirstLowSurrogate = 0xDC00;

}  // namespace

std::wstring ToWide(std::string_view text) {
  std::wstring wide;
  wide.reserve(text.size());
  for (const char c : text) {
    wide += static_cast<wchar_t>(core::ToUnicode(static_cast<unsigned char>(c)));
  }
  return wide;
}

std::string FromWide(std::wstring_view wide) {
  std::string text;
  text.reserve(wide.size());
  for (std::size_t i = 0; i < wide.size(); ++i) {
    const bool pair = (wide[i] & 0xFC00) == kFirstHighSurrogate && i + 1 < wide.size() &&
                      (wide[i + 1] & 0xFC00) == kFirstLowSurrogate;
    text += core::FromUnicode(wide[i]);
    i += pair ? std::size_t{1} : 0;
  }
  return text;
}

std::wstring WideFromUtf8(std::string_view utf8) {
  const int size = static_cast<int>(utf8.size());
  std::wstring wide(utf8.size(), L'\0');  // never longer
  const int count = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(count));
  return wide;
}

std::string Utf8FromWide(std::wstring_view wide) {
  const int size = static_cast<int>(wide.size());
  std::string utf8(3 * wide.size(), '\0');  // never longer
  const int count = WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(),
                                        static_cast<int>(utf8.size()), nullptr, nullptr);
  utf8.resize(static_cast<std::size_t>(count));
  return utf8;
}

std::wstring ToWideLines(std::string_view text) {
  std::wstring lines;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r' && text[i] != '\n') {
      lines += ToWide(text.substr(i, 1));
      continue;
    }
    lines += L"\r\n";
    i += text.substr(i, 2) == "\r\n" ? std::size_t{1} : 0;
  }
  return lines;
}

}  // namespace tonadex::platform
