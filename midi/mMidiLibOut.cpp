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

constexpr std::int32_t kTempoMicroseconds = 5000000;  // per quarter note
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

struct BaseTicks {
  double duration;
  double ticks;
};

constexpr std::array kBaseTicks = std::to_array<BaseTicks>(
    {{1, 1536}, {2, 768}, {4, 384}, {8, 192}, {16, 96}, {32, 48}, {64, 24}});

char ToByte(std::int32_t value) {
  if (value < 0 || value > 255) {
    throw core::RunTimeError(core::ErrorNumber::kInvalidArgument,
                             std::to_string(value) + " no cabe en un byte");
  }
  return static_cast<char>(value);
}

// The length is one byte: ToByte throws for a text over 255 bytes.
std::string TextEvent(std::string_view event, std::string_view text) {
  std::string bytes(event);
  bytes += ToByte(static_cast<std::int32_t>(std::min<std::size_t>(text.size(), 256)));
  bytes += text;
  return bytes;
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
  constexpr std::size_t kPairSize = 8, kOffDelta = 4;  // of a pair; the note-off's place in it
  std::string events;
  events.reserve(melody.Notes.size() * kPairSize);
  std::int32_t pause = 0;
  std::int16_t last = kPauseNumber, lastTicks = 0;
  for (const core::RTTTLNote& note : melody.Notes) {
    const std::int16_t number = NumberOf(note);
    const std::int16_t ticks = NoteTicks(core::ToNumber(note.Duration), note.Dotted);
    if (number == kPauseNumber) {
      pause = core::ToInt32(static_cast<double>(pause) + ticks);
    } else {
      if (repeats == Repeats::kApart && number == last && pause == 0 && lastTicks > 1) {
        --events[events.size() - kPairSize + kOffDelta];
        pause = 1;
      }
      events += MidiNotePair(pause, ticks, number);
      pause = 0;
      last = number;
      lastTicks = ticks;
    }
  }
  return events;
}

std::string MidiNotePair(std::int32_t delta, std::int16_t ticks, std::int16_t noteNumber) {
  return MidiEvent(delta, kNoteOn, kChannel, PairArray(noteNumber, kOnVelocity)) +
         MidiEvent(ticks, kNoteOff, kChannel, PairArray(noteNumber, kOffVelocity));
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
  return {static_cast<char>(value & 127)};
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
  const auto base = std::ranges::find(kBaseTicks, duration, &BaseTicks::duration);
  const double count = base == kBaseTicks.end() ? 0 : core::RoundHalfEven(base->ticks / 2);
  return core::ToInt16(dotted ? count * 0.1 * 1.5 : count * 0.1);
}

std::int16_t NoteNumber(std::string_view pitch, std::int16_t octaveLessOne) {
  if (pitch == "p") {
    return kPauseNumber;
  }
  return core::ToInt16((octaveLessOne + 1) * formats::kSemitones +
                       formats::Semitone(pitch).value_or(0));
}

std::int16_t NumberOf(const core::RTTTLNote& note) {
  const double octave = core::ToNumber(note.Octave);
  return core::IsPause(note)
             ? kPauseNumber
             : NoteNumber(note.Note, core::ToInt16(core::RoundHalfEven(octave) - 1));
}

}  // namespace tonadex::midi
