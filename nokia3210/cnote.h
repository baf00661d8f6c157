#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tonadex::nokia3210 {

// Default duration and octave in the header of a melody built from converted notes. Notes with
// equal values leave them out; a note typed without a duration has this one.
struct Defaults {
  std::string Duration = "4";
  std::string Octave = "5";
};

// The two notations.
enum class NoteKind : std::int16_t {
  kComposer = 1,  // "8.#c2 4-": as the phone's composer shows them, separated by blanks
  kRTTTL = 2,     // "8c#.6,p": a notes section without its header, separated by ","
};

inline constexpr std::string_view kNeverSharp = "eb";  // letters that the composer cannot sharpen

// One note or pause of the composer.
struct cNote {
  std::uint8_t Duration = 4;  // 1, 2, 4, 8, 16 or 32
  char Letter = 'c';          // a to g, p for a pause
  char Octave = '1';          // '1' to '3'; '0' and '4' are octaves that the phone lacks
  bool Sharp = false;
  bool Dotted = false;

  bool IsPause() const { return Letter == 'p'; }
  // Composer notation with duration and octave always written: "8.#c2", "4.-".
  std::string Full_ComposerNote() const;
  // RTTTL with duration and octave always written: "8c#.6", "4p.".
  std::string Full_RTTTLNote() const;
  // The notes as one string, without a separator at the end. RTTTL leaves out durations and octaves
  // equal to the defaults; composer notation writes them all.
  static std::string NoteBatch(std::span<const cNote> notes, NoteKind kind,
                               const Defaults& defaults);

  friend bool operator==(const cNote&, const cNote&) = default;
};

// Parses one of the six durations ("16" returns 16); 0 for any other text.
std::uint8_t DurationOf(std::string_view text);

}  // namespace tonadex::nokia3210
