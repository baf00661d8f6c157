#include "files/read.h"

#include <algorithm>
#include <string_view>

#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/system.h"

namespace tonadex::files {
namespace {

using namespace core::literals;

constexpr std::size_t kBlockBytes = std::size_t{8} << 10;
constexpr int kEndOfInput = std::streambuf::traits_type::eof();

constexpr bool EndsLine(int next) {
  return next == kEndOfInput || next == '\n' || next == '\r';
}

core::RunTimeError Failure(core::ErrorNumber number, std::string_view what,
                           const std::filesystem::path& file) {
  return {number, std::string(what) + TextFromPath(file) + std::string(u8"»"_w)};
}

std::optional<std::string> ReadUpTo(const system::File& opened, std::size_t maxBytes) {
  std::string bytes;
  while (opened && bytes.size() < maxBytes) {
    const std::size_t size = bytes.size();
    bytes.resize(size + std::min(std::max(size, kBlockBytes), maxBytes - size));
    const auto count = opened.Read(bytes.data() + size, bytes.size() - size);
    bytes.resize(size + count.value_or(0));
    if (!count) {
      return std::nullopt;
    }
    if (*count == 0) {
      break;
    }
  }
  return opened ? std::optional(std::move(bytes)) : std::nullopt;
}

std::string ReadHeadOrThrow(const std::filesystem::path& file, std::size_t maxBytes) {
  auto bytes = ReadHead(file, maxBytes);
  if (!bytes) {
    throw Failure(core::ErrorNumber::kFileNotFound, u8"no se puede abrir el fichero «"_w, file);
  }
  return *std::move(bytes);
}

}  // namespace

std::optional<std::string> ReadHead(const std::filesystem::path& file, std::size_t maxBytes) {
  return ReadUpTo(system::OpenRegular(file, system::Links::kFollow), maxBytes);
}

std::optional<SharedHead> ReadSharedHead(const std::filesystem::path& file, std::size_t maxBytes) {
  const system::File opened = system::OpenRegular(file, system::Links::kRefuse);
  const auto status = opened.Status();
  auto bytes = ReadUpTo(opened, maxBytes);
  return status && bytes ? std::optional(SharedHead{std::move(*bytes), *status}) : std::nullopt;
}

std::optional<std::string> ReadShared(const std::filesystem::path& file, std::size_t maxBytes) {
  const system::File opened = system::OpenRegular(file, system::Links::kRefuse);
  const auto before = opened.Status();
  auto bytes = ReadUpTo(opened, maxBytes + 1);
  const bool whole = before && bytes && bytes->size() == before->size &&
                     bytes->size() <= maxBytes && opened.Status() == before;
  return whole ? std::move(bytes) : std::nullopt;
}

std::optional<std::string> ReadWhole(const std::filesystem::path& file, std::size_t maxBytes) {
  auto bytes = ReadHead(file, maxBytes + 1);
  return bytes && bytes->size() <= maxBytes ? std::move(bytes) : std::nullopt;
}

std::string ReadBytes(const std::filesystem::path& file) {
  std::string bytes = ReadHeadOrThrow(file, kMaxFileBytes + 1);
  if (bytes.size() > kMaxFileBytes) {
    throw Failure(core::ErrorNumber::kDeviceFailure, u8"es demasiado grande el fichero «"_w, file);
  }
  return bytes;
}

std::string ReadFirstLine(const std::filesystem::path& file, std::size_t maxBytes) {
  std::string line = ReadHeadOrThrow(file, maxBytes + 1);
  line.resize(std::min(line.size(), line.find_first_of("\r\n")));
  return line;
}

std::string ReadMelodyLine(const std::filesystem::path& file) {
  const std::string line = ReadFirstLine(file, core::kMaxLineBytes);
  return core::FromOutside(std::string_view(line).substr(0, core::kMaxLineBytes));
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

}  // namespace tonadex::files
