#include "platform/posix/settings_file.h"

#include <charconv>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "core/windows1252.h"
#include "files/read.h"
#include "files/write.h"
#include "platform/posix/user_folders.h"

namespace tonadex::platform {
namespace {

struct Entry {
  std::string section;  // "HKEY_CLASSES_ROOT\tonadex\"
  std::string name;
  std::string data;
};

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

std::string HexCode(unsigned char byte) {
  return {kHexDigits[byte >> 4], kHexDigits[byte & 0xF]};
}

std::string Section(std::uint32_t root, std::string_view key) {
  std::string section = "HKEY_CLASSES_ROOT";
  if (root != app::kHkeyClassesRoot) {
    section = "HKEY_";
    for (int shift = 24; shift >= 0; shift -= 8) {
      section += HexCode(static_cast<unsigned char>(root >> shift));
    }
  }
  return section + "\\" + std::string(key);
}

// Control characters, including C1, would not survive a text editor.
bool NeedsCode(unsigned char byte) {
  const char32_t character = core::ToUnicode(byte);
  return character < 0x20 || (character >= 0x7F && character <= 0x9F);
}

// The escaped text, still in Windows-1252.
std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (NeedsCode(byte)) {
      escaped += "\\x" + HexCode(byte);
    } else {
      escaped += c == '\\' || c == '"' ? std::string{'\\', c} : std::string{c};
    }
  }
  return escaped;
}

// Removes one character from the front of an escaped text; nullopt for an invalid escape.
std::optional<char> TakeCharacter(std::string_view& text) {
  const char first = text.front();
  text.remove_prefix(1);
  if (first != '\\') {
    return first;
  }
  if (text.empty()) {
    return std::nullopt;
  }
  const char second = text.front();
  text.remove_prefix(1);
  if (second == '\\' || second == '"') {
    return second;
  }
  unsigned code = 0;
  const char* end = text.data() + 2;
  if (second != 'x' || text.size() < 2 || std::from_chars(text.data(), end, code, 16).ptr != end) {
    return std::nullopt;
  }
  text.remove_prefix(2);
  return static_cast<char>(code);
}

// Removes an escaped text in quotation marks from the front of the line.
std::optional<std::string> TakeQuoted(std::string_view& line) {
  std::string text;
  if (!line.starts_with('"')) {
    return std::nullopt;
  }
  line.remove_prefix(1);
  while (!line.empty() && line.front() != '"') {
    const auto character = TakeCharacter(line);
    if (!character) {
      return std::nullopt;
    }
    text += *character;
  }
  if (line.empty()) {
    return std::nullopt;
  }
  line.remove_prefix(1);
  return text;
}

std::optional<std::pair<std::string, std::string>> ParseValue(std::string_view line) {
  auto name = TakeQuoted(line);
  if (!name || !line.starts_with('=')) {
    return std::nullopt;
  }
  line.remove_prefix(1);
  auto data = TakeQuoted(line);
  if (!data || !line.empty()) {
    return std::nullopt;
  }
  return std::pair(*std::move(name), *std::move(data));
}

void ReadLineInto(std::vector<Entry>& entries, std::string& section, std::string_view line) {
  if (line.ends_with('\r')) {
    line.remove_suffix(1);
  }
  if (line.starts_with('[') && line.ends_with(']')) {
    section = line.substr(1, line.size() - 2);
  } else if (auto value = ParseValue(line)) {
    entries.push_back({section, std::move(value->first), std::move(value->second)});
  }
}

std::vector<Entry> ReadEntries(const std::filesystem::path& file) {
  std::vector<Entry> entries;
  const auto bytes = files::ReadWhole(file, kMaxSettingsBytes);
  if (!bytes || !core::IsUtf8(*bytes)) {
    return entries;
  }
  const std::string text = core::FromUtf8(*bytes);
  std::string section;
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t end = rest.find('\n');
    ReadLineInto(entries, section, rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return entries;
}

std::string FileBytes(const std::vector<Entry>& entries) {
  std::string text;
  std::string_view section;
  for (const Entry& entry : entries) {
    if (text.empty() || entry.section != section) {
      section = entry.section;
      text += "[" + entry.section + "]\n";
    }
    text += "\"" + Escaped(entry.name) + "\"=\"" + Escaped(entry.data) + "\"\n";
  }
  return core::ToUtf8(text);
}

Entry* Find(std::vector<Entry>& entries, std::string_view section, std::string_view name) {
  for (Entry& entry : entries) {
    if (entry.section == section && entry.name == name) {
      return &entry;
    }
  }
  return nullptr;
}

}  // namespace

SettingsFile::SettingsFile(std::filesystem::path file) : file_(std::move(file)) {}

std::filesystem::path SettingsFile::DefaultPath() {
  return ConfigFolder() / "tonadex" / "ajustes.ini";
}

std::optional<app::RegistryValue> SettingsFile::QueryValue(std::uint32_t root, std::string_view key,
                                                           std::string_view name) {
  std::vector<Entry> entries = ReadEntries(file_);
  const Entry* entry = Find(entries, Section(root, key), name);
  if (entry == nullptr) {
    return std::nullopt;
  }
  return app::RegistryValue{app::kRegSz, entry->data};
}

bool SettingsFile::SetValue(std::uint32_t root, std::string_view key, std::string_view name,
                            const app::RegistryValue& value) {
  if (value.type != app::kRegSz || !file_.is_absolute()) {
    return false;
  }
  std::vector<Entry> entries = ReadEntries(file_);
  const std::string section = Section(root, key);
  Entry* entry = Find(entries, section, name);
  if (entry == nullptr) {
    entry = &entries.emplace_back(Entry{section, std::string(name), {}});
  }
  entry->data = value.data;
  const std::string bytes = FileBytes(entries);
  std::error_code ignored;  // Replace fails then
  std::filesystem::create_directories(file_.parent_path(), ignored);
  return bytes.size() <= kMaxSettingsBytes &&
         files::Replace(file_, bytes, files::Durability::kDisk, files::Access::kOwnerOnly);
}

}  // namespace tonadex::platform
