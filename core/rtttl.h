#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/number.h"

// The melody record and the parser of RTTTL: "name:d=4,o=5,b=63:8c#.6,p,…".
namespace tonadex::core {

// Result codes of ParseRTTTL. Any other positive code is the 1-based number of the last note that
// could not be read.
inline constexpr std::int16_t kParsed = 0;
inline constexpr std::int16_t kSectionsError = 6666;  // the section before the first ":" is empty
inline constexpr std::int16_t kParseFailure = 9999;  // separators missing, too many notes, overflow

// One item of the notes section as strings: views that are valid until the record that holds the
// note is parsed again, moved or destroyed.
struct RTTTLNote {
  std::string_view Duration;  // one or two digits 1 to 8, or the melody's DefaultDuration
  std::string_view Note;      // lower-case letter, then "#" when sharp; "p" is a pause; h is b;
                              // "" marks an item that could not be read
  std::string_view Octave;    // one digit 1 to 8, or the melody's DefaultOctave
  bool Dotted = false;

  friend bool operator==(const RTTTLNote&, const RTTTLNote&) = default;
};

// A note as NoteList stores it: eight bytes of numbers, so that parsing allocates and copies no
// string per note and the writers index their tables directly. The numbers include the melody's
// defaults.
struct NoteCodes {
  static constexpr std::uint8_t kOther = 255;  // a default that is not a whole number up to 254
  static constexpr std::uint8_t kNoLength = 6;

  char letter = '\0';          // Note's first character
  std::uint8_t pitchSize = 0;  // Note's length: 0, 1, or 2 with "#"
  bool dotted = false;
  std::uint8_t length = kNoLength;  // 0 to 5 for the Duration "1", "2", "4", "8", "16", "32"
  std::uint8_t duration = 0;        // Duration as a number, 0 for ""
  std::uint8_t octave = 0;          // Octave as a number, 0 for ""
  bool ownDuration = true;          // not the melody's default
  bool ownOctave = true;

  constexpr bool IsSharp() const { return pitchSize == 2; }
};

// Only the exact pitch "p" is a pause ("p#" is an unknown letter).
constexpr bool IsPause(const RTTTLNote& note) {
  return note.Note == "p";
}
constexpr bool IsPause(const NoteCodes& note) {
  return note.letter == 'p' && note.pitchSize == 1;
}

// The phones' durations, indexed by NoteCodes::length, and the inverse, indexed by
// NoteCodes::duration.
inline constexpr std::array<std::uint8_t, NoteCodes::kNoLength> kLengths = {1, 2, 4, 8, 16, 32};
inline constexpr auto kLengthOf = [] {
  std::array<std::uint8_t, 256> lengths{};
  lengths.fill(NoteCodes::kNoLength);
  for (std::size_t i = 0; i < kLengths.size(); ++i) {
    lengths[kLengths[i]] = static_cast<std::uint8_t>(i);
  }
  return lengths;
}();

// The notes of a record, indexed from 0. Notes past those that were read are empty and take no
// memory, so resetting a record to thousands of them costs nothing.
class NoteList {
 public:
  // Replaces all notes by `count` empty ones.
  void Resize(std::size_t count) {
    read_.clear();
    size_ = count;
  }
  // Replaces all notes by `count` ones for the caller to fill, and sets the default strings.
  std::span<NoteCodes> Start(std::size_t count, std::string_view defaultDuration,
                             std::string_view defaultOctave);
  std::size_t size() const { return size_; }
  RTTTLNote operator[](std::size_t index) const;

  // The notes that were read, as strings or as codes: all notes after a parse that returned
  // kParsed.
  struct Iterator {
    using value_type = RTTTLNote;
    using difference_type = std::ptrdiff_t;
    RTTTLNote operator*() const { return (*notes)[index]; }
    Iterator& operator++() {
      ++index;
      return *this;
    }
    Iterator operator++(int) { return {notes, index++}; }
    bool operator==(const Iterator&) const = default;
    const NoteList* notes = nullptr;
    std::size_t index = 0;
  };
  Iterator begin() const { return {this, 0}; }
  Iterator end() const { return {this, read_.size()}; }
  std::span<const NoteCodes> Codes() const { return read_; }

  // ToNumber of the note's Duration or Octave, with its errors; the octave also as ToInt16.
  double Duration(const NoteCodes& note) const {
    return note.duration != NoteCodes::kOther ? note.duration : ToNumber(defaultDuration_);
  }
  double Octave(const NoteCodes& note) const {
    return note.octave != NoteCodes::kOther ? note.octave : ToNumber(defaultOctave_);
  }
  std::int16_t WholeOctave(const NoteCodes& note) const {
    return note.octave != NoteCodes::kOther ? std::int16_t{note.octave}
                                            : ToInt16(ToNumber(defaultOctave_));
  }

 private:
  std::vector<NoteCodes> read_;
  std::size_t size_ = 0;
  std::string defaultDuration_;
  std::string defaultOctave_;
};

// A melody. Header values are kept as text ("" when the melody has none). The parser applies no
// defaults: the field of a value that the header lacks keeps its previous content.
struct RTTTLMelody {
  std::string FileName;         // path of the MIDI file to write
  std::int16_t Instrument = 0;  // General MIDI program, 0-based
  std::string Credits;          // MIDI copyright notice, at most 255 characters
  std::string TrackName;        // MIDI track name, at most 255 characters
  std::string Name;             // the text before the first ":", with its blanks; "" without a ":"
  std::string Beats;            // tempo, quarter notes per minute
  std::string DefaultDuration;
  std::string DefaultOctave;
  std::string Text;        // the RTTTL text; the parser rewrites it
  std::string TempFolder;  // temporary folder with its trailing separator
  NoteList Notes;

  // Set by ParseRTTTL: parsing the unchanged record again would have the same result.
  bool ParsesAlike = false;
  // Set by a caller when parsing again is needless: the next ParseOrReport resets it and does not
  // parse.
  bool SkipParse = false;
};

// Parses melody.Text into the record and returns a result code; throws nothing but bad_alloc.
// Rewrites Text: after the header was read, one trailing "," and every blank are removed, so a
// second parse of the same record can read more than the first ("x: d=4" has no duration the first
// time). After kSectionsError Notes holds one empty note, after kParseFailure the notes read before
// the failure.
std::int16_t ParseRTTTL(RTTTLMelody& melody);

// Fills Name, DefaultDuration, DefaultOctave and Beats from the unchanged Text: keys are lower case
// and must follow their separator directly. Errors: invalid argument when a ":" is missing,
// overflow for a separator more than 32767 characters away.
void ParseRTTTLHeader(RTTTLMelody& melody);

// Parses one item, lower case and without blanks; may erase a stray mark from `item`. The strings
// of the note may be views of the melody's defaults. An unreadable item returns an empty Note.
// Example: "8d#.6" returns 8, "d#", 6, dotted.
RTTTLNote ParseRTTTLNote(std::string& item, const RTTTLMelody& melody);

// Shows the message box for a parser code; nothing for 0 or a negative one.
void ShowRTTTLError(std::int16_t code);

// Limits the defaults, because conversions repeat them for every note without its own duration or
// octave. Errors: invalid argument for a DefaultDuration or DefaultOctave of more than 8
// characters; the message quotes its beginning.
void CheckDefaults(const RTTTLMelody& melody);

// ParseRTTTL, ShowRTTTLError and CheckDefaults; true when the parse succeeded. See SkipParse.
bool ParseOrReport(RTTTLMelody& melody);

// Resets the record to its defaults: the built-in sample melody, instrument 99, tempo 63, duration
// 4, octave 5, 5001 empty notes. FileName stays. `tempFolder` ends in its separator.
void InitMelody(RTTTLMelody& melody, std::string_view tempFolder);

}  // namespace tonadex::core
