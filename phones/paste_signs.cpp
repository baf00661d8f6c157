#include "phones/paste_signs.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <utility>

#include "core/melody_file.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "phones/rtttl_repair.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;

constexpr std::size_t kLongestEntity = 10, kLongestTag = 200;
constexpr std::string_view kEscapedByPercent = " #,:=.;\r\n";

struct Sign {
  char32_t character;
  std::string_view plain;
};

// Replacements, first those of Windows-1252 characters. Full-width letters and the blanks of U+2000
// to U+200A are handled by code.
constexpr auto kSigns = std::to_array<Sign>({
    {0x82, ","},   // mojibake of Windows-1252's low comma
    {0x85, "\n"},  // next line
    {0xA0, " "},   // no-break space
    {0xAB, "\""},
    {0xAD, ""},
    {0xB4, "'"},
    {0xB7, " "},
    {0xBB, "\""},
    {0x2010, "-"},
    {0x2011, "-"},
    {0x2012, "-"},
    {0x2013, "-"},
    {0x2014, "-"},
    {0x2018, "'"},
    {0x2019, "'"},
    {0x201A, ","},
    {0x201C, "\""},
    {0x201D, "\""},
    {0x201E, "\""},
    {0x2022, " "},
    {0x2026, " "},
    {0x2028, "\n"},
    {0x2029, "\n"},
    {0x202F, " "},
    {0x205F, " "},
    {0x2060, ""},
    {0x2212, "-"},
    {0x266D, "b"},
    {0x266F, "#"},
    {0x3000, " "},
    {0x3001, ","},
    {0xFEFF, ""},
    // Cyrillic letters that look like those of notes
    {0x0430, "a"},
    {0x0432, "b"},
    {0x0435, "e"},
    {0x043E, "o"},
    {0x0440, "p"},
    {0x0441, "c"},
    {0x0410, "A"},
    {0x0412, "B"},
    {0x0415, "E"},
    {0x0420, "P"},
    {0x0421, "C"},
});

// The replacement of a character; nullopt when it is not replaced.
std::optional<std::string> Plain(char32_t character) {
  const auto sign = std::ranges::find(kSigns, character, &Sign::character);
  if (sign != kSigns.end()) {
    return std::string(sign->plain);
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

std::optional<std::uint32_t> ReadCode(std::string_view digits, std::uint32_t base) {
  std::uint32_t code = 0;
  for (const char c : digits) {
    const char lower = core::ToLower(c);
    const int digit = core::IsDigit(c)               ? c - '0'
                      : lower >= 'a' && lower <= 'f' ? lower - 'a' + 10
                                                     : 99;
    if (digit >= static_cast<int>(base) || code > 0x10FFFF) {
      return std::nullopt;
    }
    code = code * base + static_cast<std::uint32_t>(digit);
  }
  return digits.empty() ? std::nullopt : std::optional(code);
}

// Characters at the beginning of a text, and their replacement.
struct Piece {
  std::size_t length = 0;  // of the replaced characters; 0: nothing is replaced
  std::string plain;
};

Piece Entity(std::string_view text) {
  struct Name {
    std::string_view name, plain;
  };
  constexpr auto kNames = std::to_array<Name>(
      {{"amp", "&"},        {"quot", "\""},      {"apos", "'"},       {"ldquo", "\""},
       {"rdquo", "\""},     {"bdquo", "\""},     {"laquo", "\""},     {"raquo", "\""},
       {"lsquo", "'"},      {"rsquo", "'"},      {"ndash", "-"},      {"mdash", "-"},
       {"minus", "-"},      {"hellip", " "},     {"bull", " "},       {"comma", ","},
       {"equals", "="},     {"period", "."},     {"lt", "<"},         {"gt", ">"},
       {"nbsp", " "},       {"num", "#"},        {"sharp", "#"},      {"flat", "b"},
       {"colon", ":"},      {"aacute", u8"á"_w}, {"eacute", u8"é"_w}, {"iacute", u8"í"_w},
       {"oacute", u8"ó"_w}, {"uacute", u8"ú"_w}, {"ntilde", u8"ñ"_w}, {"uuml", u8"ü"_w}});
  const std::size_t end = text.substr(0, kLongestEntity).find(';');
  if (end == text.npos) {
    return {};
  }
  const std::string name = core::ToLower(text.substr(1, end - 1));
  const auto known = std::ranges::find(kNames, name, &Name::name);
  if (known != kNames.end()) {
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
