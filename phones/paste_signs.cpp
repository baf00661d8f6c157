#include "phones/paste_signs.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>

#include "core/melody_file.h"
#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;

constexpr std::size_t kLongestEntity = 10, kLongestTag = 200;
constexpr std::string_view kEscapedByPercent = " #,:=.;\r\n";

// Replaced characters. Full-width letters and the blanks of U+2000 to U+200A are handled by code.
struct Signs {
  std::u32string_view characters;
  std::string_view plain;
};
constexpr Signs kSigns[] = {
    {U"\u2010\u2011\u2012\u2013\u2014\u2212", "-"},
    {U"\u00B4\u2018\u2019", "'"},
    {U"\u00AB\u00BB\u201C\u201D\u201E", "\""},
    {U"\x82\u201A\u3001", ","},  // 0x82 is Windows-1252's low comma, decoded wrongly
    {U"\u00A0\u00B7\u2022\u2026\u202F\u205F\u3000", " "},
    {U"\x85\u2028\u2029", "\n"},
    {U"\u00AD\u2060\uFEFF", ""},
    {U"\u266D", "b"},
    {U"\u266F", "#"},
};

// Cyrillic letters that look like those of notes, and the letters meant.
constexpr std::u32string_view kCyrillic =
    U"\u0430\u0432\u0435\u043E\u0440\u0441\u0410\u0412\u0415\u0420\u0421";
constexpr std::string_view kLatin = "abeopcABEPC";
static_assert(kCyrillic.size() == kLatin.size());

// The replacement of a character; nullopt when it is not replaced.
std::optional<std::string> Plain(char32_t character) {
  for (const Signs& signs : kSigns) {
    if (signs.characters.find(character) != signs.characters.npos) {
      return std::string(signs.plain);
    }
  }
  if (const std::size_t at = kCyrillic.find(character); at != kCyrillic.npos) {
    return std::string(1, kLatin[at]);
  }
  if (character >= 0xFF01 && character <= 0xFF5E) {  // full-width forms of "!" to "~"
    return std::string(1, static_cast<char>(character - 0xFEE0));
  }
  if (character >= 0x2000 && character <= 0x200A) {
    return " ";
  }
  if ((character >= 0x200B && character <= 0x200F) ||
      (character >= 0x0300 && character <= 0x036F) ||  // an accent that follows its letter
      (character < 0x20 && character != '\n' && character != '\t')) {
    return "";
  }
  return std::nullopt;
}

std::string PlainOrSame(char32_t character) {
  return Plain(character).value_or(std::string(1, core::FromUnicode(character)));
}

std::optional<std::uint32_t> ReadCode(std::string_view digits, int base) {
  std::uint32_t code = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, code, base);
  return error == std::errc() && stop == end ? std::optional(code) : std::nullopt;
}

// The replacement of the characters at the beginning of a text.
struct Piece {
  std::size_t length = 0;  // of the replaced characters; 0: nothing is replaced
  std::string plain;
};

Piece Entity(std::string_view text) {
  struct Name {
    std::string_view name, plain;
  };
  constexpr Name kNames[] = {
      {"amp", "&"},        {"quot", "\""},      {"apos", "'"},       {"ldquo", "\""},
      {"rdquo", "\""},     {"bdquo", "\""},     {"laquo", "\""},     {"raquo", "\""},
      {"lsquo", "'"},      {"rsquo", "'"},      {"ndash", "-"},      {"mdash", "-"},
      {"minus", "-"},      {"hellip", " "},     {"bull", " "},       {"comma", ","},
      {"equals", "="},     {"period", "."},     {"lt", "<"},         {"gt", ">"},
      {"nbsp", " "},       {"num", "#"},        {"sharp", "#"},      {"flat", "b"},
      {"colon", ":"},      {"aacute", u8"á"_w}, {"eacute", u8"é"_w}, {"iacute", u8"í"_w},
      {"oacute", u8"ó"_w}, {"uacute", u8"ú"_w}, {"ntilde", u8"ñ"_w}, {"uuml", u8"ü"_w}};
  const std::size_t end = text.substr(0, kLongestEntity).find(';');
  if (end == text.npos) {
    return {};
  }
  const std::string name = core::ToLower(text.substr(1, end - 1));
  const auto* known = std::ranges::find(kNames, name, &Name::name);
  if (known != std::end(kNames)) {
    const bool capital = core::ToLower(text[1]) != text[1];
    return {end + 1, capital ? core::ToUpper(known->plain) : std::string(known->plain)};
  }
  if (!name.starts_with('#')) {
    return {};
  }
  const bool hexadecimal = name.starts_with("#x");
  const auto code =
      ReadCode(std::string_view(name).substr(hexadecimal ? 2 : 1), hexadecimal ? 16 : 10);
  return code ? Piece{end + 1, PlainOrSame(*code)} : Piece{};
}

// A tag is replaced by a line end, except one that formats characters within a line.
Piece Tag(std::string_view text) {
  constexpr std::array<std::string_view, 9> kInLine = {"b",  "i",    "u",    "em",  "strong",
                                                       "tt", "span", "code", "font"};
  const std::size_t end = text.substr(0, kLongestTag).find('>');
  const std::size_t start = text.size() > 1 && text[1] == '/' ? 2 : 1;
  if (end == text.npos || start >= end || core::ToLower(text[start]) < 'a' ||
      core::ToLower(text[start]) > 'z') {
    return {};
  }
  const std::string tag = core::ToLower(text.substr(start, end - start));
  const std::string_view name = std::string_view(tag).substr(0, tag.find_first_of(" /"));
  return {end + 1, std::ranges::find(kInLine, name) == kInLine.end() ? "\n" : ""};
}

Piece PercentEscape(std::string_view text) {
  const auto code = text.size() < 3 ? std::nullopt : ReadCode(text.substr(1, 2), 16);
  if (!code || *code > 0x7F ||
      kEscapedByPercent.find(static_cast<char>(*code)) == kEscapedByPercent.npos) {
    return {};
  }
  return {3, std::string(1, *code == '\r' ? '\n' : static_cast<char>(*code))};
}

// The replacement for the beginning of the text, if there is one.
Piece PieceAt(std::string_view text) {
  const std::string_view three = text.substr(0, 3);
  switch (text.front()) {
    case '\r':
      return {std::size_t{text.starts_with("\r\n") ? 2u : 1u}, "\n"};
    case '&':
      return Entity(text);
    case '<':
      return Tag(text);
    case '%':
      return PercentEscape(text);
    case '\xC2':  // a no-break space in UTF-8, decoded as two characters
      return text.starts_with("\xC2\xA0") ? Piece{2, " "} : Piece{};
    case '\xEF':  // byte order mark
      return three == "\xEF\xBB\xBF" ? Piece{3, ""} : Piece{};
    case 'j':
    case 'J':
      return core::ToLower(text.substr(0, core::kSharpEscape.size())) == core::kSharpEscape
                 ? Piece{core::kSharpEscape.size(), "#"}
                 : Piece{};
    default:
      break;
  }
  const auto plain = Plain(core::ToUnicode(core::Code(text.front())));
  return plain ? Piece{1, *plain} : Piece{};
}

}  // namespace

std::string PlainSigns(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  while (!text.empty()) {
    const Piece piece = PieceAt(text);
    plain += piece.length == 0 ? text.substr(0, 1) : std::string_view(piece.plain);
    text.remove_prefix(std::max<std::size_t>(piece.length, 1));
  }
  return plain;
}

std::string FromPasted(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) {  // UTF-16, whose zero bytes PlainSigns drops
    bytes.remove_prefix(2);
  }
  if (!core::IsUtf8(bytes)) {
    return std::string(bytes);
  }
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size();) {
    const unsigned char lead = core::Code(bytes[at++]);
    const int more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    char32_t character = more == 0 ? lead : lead & (0x3Fu >> more);
    for (int i = 0; i < more; ++i) {
      character = (character << 6) | (core::Code(bytes[at++]) & 0x3Fu);
    }
    const char plain = core::FromUnicode(character);
    if (plain == '?' && character != '?') {
      text += PlainOrSame(character);
    } else {
      text += plain;
    }
  }
  return text;
}

}  // namespace tonadex::phones
