#include "nokia3210/phone_tables.h"

#include <algorithm>
#include <array>

namespace tonadex::nokia3210 {
namespace {

struct OctaveRow {
  std::string_view octave;
  std::string_view mapped;
  std::string_view message;  // logged when not empty
};

// RTTTL octaves with their composer marks, then the reverse.
constexpr std::array<OctaveRow, 8> kOctaves = {{
    {"5", "1", ""},
    {"6", "2", ""},
    {"7", "3", ""},
    {"1", "5", ""},
    {"2", "6", ""},
    {"3", "7", ""},
    {"4", "0",
     "RTTTL Octave 4 Not supported by Nokia 3210.  Please increase the default octave by 1 in "
     "Cantorix (use octave 5,6,7 only)."},
    {"8", "4", "RTTTL Octave 8 is not a valid octave and is not supported by the Nokia 3210."},
}};

constexpr std::string_view kGetOctaveSource = "modNok.GetOctave";

}  // namespace

std::string_view GetOctave(std::string_view octave, ErrorLog& log) {
  const auto* row = std::ranges::find(kOctaves, octave, &OctaveRow::octave);
  if (row == kOctaves.end()) {
    return "";
  }
  if (!row->message.empty()) {
    log.AddError(kGetOctaveSource, row->message);
  }
  return row->mapped;
}

}  // namespace tonadex::nokia3210
