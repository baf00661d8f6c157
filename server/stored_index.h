#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "files/list.h"

namespace tonadex::server {

// A melody's file and what listings say about it (Windows-1252).
struct StoredMelody {
  std::string fileName;
  std::string description;
  files::FileStatus status;  // at the time when the description was read from it
};

// The melodies whose files changed last before `changedBefore`, as bytes. They are this program
// version's own, because another one may describe melodies differently, and end in a checksum.
std::string EncodeIndex(const std::vector<StoredMelody>& melodies, std::int64_t changedBefore);

// What EncodeIndex has encoded; nothing when the bytes are damaged, cut, or another version's.
std::vector<StoredMelody> DecodeIndex(std::string_view bytes);

}  // namespace tonadex::server
