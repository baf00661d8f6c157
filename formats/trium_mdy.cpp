#include "formats/trium_mdy.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/message_box.h"
#include "core/number.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/note_length.h"
#include "formats/note_warning.h"
#include "formats/pitch.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr double kFirstHighOctave = 6;  // this octave and higher are written in upper case

// German names by semitone.
constexpr std::array<std::string_view, kSemitones> kNames = {"c",  "c#", "d",  "d#", "e",  "f",
                                                             "f#", "g",  "g#", "a",  "a#", "h"};

struct Length {
  double ms;  // at tempo 100, where a whole note lasts 2400 ms
  std::string_view text;
};

// Shortest first, so that of two equally near lengths the shorter is taken.
constexpr std::array kLengths = std::to_array<Length>({
    {75, "32"},
    {112.5, "32."},
    {150, "16"},
    {225, "16."},
    {300, "8"},
    {450, "8."},
    {600, "4"},
    {900, "4."},
    {1200, "2"},
    {1800, "2."},
    {2400, "1"},
    {3600, "1."},
});
static_assert(std::ranges::is_sorted(kLengths, {}, &Length::ms));

std::string_view NearestLength(double ms) {
  const auto nearest = std::ranges::min_element(
      kLengths, {}, [ms](const Length& length) { return std::abs(ms - length.ms); });
  return nearest->text;
}

bool HasName(const core::RTTTLNote& note) {
  return core::IsPause(note) || Semitone(note.Note).has_value();
}

// "p" for a pause. HasName(note) must be true.
std::string NoteName(const core::RTTTLNote& note) {
  if (core::IsPause(note)) {
    return "p";
  }
  std::string name(kNames[static_cast<std::size_t>(*Semitone(note.Note))]);
  if (core::ToNumber(note.Octave) >= kFirstHighOctave) {
    name.front() = core::ToUpper(name.front());
  }
  return name;
}

void ReportUnplaced(std::string_view pitch, std::string_view melodyName) {
  core::MsgBox("Kann nicht konvertieren!\r\n" + std::string(pitch) +
                   " Bereiche: c bis H\r\nDatei:     " + std::string(melodyName),
               core::Icon::kExclamation);
}

}  // namespace

std::string TriumMdyText(core::RTTTLMelody& melody, std::string& warnings) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  std::string text = "NAME=" + melody.Name + "\r\nTEMPO=100\r\n";
  text.reserve(text.size() + melody.Notes.size() * 8);
  bool reported = false;
  std::size_t number = 0;
  for (const core::RTTTLNote& note : melody.Notes) {
    ++number;
    const double duration = core::ToNumber(note.Duration);
    const bool known = IsPhoneDuration(duration);
    if (!known) {
      AppendNoteWarning(warnings, "La nota # ", number, u8" no tiene una duración válida"_w);
    }
    const bool named = HasName(note);
    if (!named && !reported) {
      ReportUnplaced(note.Note, melody.Name);
      reported = true;
    }
    if (known && named) {
      const std::string name = NoteName(note);
      const double ms = ExactNoteLengthMs(duration, ToTempo(melody.Beats), note.Dotted);
      text.append("M").append(name).append(NearestLength(ms)).append(core::kCrLf);
    }
  }
  return text;
}

}  // namespace tonadex::formats
