#include "formats/tempo125.h"

#include "formats/note_length.h"
#include "formats/pieces.h"

namespace tonadex::formats {
namespace {

constexpr std::size_t kMostCharacters = 8;  // longest note, "32c#..6,"

}  // namespace

std::string RtttlAtTempo125(core::RTTTLMelody& melody) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  std::array<Piece, kDurationTexts.size()> durations;  // "" for the header's default
  for (std::size_t i = 0; i < durations.size(); ++i) {
    durations[i] = kDurationTexts[i] == melody.DefaultDuration ? "" : kDurationTexts[i];
  }
  std::string text =
      melody.Name + ":d=" + melody.DefaultDuration + ",o=" + melody.DefaultOctave + ",b=125:";
  const char defaultOctave = melody.DefaultOctave.size() == 1 ? melody.DefaultOctave.front() : '\0';
  PieceWriter pieces(text, melody.Notes.size() * kMostCharacters);
  Tempo125Bands bands(melody.Beats);
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    const Band& band = bands[note];
    const char octave = static_cast<char>('0' + note.octave);
    pieces.Put(durations[band.length]);
    pieces.Put(note.letter);
    pieces.Put('#', note.IsSharp());
    pieces.Put('.', band.dotted);
    pieces.Put('.', note.dotted);
    pieces.Put(octave, note.ownOctave && octave != defaultOctave);
    pieces.Put(',');
  }
  pieces.End(text);
  return text;
}

}  // namespace tonadex::formats
