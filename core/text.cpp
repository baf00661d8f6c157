#include "core/text.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/runtime_error.h"
#include "core/windows1252.h"

namespace tonadex::core {
namespace {

constexpr bool IsUpper(unsigned code) {
  return (code >= 'A' && code <= 'Z') || (code >= 0xC0 && code <= 0xDE && code != 0xD7);
}

// The lower-case byte of each byte: the Latin letters are 0x20 apart, but S and Z with caron, OE
// and Y with diaeresis are at 0x80 to 0x9F.
constexpr auto kLower = [] {
  std::array<char, 256> table{};
  for (unsigned code = 0; code < 256; ++code) {
    table[code] = static_cast<char>(IsUpper(code) ? code + 0x20 : code);
  }
  for (const unsigned code : {0x8Au, 0x8Cu, 0x8Eu}) {
    table[code] = static_cast<char>(code + 0x10);
  }
  table[0x9F] = static_cast<char>(0xFF);
  return table;
}();

constexpr auto kUpper = [] {
  std::array<char, 256> table{};
  for (unsigned code = 0; code < 256; ++code) {
    table[code] = static_cast<char>(code);
  }
  for (unsigned code = 0; code < 256; ++code) {
    if (Code(kLower[code]) != code) {
      table[Code(kLower[code])] = static_cast<char>(code);
    }
  }
  return table;
}();

// Lower-case accented letters and their base letters, position by position.
constexpr std::string_view kAccented = u8"áàâäãåçéèêëíìîïñóòôöõøúùûüýÿšž"_w;
constexpr std::string_view kPlain = "aaaaaaceeeeiiiinoooooouuuuyysz";
static_assert(kAccented.size() == kPlain.size());

constexpr auto kFolded = [] {
  std::array<char, 256> table = kLower;
  for (char& c : table) {
    // std::string_view::find is not a constant expression in g++ 12 with sanitizers.
    const auto at = std::ranges::find(kAccented, c) - kAccented.begin();
    c = at == std::ssize(kAccented) ? c : kPlain[static_cast<std::size_t>(at)];
  }
  return table;
}();

[[noreturn]] void ThrowInvalidLength() {
  throw RunTimeError(ErrorNumber::kInvalidArgument,
                     std::string(u8"longitud o posición de texto no válida"_w));
}

std::string Mapped(std::string_view text, const std::array<char, 256>& table) {
  std::string mapped(text);
  for (char& c : mapped) {
    c = table[Code(c)];
  }
  return mapped;
}

// Calls take(part) for each part in order; true when a later part empties part 0.
template <typename Take>
bool WalkParts(std::string_view text, char delimiter, Take take) {
  bool emptied = false;
  for (std::size_t count = 1;; ++count) {
    const std::ptrdiff_t at = InStr16(text, delimiter);
    if (count > kMaxParts) {
      throw RunTimeError(ErrorNumber::kSubscript, "hay demasiadas partes en el texto");
    }
    emptied = emptied || (at == 1 && count > 1);
    take(at == 0 ? text : Left(text, at - 1));
    if (at == 0) {
      return emptied;
    }
    text = Mid(text, at + 1);
  }
}

}  // namespace

char ToLower(char c) {
  return kLower[Code(c)];
}
char ToUpper(char c) {
  return kUpper[Code(c)];
}
std::string ToLower(std::string_view text) {
  return Mapped(text, kLower);
}
std::string ToUpper(std::string_view text) {
  return Mapped(text, kUpper);
}
std::string Fold(std::string_view text) {
  return Mapped(text, kFolded);
}

std::string_view Left(std::string_view text, std::ptrdiff_t count) {
  if (count < 0) {
    ThrowInvalidLength();
  }
  return text.substr(0, static_cast<std::size_t>(count));
}

std::string_view Right(std::string_view text, std::ptrdiff_t count) {
  if (count < 0) {
    ThrowInvalidLength();
  }
  return text.substr(text.size() - std::min(text.size(), static_cast<std::size_t>(count)));
}

std::string_view Mid(std::string_view text, std::ptrdiff_t start) {
  if (start < 1) {
    ThrowInvalidLength();
  }
  return text.substr(std::min(text.size(), static_cast<std::size_t>(start - 1)));
}

std::ptrdiff_t InStr(std::string_view text, std::string_view what, std::ptrdiff_t start) {
  if (start < 1) {
    ThrowInvalidLength();
  }
  const std::size_t at = text.find(what, static_cast<std::size_t>(start - 1));
  return at == std::string_view::npos ? 0 : static_cast<std::ptrdiff_t>(at) + 1;
}

std::ptrdiff_t InStr16(std::string_view text, char what) {
  const std::ptrdiff_t at = InStr(text, {&what, 1});
  if (at > static_cast<std::ptrdiff_t>(kMaxPosition)) {
    throw RunTimeError(ErrorNumber::kOverflow,
                       std::string(u8"el texto es demasiado largo entre separadores"_w));
  }
  return at;
}

bool Contains(std::string_view text, std::string_view what) {
  return text.find(what) != std::string_view::npos;
}

std::string_view Trim(std::string_view text, std::string_view characters) {
  const std::size_t first = text.find_first_not_of(characters);
  return first == text.npos ? std::string_view()
                            : text.substr(first, text.find_last_not_of(characters) - first + 1);
}

std::vector<std::string_view> SplitText(std::string_view text, char delimiter) {
  std::vector<std::string_view> parts;
  const bool emptied = WalkParts(text, delimiter, [&](auto part) { parts.push_back(part); });
  parts.front() = emptied ? std::string_view() : parts.front();
  return parts;
}

TextEnds SplitEnds(std::string_view text, char delimiter) {
  TextEnds ends;
  bool first = true;
  const bool emptied = WalkParts(text, delimiter, [&](auto part) {
    ends.front = std::exchange(first, false) ? part : ends.front;
    ends.back = part;
  });
  ends.front = emptied ? std::string_view() : ends.front;
  return ends;
}

std::string Joined(std::initializer_list<std::string_view> parts) {
  std::size_t size = 0;
  for (const std::string_view part : parts) {
    size += part.size();
  }
  std::string text;
  text.reserve(size);  // allocates once
  for (const std::string_view part : parts) {
    text += part;
  }
  return text;
}

std::string Counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count).append(" ").append(count == 1 ? one : many);
}

const std::string& ReplaceAll(std::string& text, std::string_view what,
                              std::string_view replacement) {
  std::size_t hit = what.empty() ? std::string::npos : text.find(what);
  if (hit == std::string::npos) {
    return text;
  }
  std::string replaced;
  replaced.reserve(text.size());
  std::size_t from = 0;
  for (; hit != std::string::npos; hit = text.find(what, from)) {
    replaced.append(text, from, hit - from).append(replacement);
    from = hit + what.size();
  }
  replaced.append(text, from);
  text = std::move(replaced);
  return text;
}

}  // namespace tonadex::core
