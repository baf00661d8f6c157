#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

// Conversions of text. Inside the program all text is Windows-1252, one byte per character.
namespace tonadex::core {

// The Unicode character of each byte from 0x80 to 0x9F. The five bytes that Windows-1252 leaves
// unassigned (81, 8D, 8F, 90, 9D) map to the control characters with the same code.
inline constexpr std::array<char32_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// The Unicode character of a Windows-1252 byte.
constexpr char32_t ToUnicode(unsigned char byte) {
  return byte >= 0x80 && byte <= 0x9F ? kHighControls[byte - std::size_t{0x80}] : byte;
}

// The Windows-1252 byte of a Unicode character, "?" when it has none.
constexpr char FromUnicode(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) {
    return static_cast<char>(character);
  }
  for (std::size_t i = 0; i < kHighControls.size(); ++i) {
    if (kHighControls[i] == character) {
      return static_cast<char>(0x80 + i);
    }
  }
  return '?';
}

// Whether the bytes are well-formed UTF-8 (no overlong forms, no surrogates, at most U+10FFFF).
bool IsUtf8(std::string_view bytes);

// Windows-1252 text of well-formed UTF-8; each malformed byte becomes "?".
std::string FromUtf8(std::string_view utf8);

// Converts bytes of unknown encoding to Windows-1252: valid UTF-8 is decoded (without its byte
// order mark), anything else is taken as Windows-1252.
std::string FromOutside(std::string_view bytes);

// Windows-1252 text of path::native(): UTF-8 on POSIX, UTF-16 (maybe with lone surrogates) on
// Windows.
std::string FromNative(const std::string& utf8);
std::string FromNative(const std::wstring& utf16);

std::string ToUtf8(std::string_view text);
void AppendUtf8(std::string& utf8, std::string_view text);

// A u8 literal converted at compile time; it does not compile with a character that Windows-1252
// lacks. Used through the literal operator below: u8"melodía"_w.
template <std::size_t kSize>
struct Windows1252Literal {
  consteval Windows1252Literal(const char8_t (&utf8)[kSize]) {  // NOLINT: implicit by design
    std::size_t at = 0;
    while (at + 1 < kSize) {
      char32_t character = utf8[at++];
      const int more = character < 0x80 ? 0 : character < 0xE0 ? 1 : character < 0xF0 ? 2 : 3;
      character &= more == 0 ? 0x7F : more == 1 ? 0x1F : more == 2 ? 0x0F : 0x07;
      for (int i = 0; i < more; ++i) {
        character = (character << 6) | (utf8[at++] & 0x3Fu);
      }
      const char byte = FromUnicode(character);
      if (byte == '?' && character != '?') {
        throw "a literal holds a character that Windows-1252 lacks";
      }
      bytes[size++] = byte;
    }
  }

  std::array<char, kSize> bytes{};
  std::size_t size = 0;
};

inline namespace literals {

template <Windows1252Literal kLiteral>
consteval std::string_view operator""_w() {
  return {kLiteral.bytes.data(), kLiteral.size};
}

}  // namespace literals

}  // namespace tonadex::core
