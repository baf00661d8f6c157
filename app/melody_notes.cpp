#include "app/melody_notes.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "core/message_box.h"
#include "core/number.h"
#include "core/rtttl.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/note_length.h"
#include "formats/octave_range.h"
#include "formats/pitch.h"
#include "midi/mMidiLibOut.h"
#include "midi/note_times.h"
#include "midi/smf_voices.h"
#include "phones/formats.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr int kHighestOctave = 10;  // 0 is the lowest

struct Interval {
  int lowest = -1, highest = kHighestOctave + 1;  // by default every octave
  bool pausesToo = false;
};

// The octaves that the notices for the model do not report or, where they report none, the octaves
// that the format can hold.
Interval FittingOctaves(core::RTTTLMelody melody, std::string_view model) {
  using phones::OctaveRange;
  const phones::Format* format = phones::FindFormat(model);
  if (format == nullptr || format->octaves.range == OctaveRange::kAny) {
    return {};
  }
  const bool reported = format->reported.range != OctaveRange::kAny;
  const auto& [range, lowest, count] = reported ? format->reported : format->octaves;
  if (range == OctaveRange::kFrom) {
    return {lowest, kHighestOctave};
  }
  const int base =
      range == OctaveRange::kAround ? formats::AutoOctave(melody, formats::kRangeSpan) : lowest;
  const int first = base == 0 ? lowest : base;
  return {first, first + count - 1, reported};
}

// nullopt for an unreadable note.
std::optional<DrawnNote> DrawNote(const core::RTTTLNote& note, double tempo,
                                  const Interval& fitting) {
  const double duration = core::ToNumber(note.Duration);
  if (!formats::IsPhoneDuration(duration)) {
    return std::nullopt;
  }
  DrawnNote drawn;
  drawn.length = formats::ExactNoteLengthMs(duration, tempo, note.Dotted);
  drawn.dotted = note.Dotted;
  drawn.pause = core::IsPause(note);
  const bool judged = !drawn.pause || fitting.pausesToo;
  const double written = judged ? core::ToNumber(note.Octave) : fitting.lowest;
  drawn.outside = written < fitting.lowest || written > fitting.highest;
  if (drawn.pause) {
    return drawn;
  }
  const std::optional<int> semitone = formats::Semitone(note.Note);
  if (!semitone) {
    return std::nullopt;
  }
  const int octave = core::ToInt16(written);
  if (octave < 0 || octave > kHighestOctave) {
    return std::nullopt;
  }
  drawn.name = formats::kSpanishPitches[static_cast<std::size_t>(*semitone)];
  drawn.pitch = formats::kSemitones * octave + *semitone;
  return drawn;
}

void Append(Drawing& drawing, DrawnNote note) {
  note.start = drawing.length;
  drawing.length += note.length;
  drawing.notes.push_back(std::move(note));
}

void SetExtremes(Drawing& drawing) {
  bool first = true;
  for (const DrawnNote& note : drawing.notes) {
    if (!note.pause) {
      drawing.lowest = first ? note.pitch : std::min(drawing.lowest, note.pitch);
      drawing.highest = std::max(drawing.highest, note.pitch);
      first = false;
    }
  }
}

void Draw(Drawing& drawing, std::string_view rtttl, std::string_view model) {
  core::RTTTLMelody melody;
  core::InitMelody(melody, {});
  melody.Text = rtttl;
  core::ParseRTTTL(melody);
  core::CheckDefaults(melody);
  const double tempo = formats::ToTempo(melody.Beats);
  if (tempo < 0 || melody.Notes.begin() == melody.Notes.end()) {
    return;
  }
  Interval fitting;
  core::SkipErrors([&] { fitting = FittingOctaves(melody, model); });
  drawing.barLength = formats::kWholeNoteMs / tempo;
  // NoteTimes fails for a melody that does not fit a MIDI file; that one is never played.
  std::vector<midi::NoteTime> times(melody.Notes.size());
  core::SkipErrors([&] { times = midi::NoteTimes(melody); });
  std::size_t index = 0;
  for (const core::RTTTLNote& note : melody.Notes) {
    const midi::NoteTime& time = times[index++];
    if (time.number != midi::kPauseNumber) {
      drawing.soundLength = time.end;
    }
    core::SkipErrors([&] {
      if (auto drawn = DrawNote(note, tempo, fitting)) {
        drawn->sounds = time.start;
        drawn->number = static_cast<int>(index) - 1;
        Append(drawing, *std::move(drawn));
      }
    });
  }
  drawing.written = static_cast<int>(index);
  SetExtremes(drawing);
}

}  // namespace

Drawing MelodyDrawing(std::string_view rtttl, std::string_view model) {
  core::RecordingMessages unread;  // discards the parser's message boxes
  const core::ScopedMessageSink sink(unread);
  Drawing drawing;
  core::SkipErrors([&] { Draw(drawing, rtttl, model); });
  return drawing.notes.empty() ? Drawing{} : drawing;
}

int NoteAt(const Drawing& drawing, double ms) {
  if (ms < 0 || ms >= drawing.soundLength) {
    return -1;
  }
  const auto next = std::ranges::upper_bound(drawing.notes, ms, {}, &DrawnNote::sounds);
  return static_cast<int>(next - drawing.notes.begin()) - 1;
}

std::string DrawingInWords(const Drawing& drawing) {
  if (drawing.notes.empty()) {
    return std::string(u8"Ninguna melodía"_w);
  }
  const auto seconds = static_cast<std::size_t>(std::lround(drawing.length / 1000));
  std::string words = core::Counted(drawing.notes.size(), "nota o pausa", "notas y pausas") + ", " +
                      core::Counted(seconds, "segundo", "segundos");
  if (drawing.highest != 0) {
    words += ", de " + midi::KeyText(drawing.lowest) + " a " + midi::KeyText(drawing.highest);
  }
  return words;
}

std::string NoteInWords(const DrawnNote& note) {
  std::string words = (note.pause ? "pausa" : note.name) + ", ";
  words += std::to_string(std::lround(note.length)) + " ms";
  return note.outside ? words + std::string(u8" (fuera del alcance del móvil)"_w) : words;
}

}  // namespace tonadex::app
