#include "formats/tempo125.h"

#include "formats/note_length.h"

namespace tonadex::formats {

std::string RtttlAtTempo125(core::RTTTLMelody& melody) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  std::string text =
      melody.Name + ":d=" + melody.DefaultDuration + ",o=" + melody.DefaultOctave + ",b=125:";
  text.reserve(text.size() + melody.Notes.size() * 7);
  std::string pitch;
  for (const core::RTTTLNote& note : melody.Notes) {
    pitch = note.Note;
    const std::int16_t lengthMs = NoteLengthMs(note.Duration, melody.Beats, note.Dotted);
    const std::string_view duration = DurationForLength(lengthMs, pitch);
    if (duration != melody.DefaultDuration) {
      text += duration;
    }
    text += pitch;
    if (note.Dotted) {
      text += '.';
    }
    if (note.Octave != melody.DefaultOctave) {
      text += note.Octave;
    }
    text += ',';
  }
  return text;
}

}  // namespace tonadex::formats
