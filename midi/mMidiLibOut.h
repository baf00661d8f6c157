#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "core/rtttl.h"

// Writer of Standard MIDI files, format 0, one track. Strings hold bytes; numbers are big-endian.
//
// Delta times are one byte, the low seven bits of the value, so note lengths are in coarse ticks
// below 128. The tempo event always states 5,000,000 microseconds per quarter note; the header's
// division, about 1.604 times the beats per minute, compensates for that. Deliberate: all three
// must change together or not at all.
namespace tonadex::midi {

inline constexpr std::int32_t kTempoMicroseconds = 5000000;  // per quarter note, see above

inline constexpr std::int16_t kMidiWritten = 0;
inline constexpr std::int16_t kMidiFailed = -1;
inline constexpr std::int16_t kPauseNumber = -1;  // used as the note number of a pause

// Writes a parsed melody (Credits, TrackName, Instrument, Beats, Notes) to the path in FileName
// with files::WriteBytes. Returns kMidiWritten, or kMidiFailed after any failure, without a
// message. Pauses at the end are not written.
std::int16_t WriteMidiFile(const core::RTTTLMelody& melody);

// Whether a note that repeats the one before it follows at once, as phones' files have it, or is
// heard as a note of its own: the first one then ends a tick early.
enum class Repeats { kJoined, kApart };

// The whole file that WriteMidiFile writes, for kJoined. Errors: type mismatch, overflow;
// invalid argument for a value that does not fit a byte.
std::string MidiFileBytes(const core::RTTTLMelody& melody, Repeats repeats = Repeats::kJoined);

// The header's ticks per quarter note for a tempo: beats x 385 / 120, rounded half to even to 16
// bits, halved, rounded again. "" counts as 0. Errors: type mismatch, overflow.
std::int16_t MidiDivision(std::string_view beats);

// The functions below return bytes and throw core::RunTimeError when a value exceeds a byte.

std::string MidiHeaderChunk(std::int16_t format, std::int16_t tracks, std::int16_t division);
// "MTrk" and the length of the data; the data itself is not included.
std::string MidiTrackHeader(std::string_view trackData);
// Text events have one length byte: at most 255 characters.
std::string MidiCreditsEvent(std::string_view text);
std::string MidiTrackNameEvent(std::string_view text);
std::string MidiVolumeEvent();
// The tempo is ignored; see above.
std::string MidiTempoEvent(std::string_view beats);
std::string MidiProgramChange(std::int16_t instrument);
std::string MidiNoteEvents(const core::RTTTLMelody& melody, Repeats repeats = Repeats::kJoined);
// Note-on after `delta` ticks and note-off `ticks` later.
std::string MidiNotePair(std::int32_t delta, std::int16_t ticks, std::int16_t noteNumber);
std::string MidiEndOfTrack();
// One channel event: delta byte, status OR channel, data bytes.
std::string MidiEvent(std::int32_t delta, int status, int channel, std::span<const int> data);
// One byte: value AND 127.
std::string WriteVarLen(std::int32_t value);
std::string LongToBytes(std::int32_t value);
// The low 16 bits of the value.
std::string WordToBytes(std::int32_t value);
std::array<int, 2> PairArray(int first, int second);

// Ticks of a note of 1/duration: whole 77, half 38, quarter 19, eighth 10, sixteenth 5,
// thirty-second 2, sixty-fourth 1; dotted 115, 58, 29, 14, 7, 4, 2; 0 for any other duration.
std::int16_t NoteTicks(double duration, bool dotted);

// 12 x octave + semitone; c of octave 5 is 60. kPauseNumber for "p". An unknown pitch counts as c.
// `octaveLessOne` is the note's octave minus 1. Errors: overflow beyond 16 bits.
std::int16_t NoteNumber(std::string_view pitch, std::int16_t octaveLessOne);

// The note number and the ticks of a note of the list. A pause's octave must be a number too, of
// any size. Errors: type mismatch, overflow.
std::int16_t NumberOf(const core::NoteList& notes, const core::NoteCodes& note);
std::int16_t TicksOf(const core::NoteList& notes, const core::NoteCodes& note);

}  // namespace tonadex::midi
