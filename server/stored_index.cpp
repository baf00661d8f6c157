#include "server/stored_index.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace tonadex::server {
namespace {

// The trailing number is the version of the format: raise it when the layout or the descriptions
// change within a program version.
constexpr std::string_view kStart = "Tonadex " TONADEX_VERSION " 1\n";

// A checksum of reversible steps: a change within one 64-bit word always changes the sum, any other
// change does so except with a probability of 2^-64.
std::uint64_t Checksum(std::string_view bytes) {
  std::uint64_t sum = bytes.size();
  while (!bytes.empty()) {
    std::uint64_t word = 0;
    const std::size_t count = bytes.copy(reinterpret_cast<char*>(&word), sizeof word);
    sum = (sum ^ word) * 0x9e3779b97f4a7c15u;
    sum ^= sum >> 32;
    bytes.remove_prefix(count);
  }
  return sum;
}

template <typename Number>
void AppendNumber(std::string& bytes, Number number) {
  bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

// The length is one byte: file names and descriptions are shorter than 256 bytes.
void AppendText(std::string& bytes, std::string_view text) {
  AppendNumber(bytes, static_cast<std::uint8_t>(text.size()));
  bytes += text;
}

// Reads from the front of the bytes; false when they are too few.
template <typename Number>
bool TakeNumber(std::string_view& bytes, Number& number) {
  if (bytes.size() < sizeof number) {
    return false;
  }
  std::memcpy(&number, bytes.data(), sizeof number);
  bytes.remove_prefix(sizeof number);
  return true;
}

bool TakeText(std::string_view& bytes, std::string_view& text) {
  std::uint8_t size = 0;
  if (!TakeNumber(bytes, size) || bytes.size() < size) {
    return false;
  }
  text = bytes.substr(0, size);
  bytes.remove_prefix(size);
  return true;
}

bool TakeMelody(std::string_view& bytes, StoredMelody& melody) {
  files::FileStatus& status = melody.status;
  return TakeNumber(bytes, status.size) && TakeNumber(bytes, status.modified) &&
         TakeNumber(bytes, status.changed) && TakeNumber(bytes, status.number) &&
         TakeText(bytes, melody.fileName) && TakeText(bytes, melody.description);
}

}  // namespace

std::string EncodeIndex(const std::vector<StoredMelody>& melodies, std::int64_t changedBefore) {
  std::string bytes(kStart);
  for (const StoredMelody& melody : melodies) {
    const files::FileStatus& status = melody.status;
    if (std::max(status.modified, status.changed) < changedBefore) {
      AppendNumber(bytes, status.size);
      AppendNumber(bytes, status.modified);
      AppendNumber(bytes, status.changed);
      AppendNumber(bytes, status.number);
      AppendText(bytes, melody.fileName);
      AppendText(bytes, melody.description);
    }
  }
  AppendNumber(bytes, Checksum(bytes));
  return bytes;
}

std::vector<StoredMelody> DecodeIndex(std::string_view bytes) {
  std::uint64_t sum = 0;
  if (!bytes.starts_with(kStart) || bytes.size() < kStart.size() + sizeof sum) {
    return {};
  }
  std::string_view end = bytes.substr(bytes.size() - sizeof sum);
  bytes.remove_suffix(sizeof sum);
  TakeNumber(end, sum);
  if (sum != Checksum(bytes)) {
    return {};
  }
  bytes.remove_prefix(kStart.size());
  std::vector<StoredMelody> melodies;
  while (!bytes.empty()) {
    if (!TakeMelody(bytes, melodies.emplace_back())) {
      return {};
    }
  }
  return melodies;
}

}  // namespace tonadex::server
