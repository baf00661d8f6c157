#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Reader of Standard MIDI Files, formats 0, 1 and 2, also inside a RIFF file (.rmi). Texts are
// Windows-1252.
namespace tonadex::midi {

// Maximum size. A note takes at least three bytes: the notes of the longest file use 17 MB of
// memory, and converting them to a melody less than 150 MB.
inline constexpr std::size_t kMaxSmfBytes = std::size_t{4} << 20;

inline constexpr std::uint8_t kNoProgram = 255;
inline constexpr std::size_t kChannels = 16;

// Times are in ticks since the start of the track.
struct SmfNote {
  std::uint32_t start = 0, end = 0;
  std::uint8_t key = 0;      // 0 to 127, 60 is middle c
  std::uint8_t channel = 0;  // 0 to 15
  std::uint8_t velocity = 0;

  friend bool operator==(const SmfNote&, const SmfNote&) = default;
};

struct SmfTempo {
  std::uint32_t tick = 0;
  std::uint32_t microseconds = 500000;  // per quarter note, never 0
};

struct SmfMeter {
  std::uint32_t tick = 0;
  int numerator = 4, denominator = 4;  // 1 to 255; 1 to 64
};

struct SmfTrack {
  std::string name;            // of the track, else of its instrument; at most 60 characters
  std::vector<SmfNote> notes;  // by start
  std::vector<SmfTempo> tempos;
  std::vector<SmfMeter> meters;
  // The General MIDI program, 0 to 127, of each channel at its first note; kNoProgram if the track
  // sets none.
  std::array<std::uint8_t, kChannels> programs{};
  bool hasLyrics = false;
};

struct SmfFile {
  int format = 0;
  // Ticks per quarter note. SMPTE time has no quarter notes: here they last half a second, or a
  // whole one if the half is not a whole number of ticks.
  std::uint32_t division = 0;
  bool smpteTime = false;
  std::vector<SmfTrack> tracks;
};

// Reads the whole file. Skips sysex events, meta events that do not affect the notes, unknown
// chunks, and bytes after the last track or after the end of a track. A note struck again while it
// sounds ends there; one that is never released ends with its track. Throws core::RunTimeError
// (invalid argument) with a Spanish sentence (lower case, without a full stop) that says where the
// file is damaged.
SmfFile ReadSmf(std::string_view bytes);

// The tempo and metre changes that apply to a track, by time: those of all tracks, or in a file of
// format 2 only its own.
std::vector<SmfTempo> TemposFor(const SmfFile& file, std::size_t track);
std::vector<SmfMeter> MetersFor(const SmfFile& file, std::size_t track);

}  // namespace tonadex::midi
