#pragma once

#include <cstddef>
#include <filesystem>
#include <istream>
#include <optional>
#include <string>

// Reading files with a bound. What is given as a path is read only when it is a regular file: a
// named pipe or a device counts as unreadable at once, instead of keeping the program waiting.
namespace tonadex::files {

// The longest file that the program reads whole: a manual or a sheet is far shorter.
inline constexpr std::size_t kMaxFileBytes = std::size_t{64} << 20;

// The first maxBytes of a file, less when it is shorter; none when it cannot be read.
std::optional<std::string> ReadHead(const std::filesystem::path& file, std::size_t maxBytes);

// A whole file; none when it cannot be read or is longer than maxBytes.
std::optional<std::string> ReadWhole(const std::filesystem::path& file,
                                     std::size_t maxBytes = kMaxFileBytes);

// A whole file. Errors: file not found when it cannot be read, device failure when it is longer
// than kMaxFileBytes.
std::string ReadBytes(const std::filesystem::path& file);

// The first line of a file, as stored and without its end (CR, LF or CR LF). Of a line longer than
// maxBytes it gives maxBytes + 1 bytes, so that the caller can tell. Errors: file not found when
// the file cannot be read.
std::string ReadFirstLine(const std::filesystem::path& file, std::size_t maxBytes);

// The first line of a melody file as text: UTF-8 when it is valid UTF-8, else Windows-1252; cut at
// core::kMaxLineBytes. The sharp escape is left in place. Errors: as ReadFirstLine.
std::string ReadMelodyLine(const std::filesystem::path& file);

// Reads a line and its end; none at the end of the input. A line longer than maxBytes is skipped
// to its end and gives maxBytes + 1 bytes.
std::optional<std::string> ReadLine(std::istream& input, std::size_t maxBytes);

// The first line of an input, "" when it is empty. Reads no more than maxBytes + 1 bytes, so that
// endless input does no harm.
std::string ReadFirstLine(std::istream& input, std::size_t maxBytes);

}  // namespace tonadex::files
