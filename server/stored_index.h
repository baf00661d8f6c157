#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "files/list.h"

namespace tonadex::server {

// A melody's file and what listings say about it (Windows-1252). The texts belong to somebody else:
// most are parts of the stored index, which spares two allocations for each melody.
struct StoredMelody {
  std::string_view fileName;
  std::string_view description;
  files::FileStatus status;  // at the time when the description was read from it
};

struct StoredMelodies {
  std::vector<StoredMelody> list;
  std::deque<std::string> texts;  // what the list's views show
};

// The melodies whose files changed last before `changedBefore`, as bytes. They are this program
// version's own, because another one may describe melodies differently, and end in a checksum.
std::string EncodeIndex(const std::vector<StoredMelody>& melodies, std::int64_t changedBefore);

// What EncodeIndex has encoded, as views of the bytes; nothing when they are damaged, cut, or
// another version's.
std::vector<StoredMelody> DecodeIndex(std::string_view bytes);

}  // namespace tonadex::server
