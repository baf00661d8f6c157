#include "core/windows1252.h"

#include <cstdint>
#include <cstring>

namespace tonadex::core {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr char32_t kMalformed = 0xFFFFFFFF;

struct Decoded {
  char32_t character;  // kMalformed when the bytes are not UTF-8
  std::size_t length;  // bytes consumed; 1 for a malformed byte
};

constexpr bool IsContinuation(unsigned char byte) {
  return (byte & 0xC0u) == 0x80;
}

Decoded DecodeOne(std::string_view bytes) {
  const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = byteAt(0);
  if (lead < 0x80) {
    return {lead, 1};
  }
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) {
    return {kMalformed, 1};
  }
  char32_t character = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (!IsContinuation(byteAt(i))) {
      return {kMalformed, 1};
    }
    character = (character << 6) | (byteAt(i) & 0x3Fu);
  }
  const bool overlong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (overlong || surrogate || character > 0x10FFFF) {
    return {kMalformed, 1};
  }
  return {character, length};
}

// The ASCII characters at the beginning, checked eight at a time: nearly all texts are pure ASCII.
std::string_view AsciiPrefix(std::string_view bytes) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::size_t at = 0;
  for (std::uint64_t eight = 0; at + sizeof eight <= bytes.size(); at += sizeof eight) {
    std::memcpy(&eight, bytes.data() + at, sizeof eight);
    if ((eight & kHighBits) != 0) {
      break;
    }
  }
  while (at < bytes.size() && static_cast<unsigned char>(bytes[at]) < 0x80) {
    ++at;
  }
  return bytes.substr(0, at);
}

// Appends a character above 0x7F as two or three bytes.
void AppendCharacter(std::string& utf8, char32_t character) {
  if (character < 0x800) {
    utf8 += static_cast<char>(0xC0 | (character >> 6));
  } else {
    utf8 += static_cast<char>(0xE0 | (character >> 12));
    utf8 += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
  }
  utf8 += static_cast<char>(0x80 | (character & 0x3F));
}

}  // namespace

bool IsUtf8(std::string_view bytes) {
  for (;;) {
    bytes.remove_prefix(AsciiPrefix(bytes).size());
    if (bytes.empty()) {
      return true;
    }
    const Decoded next = DecodeOne(bytes);
    if (next.character == kMalformed) {
      return false;
    }
    bytes.remove_prefix(next.length);
  }
}

std::string FromUtf8(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  for (;;) {
    const std::string_view plain = AsciiPrefix(utf8);
    text += plain;
    utf8.remove_prefix(plain.size());
    if (utf8.empty()) {
      return text;
    }
    const Decoded next = DecodeOne(utf8);
    text += FromUnicode(next.character);
    utf8.remove_prefix(next.length);
  }
}

std::string FromOutside(std::string_view bytes) {
  if (AsciiPrefix(bytes).size() == bytes.size() || !IsUtf8(bytes)) {
    return std::string(bytes);
  }
  if (bytes.starts_with(kByteOrderMark)) {
    bytes.remove_prefix(kByteOrderMark.size());
  }
  return FromUtf8(bytes);
}

std::string FromNative(const std::string& utf8) {
  return FromUtf8(utf8);
}

std::string FromNative(const std::wstring& utf16) {
  std::string text;
  for (const wchar_t unit : utf16) {
    text += FromUnicode(static_cast<char32_t>(unit));
  }
  return text;
}

void AppendUtf8(std::string& utf8, std::string_view text) {
  for (;;) {
    const std::string_view plain = AsciiPrefix(text);
    utf8 += plain;
    text.remove_prefix(plain.size());
    if (text.empty()) {
      return;
    }
    AppendCharacter(utf8, ToUnicode(static_cast<unsigned char>(text.front())));
    text.remove_prefix(1);
  }
}

std::string ToUtf8(std::string_view text) {
  std::string utf8;
  utf8.reserve(text.size());
  AppendUtf8(utf8, text);
  return utf8;
}

}  // namespace tonadex::core
