#include "core/melody_file.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <random>
#include <system_error>

#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::core {
namespace {

constexpr std::ptrdiff_t kNumberSpan = 5;  // digits of a file's number, at most

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

std::string UndoSharpEscape(std::string_view text) {
  std::string plain(text);
  ReplaceAll(plain, kSharpEscape, "#");
  return plain;
}

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

std::string ReadMelodyLine(const std::filesystem::path& file) {
  const std::string line = ReadFirstLine(file, kMaxLineBytes);
  return FromOutside(std::string_view(line).substr(0, kMaxLineBytes));
}

std::string ScanName(std::string_view line) {
  std::string name;
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line[at] == ' ' && ++at == line.size()) {
      break;
    }
    if (line[at] == ':') {
      break;
    }
    name += line[at];
  }
  return name;
}

std::string_view CutNumber(std::string_view text) {
  const auto length = static_cast<std::ptrdiff_t>(text.size());
  return Left(text, InStr(text, ".", length - kNumberSpan) - 1);
}

std::int32_t FileNumber(std::string_view formed) {
  const std::string_view number = Mid(formed, InStr(formed, ".") + 1);
  if (number.empty()) {  // "vals." has no number; elsewhere an empty text counts as 0
    throw RunTimeError(ErrorNumber::kTypeMismatch, std::string(u8"falta el número del fichero"_w));
  }
  return ToInt32(ToNumber(number));
}

std::string_view FormedStem(std::string_view formed, std::string_view name) {
  const std::size_t open = name.size() + std::string_view(" (").size();
  return Mid(CutNumber(formed), static_cast<std::ptrdiff_t>(open) + 1);
}

std::string RowText(std::string_view name, std::string_view stem) {
  std::string text(stem);
  if (stem != name) {
    text.insert(0, std::string(name) + " (").append(")");
  }
  return text;
}

MelodyRow RepertoireRow(std::string_view line, std::string_view fileName) {
  const std::string name = ScanName(line);
  const std::string formed = name + " (" + std::string(fileName);
  return {RowText(name, FormedStem(formed, name)), FileNumber(formed)};
}

std::string_view RowStem(std::string_view row) {
  const std::ptrdiff_t open = InStr(row, " (");
  if (open == 0 || !Contains(row, ")")) {
    return row;
  }
  const std::string_view inner = Mid(row, open + 2);
  return inner.substr(0, std::max<std::size_t>(inner.size(), 1) - 1);
}

std::string MelodyFileName(std::string_view row, std::int32_t number) {
  return std::string(RowStem(row)) + "." + std::to_string(number);
}

std::filesystem::path PathFromText(std::string_view text) {
  const std::string utf8 = ToUtf8(text);
  return std::u8string(utf8.begin(), utf8.end());
}

std::string TextFromPath(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  return FromUtf8(std::string(utf8.begin(), utf8.end()));
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
