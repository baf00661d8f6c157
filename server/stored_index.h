#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "files/list.h"

namespace tonadex::server {

// A melody's file and its description in listings, both Windows-1252. The views mostly point into
// the stored index, which saves two allocations per melody.
struct StoredMelody {
  std::string_view fileName;
  std::string_view description;
  files::FileStatus status;  // when the description was read
};

struct StoredMelodies {
  std::vector<StoredMelody> list;
  std::deque<std::string> texts;  // owns the texts that the views refer to
};

// Encodes the melodies whose files last changed before `changedBefore` (in FileStatus::modified's
// unit). The format is that of this program version only, because another one may describe melodies
// differently; it ends in a checksum.
std::string EncodeIndex(const std::vector<StoredMelody>& melodies, std::int64_t changedBefore);

// Decodes the result of EncodeIndex; the texts are views of the bytes. Empty when they are damaged,
// truncated or another version's.
std::vector<StoredMelody> DecodeIndex(std::string_view bytes);

}  // namespace tonadex::server
