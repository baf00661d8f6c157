#include "json/text.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>

#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::json {
namespace {

std::string Join(JsonFields fields, std::string_view before, std::string_view colon) {
  using nlohmann::json;
  std::string members;
  for (const auto& [name, text] : fields) {
    members += members.empty() ? "" : ",";
    members.append(before).append("\"").append(name).append("\"").append(colon);
    members += json(text).dump(-1, ' ', false, json::error_handler_t::replace);
  }
  return members;
}

constexpr bool IsPlain(char c) {
  return c >= ' ' && c != '"' && c != '\\' && core::Code(c) < 0x80;
}

// Tests eight bytes at a time. Subtracting `limit` from each byte sets the high bit of those below
// it; bytes equal to a character become zero after XOR.
constexpr bool ArePlain(std::uint64_t eight) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  const auto below = [](std::uint64_t bytes, unsigned char limit) {
    return (bytes - kOnes * limit) & ~bytes;
  };
  const std::uint64_t special = eight | below(eight, ' ') | below(eight ^ (kOnes * '"'), 1) |
                                below(eight ^ (kOnes * '\\'), 1);
  return (special & (kOnes * 0x80)) == 0;
}

// Number of leading characters that need no escape: usually all.
std::size_t PlainLength(std::string_view text) {
  std::size_t at = 0;
  for (std::uint64_t eight = 0; at + sizeof eight <= text.size(); at += sizeof eight) {
    std::memcpy(&eight, text.data() + at, sizeof eight);
    if (!ArePlain(eight)) {
      break;
    }
  }
  while (at < text.size() && IsPlain(text[at])) {
    ++at;
  }
  return at;
}

void AppendSpecial(std::string& json, char c) {
  constexpr std::string_view kEscaped = "\"\\\b\f\n\r\t", kLetters = "\"\\bfnrt";
  constexpr std::string_view kHexDigits = "0123456789abcdef";
  if (core::Code(c) >= 0x80) {
    core::AppendUtf8(json, {&c, 1});
  } else if (const std::size_t i = kEscaped.find(c); i != kEscaped.npos) {
    json.append({'\\', kLetters[i]});
  } else {
    json.append("\\u00").append({kHexDigits[core::Code(c) / 16u], kHexDigits[core::Code(c) % 16u]});
  }
}

}  // namespace

std::string JsonMembers(JsonFields fields) {
  return Join(fields, "", ":");
}

void AppendJson(std::string& json, std::string_view text) {
  AppendEscaped(json += '"', text);
  json += '"';
}

void AppendEscaped(std::string& json, std::string_view text) {
  while (true) {
    const std::size_t plain = PlainLength(text);
    json.append(text, 0, plain);
    if (plain == text.size()) {
      return;
    }
    AppendSpecial(json, text[plain]);
    text.remove_prefix(plain + 1);
  }
}

void JsonList::Add(JsonFields fields) {
  out_ << (empty_ ? "[\n" : ",\n") << " {" << Join(fields, "\n  ", ": ") << "\n }";
  empty_ = false;
}

void JsonList::End() {
  out_ << (empty_ ? "[]\n" : "\n]\n");
}

}  // namespace tonadex::json
