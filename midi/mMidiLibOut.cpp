#include "midi/mMidiLibOut.h"

#include <algorithm>
#include <string_view>

#include "core/number.h"
#include "core/runtime_error.h"
#include "files/paths.h"
#include "files/write.h"
#include "formats/pitch.h"
#include "formats/shift_right.h"

namespace tonadex::midi {
namespace {

constexpr int kNoteOn = 0x90;
constexpr int kNoteOff = 0x80;
constexpr int kControlChange = 0xB0;
constexpr int kProgramChange = 0xC0;
constexpr int kChannel = 0;
constexpr int kOnVelocity = 100;
constexpr int kOffVelocity = 0;
constexpr int kVolumeController = 7;
constexpr int kFullVolume = 127;

// Meta events: delta time, status and type.
constexpr std::string_view kMetaCredits("\x00\xFF\x02", 3);
constexpr std::string_view kMetaTrackName("\x00\xFF\x03", 3);
constexpr std::string_view kMetaTempo("\x00\xFF\x51\x03", 4);
constexpr std::string_view kMetaEndOfTrack("\x00\xFF\x2F\x00", 4);

struct Ticks {
  std::uint8_t duration;
  std::int16_t plain, dotted;
};

// 768 ticks for a whole note, halved for each shorter duration, times 0.1 (times 1.5 when dotted),
// rounded half to even.
constexpr std::array kTicks = std::to_array<Ticks>(
    {{1, 77, 115}, {2, 38, 58}, {4, 19, 29}, {8, 10, 14}, {16, 5, 7}, {32, 2, 4}, {64, 1, 2}});

// Plain and dotted ticks, indexed by NoteCodes::duration.
constexpr auto kTicksOf = [] {
  std::array<std::array<std::int16_t, 2>, 256> ticks{};
  for (const Ticks& row : kTicks) {
    ticks[row.duration] = {row.plain, row.dotted};
  }
  return ticks;
}();

char ToByte(std::int32_t value) {
  if (value < 0 || value > 255) {
    throw core::RunTimeError(core::ErrorNumber::kInvalidArgument,
                             std::to_string(value) + " no cabe en un byte");
  }
  return static_cast<char>(value);
}

// A delta time is always one byte, see WriteVarLen.
char DeltaByte(std::int32_t value) {
  return static_cast<char>(value & 127);
}

// The length is one byte: ToByte throws for a text over 255 bytes.
std::string TextEvent(std::string_view event, std::string_view text) {
  std::string bytes(event);
  bytes += ToByte(static_cast<std::int32_t>(std::min<std::size_t>(text.size(), 256)));
  bytes += text;
  return bytes;
}

std::int16_t NumberAt(std::int16_t octaveLessOne, int semitone) {
  return core::ToInt16((octaveLessOne + 1) * formats::kSemitones + semitone);
}

constexpr std::size_t kPairSize = 8;

std::array<char, kPairSize> PairBytes(std::int32_t delta, std::int16_t ticks, std::int16_t number) {
  const char note = ToByte(number);
  return {DeltaByte(delta), static_cast<char>(kNoteOn | kChannel),  note, kOnVelocity,
          DeltaByte(ticks), static_cast<char>(kNoteOff | kChannel), note, kOffVelocity};
}

}  // namespace

std::int16_t WriteMidiFile(const core::RTTTLMelody& melody) {
  const bool written = core::SkipErrors(
      [&] { files::WriteBytes(files::PathFromText(melody.FileName), MidiFileBytes(melody)); });
  return written ? kMidiWritten : kMidiFailed;
}

std::string MidiFileBytes(const core::RTTTLMelody& melody, Repeats repeats) {
  const std::string track = MidiCreditsEvent(melody.Credits) +
                            MidiTrackNameEvent(melody.TrackName) + MidiVolumeEvent() +
                            MidiTempoEvent(melody.Beats) + MidiProgramChange(melody.Instrument) +
                            MidiNoteEvents(melody, repeats) + MidiEndOfTrack();
  return MidiHeaderChunk(0, 1, MidiDivision(melody.Beats)) + MidiTrackHeader(track) + track;
}

std::int16_t MidiDivision(std::string_view beats) {
  const std::int16_t twice = core::ToInt16(core::ToNumber(beats) * 385 / 120);
  return core::ToInt16(twice / 2.0);
}

std::string MidiHeaderChunk(std::int16_t format, std::int16_t tracks, std::int16_t division) {
  return "MThd" + LongToBytes(6) + WordToBytes(format) + WordToBytes(tracks) +
         WordToBytes(division);
}

std::string MidiTrackHeader(std::string_view trackData) {
  return "MTrk" + LongToBytes(static_cast<std::int32_t>(trackData.size()));
}

std::string MidiCreditsEvent(std::string_view text) {
  return TextEvent(kMetaCredits, text);
}

std::string MidiTrackNameEvent(std::string_view text) {
  return TextEvent(kMetaTrackName, text);
}

std::string MidiVolumeEvent() {
  return MidiEvent(0, kControlChange, kChannel, PairArray(kVolumeController, kFullVolume));
}

std::string MidiTempoEvent(std::string_view /*beats*/) {
  std::string bytes(kMetaTempo);
  for (const int shift : {16, 8, 0}) {
    bytes += ToByte(formats::ShiftRight(kTempoMicroseconds, shift) & 0xFF);
  }
  return bytes;
}

std::string MidiProgramChange(std::int16_t instrument) {
  const int program = instrument;
  return MidiEvent(0, kProgramChange, kChannel, {&program, 1});
}

std::string MidiNoteEvents(const core::RTTTLMelody& melody, Repeats repeats) {
  constexpr std::size_t kOffDelta = 4;  // the note-off's place in its pair
  std::string events;
  events.reserve(melody.Notes.size() * kPairSize);
  std::int32_t pause = 0;
  std::int16_t last = kPauseNumber, lastTicks = 0;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    const std::int16_t number = NumberOf(melody.Notes, note);
    const std::int16_t ticks = TicksOf(melody.Notes, note);
    if (number == kPauseNumber) {
      pause += ticks;
    } else {
      if (repeats == Repeats::kApart && number == last && pause == 0 && lastTicks > 1) {
        --events[events.size() - kPairSize + kOffDelta];
        pause = 1;
      }
      const auto pair = PairBytes(pause, ticks, number);
      events.append(pair.data(), pair.size());
      pause = 0;
      last = number;
      lastTicks = ticks;
    }
  }
  return events;
}

std::string MidiNotePair(std::int32_t delta, std::int16_t ticks, std::int16_t noteNumber) {
  const auto pair = PairBytes(delta, ticks, noteNumber);
  return {pair.data(), pair.size()};
}

std::string MidiEndOfTrack() {
  return std::string(kMetaEndOfTrack);
}

std::string MidiEvent(std::int32_t delta, int status, int channel, std::span<const int> data) {
  std::string bytes = WriteVarLen(delta);
  bytes += ToByte(status | channel);
  for (const int value : data) {
    bytes += ToByte(value);
  }
  return bytes;
}

std::string WriteVarLen(std::int32_t value) {
  return {DeltaByte(value)};
}

std::string LongToBytes(std::int32_t value) {
  return WordToBytes(value >> 16) + WordToBytes(value);
}

std::string WordToBytes(std::int32_t value) {
  const int word = value & 0xFFFF;
  return {ToByte(formats::ShiftRight(word, 8)), ToByte(word & 0xFF)};
}

std::array<int, 2> PairArray(int first, int second) {
  return {first, second};
}

std::int16_t NoteTicks(double duration, bool dotted) {
  const auto row = std::ranges::find(kTicks, duration, &Ticks::duration);
  return row == kTicks.end() ? std::int16_t{0} : dotted ? row->dotted : row->plain;
}

std::int16_t TicksOf(const core::NoteList& notes, const core::NoteCodes& note) {
  notes.Duration(note);  // throws for a duration that is not a number
  return kTicksOf[note.duration][note.dotted ? 1 : 0];
}

std::int16_t NoteNumber(std::string_view pitch, std::int16_t octaveLessOne) {
  if (pitch == "p") {
    return kPauseNumber;
  }
  return NumberAt(octaveLessOne, formats::Semitone(pitch).value_or(0));
}

std::int16_t NumberOf(const core::NoteList& notes, const core::NoteCodes& note) {
  const double octave = notes.Octave(note);
  if (core::IsPause(note)) {
    return kPauseNumber;
  }
  const int semitone = std::max(formats::SemitoneOf(note), 0);
  if (note.octave != core::NoteCodes::kOther) {
    return static_cast<std::int16_t>(note.octave * formats::kSemitones + semitone);
  }
  return NumberAt(core::ToInt16(core::RoundHalfEven(octave) - 1), semitone);
}

}  // namespace tonadex::midi
