#include "formats/tempo125.h"

#include "formats/note_length.h"
#include "formats/pieces.h"

namespace tonadex::formats {
namespace {

constexpr std::size_t kMostCharacters = 8;  // "32c#..6,"

}  // namespace

std::string RtttlAtTempo125(core::RTTTLMelody& melody) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  std::array<Piece, kDurationTexts.size()> durations;  // "" for the header's
  for (std::size_t i = 0; i < durations.size(); ++i) {
    durations[i] = kDurationTexts[i] == melody.DefaultDuration ? "" : kDurationTexts[i];
  }
  PieceText text(
      melody.Name + ":d=" + melody.DefaultDuration + ",o=" + melody.DefaultOctave + ",b=125:",
      melody.Notes.size() * kMostCharacters);
  Tempo125Bands bands(melody.Beats);
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    const Band& band = bands[note];
    const char octave = static_cast<char>('0' + note.octave);
    text.Put(durations[band.length]);
    text.Put(note.letter);
    text.Put('#', note.IsSharp());
    text.Put('.', band.dotted);
    text.Put('.', note.dotted);
    text.Put(octave, note.ownOctave && melody.DefaultOctave != std::string_view(&octave, 1));
    text.Put(',');
  }
  return text.Take();
}

}  // namespace tonadex::formats
