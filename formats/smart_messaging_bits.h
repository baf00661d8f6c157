#pragma once

#include <array>

// The codes of a Nokia Smart Messaging ringtone, for its writer and its reader.
namespace tonadex::formats::ott {

inline constexpr unsigned kCommandParts = 2;
// Command parts, seven bits each.
inline constexpr unsigned kProgramming = 0b0100101, kUnicode = 0b0100010, kSound = 0b0011101;
inline constexpr unsigned kBasicSong = 0b001, kTemporarySong = 0b010;  // with and without a title
// Instructions, three bits each.
inline constexpr unsigned kPattern = 0b000, kNote = 0b001, kScale = 0b010, kStyle = 0b011,
                          kTempo = 0b100, kVolume = 0b101;
inline constexpr unsigned kPauseValue = 0;  // 1 is c, 12 is b
inline constexpr int kLowestOctave = 4;     // of scale 0
inline constexpr int kScales = 4;
inline constexpr unsigned kDefaultScale = 1;
inline constexpr int kDefaultTempo = 63;

// By the code of a tempo, in quarter notes a minute.
inline constexpr std::array kTempos = {25,  28,  31,  35,  40,  45,  50,  56,  63,  70,  80,
                                       90,  100, 112, 125, 140, 160, 180, 200, 225, 250, 285,
                                       320, 355, 400, 450, 500, 565, 635, 715, 800, 900};
static_assert(kTempos.size() == 32);

}  // namespace tonadex::formats::ott
