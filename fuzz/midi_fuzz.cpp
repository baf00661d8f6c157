#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/rtttl.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "fuzz/require.h"
#include "midi/smf_melody.h"

// Reads any bytes as a MIDI file: the offset of a fault is within the file, and every voice of a
// readable file gives a melody within its limits that parses to as many notes.
namespace {

using namespace tonadex;

void CheckVoice(const midi::SmfFile& file, const midi::SmfVoice& voice, std::size_t mostNotes,
                midi::Taken taken) {
  const midi::SmfMelody made = midi::MelodyOf(file, voice,
                                              {.name = voice.name,
                                               .firstBar = mostNotes % 3,
                                               .mostNotes = mostNotes,
                                               .taken = taken,
                                               .lowestOctave = 4,
                                               .octaves = 4});
  const std::size_t count = made.melody.notes.size();
  Require(count <= (mostNotes == 0 ? core::kMaxParts : mostNotes), "too many notes");
  Require(made.firstBar > 0 && made.lastBar <= made.bars, "a bar that the voice does not have");
  Require(made.melody.tempo >= 25 && made.melody.tempo <= 900, "a tempo that phones do not have");
  core::RTTTLMelody parsed;
  parsed.Text = core::RtttlText(made.melody);
  Require(count == 0 || core::ParseRTTTL(parsed) == core::kParsed, "a text that is no melody");
  Require(count == 0 || parsed.Notes.size() == count, "another number of notes");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  midi::SmfFile file;
  if (!core::SkipErrors([&] { file = midi::ReadSmf(bytes); })) {
    return 0;
  }
  for (const midi::SmfTrack& track : file.tracks) {
    Require(std::ranges::is_sorted(track.notes, {}, &midi::SmfNote::start), "notes out of order");
    for (const midi::SmfNote& note : track.notes) {
      Require(note.start <= note.end && note.key < 128 && note.channel < midi::kChannels, "a note");
    }
  }
  const auto voices = midi::VoicesOf(file);
  Require(std::ranges::count(voices, true, &midi::SmfVoice::tune) <= 1, "several tunes");
  for (const midi::SmfVoice& voice : voices) {
    CheckVoice(file, voice, size % 60, midi::Taken::kHighest);
    CheckVoice(file, voice, 0, midi::Taken::kFirst);
  }
  return 0;
}
