#pragma once

#include <cstddef>
#include <filesystem>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

// Lines, bytes and names of files.
namespace tonadex::core {

// Reads up to CR, LF, CR LF or the end; the line end is taken and not given. None at the end of the
// input. A line of more than `maxBytes` is read over and cut to maxBytes + 1 bytes, so that the
// caller sees it and memory stays bounded.
std::optional<std::string> ReadLine(std::istream& input, std::size_t maxBytes);

// The first line, bytes as stored; "" for an empty input. Of a longer one the first
// maxBytes + 1 bytes are read and no more, so that endless input does no harm.
std::string ReadFirstLine(std::istream& input, std::size_t maxBytes);
// The same of a file. Errors: file not found when it cannot be opened.
std::string ReadFirstLine(const std::filesystem::path& file, std::size_t maxBytes);

// The path that a text names. Texts are Windows-1252, paths UTF-8 or UTF-16 outside.
std::filesystem::path PathFromText(std::string_view text);
// The text of a path; a character that Windows-1252 lacks becomes "?".
std::string TextFromPath(const std::filesystem::path& path);

// Puts the bytes in place of the file, which is whole or as it was before; a symbolic link stays
// and its target is replaced. Devices and pipes are written to as they are. Errors: device failure.
void WriteBytes(const std::filesystem::path& file, std::string_view bytes);

}  // namespace tonadex::core
