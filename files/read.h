#pragma once

#include <cstddef>
#include <filesystem>
#include <istream>
#include <optional>
#include <string>

#include "files/list.h"

// Bounded reading of files. A path is read only when it names a regular file: a named pipe or a
// device counts as unreadable, because reading it could block.
namespace tonadex::files {

// Maximum size of a file that is read whole, in bytes; manuals and sheets are far smaller.
inline constexpr std::size_t kMaxFileBytes = std::size_t{64} << 20;

// Up to maxBytes from the start of a file; nullopt when it cannot be read.
std::optional<std::string> ReadHead(const std::filesystem::path& file, std::size_t maxBytes);

// A whole file; nullopt when it cannot be read or is longer than maxBytes.
std::optional<std::string> ReadWhole(const std::filesystem::path& file,
                                     std::size_t maxBytes = kMaxFileBytes);

// The start of a file that other programs may change meanwhile. Symbolic links are not followed.
struct SharedHead {
  std::string bytes;
  FileStatus status;  // before it was read
};
std::optional<SharedHead> ReadSharedHead(const std::filesystem::path& file, std::size_t maxBytes);
// A whole file; nullopt also when it changed while it was read.
std::optional<std::string> ReadShared(const std::filesystem::path& file, std::size_t maxBytes);

// A whole file. Errors: file not found when it cannot be read, device failure when it is longer
// than kMaxFileBytes.
std::string ReadBytes(const std::filesystem::path& file);

// The first line of a file as stored, without its end (CR, LF or CR LF). A line longer than
// maxBytes is cut to maxBytes + 1 bytes, so that the caller notices. Errors: file not found when
// the file cannot be read.
std::string ReadFirstLine(const std::filesystem::path& file, std::size_t maxBytes);

// The first line of a melody file as text: UTF-8 when it is valid UTF-8, else Windows-1252; cut at
// core::kMaxLineBytes. The sharp escape is left in place. Errors: as ReadFirstLine.
std::string ReadMelodyLine(const std::filesystem::path& file);

// The first line of an input, "" when it is empty. Reads no more than maxBytes + 1 bytes, so that
// it returns on endless input.
std::string ReadFirstLine(std::istream& input, std::size_t maxBytes);

}  // namespace tonadex::files
