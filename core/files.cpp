#include "core/files.h"

#include <cerrno>
#include <fstream>
#include <random>
#include <system_error>

#include "core/runtime_error.h"
#include "core/windows1252.h"

namespace tonadex::core {
namespace {

// The two forms of a path's own name: UTF-8, and UTF-16 that may hold half a pair.
[[maybe_unused]] std::string TextOfName(const std::string& utf8) {
  return FromUtf8(utf8);
}
[[maybe_unused]] std::string TextOfName(const std::wstring& utf16) {
  std::string text;
  for (const wchar_t unit : utf16) {
    text += FromUnicode(static_cast<char32_t>(unit));
  }
  return text;
}

constexpr int kEndOfInput = std::streambuf::traits_type::eof();

constexpr bool EndsLine(int next) {
  return next == kEndOfInput || next == '\n' || next == '\r';
}

bool WriteInPlace(const std::filesystem::path& file, std::string_view bytes) {
  std::ofstream output(file, std::ios::binary | std::ios::trunc);
  output.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  output.close();
  return static_cast<bool>(output);
}

// Hidden and short: a listing passes it over, and any name's file can have such a neighbour.
std::filesystem::path Neighbour(const std::filesystem::path& file) {
  return file.parent_path() / (".tonadex-" + std::to_string(std::random_device{}()));
}

// Through a neighbour that is renamed: a full disk leaves the file as it was.
bool Replace(const std::filesystem::path& file, const std::filesystem::file_status& before,
             std::string_view bytes) {
  const std::filesystem::path neighbour = Neighbour(file);
  const bool exists = before.type() == std::filesystem::file_type::regular;
  std::error_code failed;
  errno = 0;
  bool written = WriteInPlace(neighbour, bytes);
  if (!written && exists && errno == EACCES) {  // no new files here, but this one may be ours
    return WriteInPlace(file, bytes);
  }
  if (written && exists) {
    std::filesystem::permissions(neighbour, before.permissions(), failed);
  }
  std::error_code renaming;
  if (written) {
    std::filesystem::rename(neighbour, file, renaming);
    written = !renaming;
  }
  if (!written) {
    std::filesystem::remove(neighbour, failed);
  }
  return written;
}

RunTimeError FileError(ErrorNumber number, std::string_view what,
                       const std::filesystem::path& file) {
  return {number, std::string(what) + TextFromPath(file) + std::string(u8"»"_w)};
}

}  // namespace

std::optional<std::string> ReadLine(std::istream& input, std::size_t maxBytes) {
  std::streambuf& buffer = *input.rdbuf();
  if (buffer.sgetc() == kEndOfInput) {
    return std::nullopt;
  }
  std::string line = ReadFirstLine(input, maxBytes);
  int next = buffer.sgetc();
  while (!EndsLine(next)) {
    next = buffer.snextc();
  }
  if (next == '\r' && buffer.snextc() != '\n') {
    return line;
  }
  if (next != kEndOfInput) {
    buffer.sbumpc();
  }
  return line;
}

std::string ReadFirstLine(std::istream& input, std::size_t maxBytes) {
  std::streambuf& buffer = *input.rdbuf();
  std::string line;
  for (int next = buffer.sgetc(); !EndsLine(next) && line.size() <= maxBytes;
       next = buffer.snextc()) {
    line += static_cast<char>(next);
  }
  return line;
}

std::string ReadFirstLine(const std::filesystem::path& file, std::size_t maxBytes) {
  std::ifstream input(file, std::ios::binary);
  std::error_code ignored;
  if (!input || std::filesystem::is_directory(file, ignored)) {
    throw FileError(ErrorNumber::kFileNotFound, u8"no se puede abrir el fichero «"_w, file);
  }
  return ReadFirstLine(input, maxBytes);
}

std::filesystem::path PathFromText(std::string_view text) {
  const std::string utf8 = ToUtf8(text);
  return std::u8string(utf8.begin(), utf8.end());
}

std::string TextFromPath(const std::filesystem::path& path) {
  return TextOfName(path.native());
}

void WriteBytes(const std::filesystem::path& file, std::string_view bytes) {
  std::error_code failed;
  const std::filesystem::path behindLinks = std::filesystem::canonical(file, failed);
  const std::filesystem::path& target = failed ? file : behindLinks;
  const std::filesystem::file_status before = std::filesystem::status(target, failed);
  const bool isNew = before.type() == std::filesystem::file_type::not_found;
  const bool replaced = isNew || before.type() == std::filesystem::file_type::regular;
  if (replaced ? !Replace(target, before, bytes) : !WriteInPlace(target, bytes)) {
    throw FileError(ErrorNumber::kDeviceFailure, u8"no se puede escribir el fichero «"_w, file);
  }
}

}  // namespace tonadex::core
