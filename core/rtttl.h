#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// The melody record and the parser of RTTTL: "name:d=4,o=5,b=63:8c#.6,p,…".
namespace tonadex::core {

// Result codes of ParseRTTTL. Any other positive code is the 1-based number of the last note that
// could not be read.
inline constexpr std::int16_t kParsed = 0;
inline constexpr std::int16_t kSectionsError = 6666;  // the section before the first ":" is empty
inline constexpr std::int16_t kParseFailure = 9999;  // separators missing, too many notes, overflow

// One item of the notes section. The texts are views, valid until the record that parsed them (or
// the last copy of it) is parsed again or destroyed.
struct RTTTLNote {
  std::string_view Duration;  // one or two digits 1 to 8, or the melody's DefaultDuration
  std::string_view Note;      // lower-case letter, then "#" when sharp; "p" is a pause; h is b;
                              // "" marks an item that could not be read
  std::string_view Octave;    // one digit 1 to 8, or the melody's DefaultOctave
  bool Dotted = false;

  friend bool operator==(const RTTTLNote&, const RTTTLNote&) = default;
};

// Only the exact pitch "p" is a pause ("p#" is an unknown letter).
constexpr bool IsPause(const RTTTLNote& note) {
  return note.Note == "p";
}

// A dynamic array of notes, lower bound 0. Notes beyond those read are empty and take no memory, so
// resetting a record to thousands of them costs nothing.
class NoteList {
 public:
  // Replaces all notes by `count` empty ones.
  void Resize(std::size_t count) {
    read_.clear();
    size_ = count;
  }
  // Drops all notes and makes room for `count` to be appended.
  void Reserve(std::size_t count) {
    Resize(0);
    read_.reserve(count);
  }
  // Must follow Reserve or another Append.
  void Append(const RTTTLNote& note) {
    read_.push_back(note);
    size_ = read_.size();
  }
  RTTTLNote operator[](std::size_t index) const {
    return index < read_.size() ? read_[index] : RTTTLNote{};
  }
  std::size_t size() const { return size_; }
  // The notes that were read: all of them after a parse with code 0.
  auto begin() const { return read_.begin(); }
  auto end() const { return read_.end(); }

 private:
  std::vector<RTTTLNote> read_;
  std::size_t size_ = 0;
};

// A melody. Header values stay text ("" when the melody has none) and the parser applies no
// defaults: a value that the header lacks keeps what its field held before.
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

  // The buffer of the views in Notes; shared by copies of the record, never changed while shared.
  std::shared_ptr<std::string> NoteTexts;
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

// Parses one item, lower case and without blanks; may drop a stray mark from `item`. The note's
// texts are views of `item` and of the melody's defaults. An unreadable item gives an empty Note.
// Example: "8d#.6" gives 8, "d#", 6, dotted.
RTTTLNote ParseRTTTLNote(std::string& item, const RTTTLMelody& melody);

// Shows the message box for a parser code; nothing for 0 or a negative one.
void ShowRTTTLError(std::int16_t code);

// Every note that names no duration or octave repeats the header's, so an overlong one would be
// multiplied by the number of notes. Errors: invalid argument for a DefaultDuration or
// DefaultOctave of more than 8 characters; the message quotes its beginning.
void CheckDefaults(const RTTTLMelody& melody);

// ParseRTTTL, ShowRTTTLError and CheckDefaults; true when the parse succeeded.
bool ParseOrReport(RTTTLMelody& melody);

// Resets the record to its defaults: the built-in sample melody, instrument 99, tempo 63, duration
// 4, octave 5, 5001 empty notes. FileName stays. `tempFolder` ends in its separator.
void InitMelody(RTTTLMelody& melody, std::string_view tempFolder);

}  // namespace tonadex::core
