#include "midi/smf_voices.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "core/text.h"
#include "formats/pitch.h"
#include "midi/gm_instruments.h"

namespace tonadex::midi {
namespace {

constexpr std::size_t kDrumChannel = 9;

// Words in track names (folded), and how much each adds to the rating of the voice as the tune.
struct Hint {
  std::string_view word;
  double worth;
};
constexpr auto kHints = std::to_array<Hint>({
    {"melod", 3},    {"lead", 2},   {"vocal", 2},   {"voice", 2},   {"voz", 2},    {"vox", 2},
    {"canto", 2},    {"tune", 2},   {"solo", 1},    {"soprano", 1}, {"right", 1},  {"derecha", 1},
    {"bass", -3},    {"bajo", -3},  {"drum", -3},   {"perc", -3},   {"bater", -3}, {"acomp", -2},
    {"accomp", -2},  {"chord", -2}, {"acorde", -2}, {"left", -1},   {"izq", -1},   {"pad", -2},
    {"rhythm", -2},  {"ritmo", -2}, {"string", -1}, {"cuerda", -1}, {"back", -1},  {"harmon", -1},
    {"armonia", -1},
});

// Families of eight General MIDI programs that rarely play the tune.
constexpr double FamilyWorth(std::uint8_t program) {
  switch (program / 8) {
    case 4:  // basses
      return -2;
    case 5:   // bowed strings, harp, timpani
    case 6:   // ensembles
    case 11:  // pads
    case 12:  // effects
    case 14:  // percussion
      return -0.5;
    case 15:  // sounds
      return -2;
    default:
      return 0;
  }
}

double NameWorth(std::string_view name) {
  const std::string folded = core::Fold(name);
  double worth = 0;
  for (const Hint& hint : kHints) {
    worth += core::Contains(folded, hint.word) ? hint.worth : 0;
  }
  return worth;
}

// The share of notes that start when, or shortly before, the previous ones have ended.
double MonophonicPart(std::span<const SmfNote> notes) {
  std::size_t alone = 0;
  std::uint32_t silentFrom = 0;
  for (const SmfNote& note : notes) {
    alone += silentFrom <= note.start + (note.end - note.start) / 2 ? 1 : 0;
    silentFrom = std::max(silentFrom, note.end);
  }
  return static_cast<double>(alone) / static_cast<double>(notes.size());
}

// The share of the file's bars, taken as four quarter notes long, in which a note starts. A tune
// goes through the piece; an introduction or a solo does not. `notes` are ordered by start.
double PlayedPart(std::span<const SmfNote> notes, const SmfFile& file) {
  const std::uint64_t bar = std::uint64_t{4} * file.division;
  std::uint64_t last = 0, played = 0;
  for (const SmfTrack& track : file.tracks) {
    last = std::max<std::uint64_t>(last, track.notes.empty() ? 0 : track.notes.back().start / bar);
  }
  for (std::size_t i = 0; i < notes.size(); ++i) {
    played += i == 0 || notes[i].start / bar != notes[i - 1].start / bar ? 1u : 0u;
  }
  return static_cast<double>(played) / static_cast<double>(last + 1);
}

double MeanKey(std::span<const SmfNote> notes) {
  double sum = 0;
  for (const SmfNote& note : notes) {
    sum += note.key;
  }
  return sum / static_cast<double>(notes.size());
}

using Programs = std::array<std::uint8_t, kChannels>;

// The programs set by any track: some files set them all in a separate track.
Programs ProgramsOf(const SmfFile& file) {
  Programs programs;
  programs.fill(kNoProgram);
  for (const SmfTrack& track : file.tracks) {
    for (std::size_t channel = 0; channel < kChannels && file.format != 2; ++channel) {
      programs[channel] =
          programs[channel] == kNoProgram ? track.programs[channel] : programs[channel];
    }
  }
  return programs;
}

// How likely a voice is the tune: by its track's name, lyrics, few overlapping notes, high pitch,
// number of notes compared with the file's busiest voice, and bars in which it plays.
double TuneWorth(const SmfFile& file, const SmfVoice& voice, std::size_t mostNotes) {
  const std::vector<SmfNote> notes = NotesOf(file, voice);
  const double share = static_cast<double>(notes.size()) / static_cast<double>(mostNotes);
  return NameWorth(voice.name) + (file.tracks[voice.track].hasLyrics ? 2 : 0) +
         2 * MonophonicPart(notes) + std::clamp((MeanKey(notes) - 48) / 18, -1.0, 2.0) +
         2 * std::min(3 * share, 1.0) + 3 * std::min(1.5 * PlayedPart(notes, file), 1.0) +
         (voice.program == kNoProgram ? 0 : FamilyWorth(voice.program));
}

void GuessTune(const SmfFile& file, std::vector<SmfVoice>& voices) {
  SmfVoice* best = nullptr;
  double most = 0;
  std::size_t mostNotes = 1;
  for (const SmfVoice& voice : voices) {
    mostNotes = voice.drums ? mostNotes : std::max(mostNotes, voice.notes);
  }
  for (SmfVoice& voice : voices) {
    const double worth = voice.drums ? 0 : TuneWorth(file, voice, mostNotes);
    if (!voice.drums && (best == nullptr || worth > most)) {
      best = &voice;
      most = worth;
    }
  }
  if (best != nullptr) {
    best->tune = true;
  }
}

}  // namespace

std::vector<SmfVoice> VoicesOf(const SmfFile& file) {
  const Programs anywhere = ProgramsOf(file);
  std::vector<SmfVoice> voices;
  for (std::size_t track = 0; track < file.tracks.size(); ++track) {
    std::array<SmfVoice, kChannels> channels;
    for (const SmfNote& note : file.tracks[track].notes) {
      SmfVoice& voice = channels[note.channel];
      voice.lowest = voice.notes == 0 ? note.key : std::min<int>(voice.lowest, note.key);
      voice.highest = std::max<int>(voice.highest, note.key);
      ++voice.notes;
    }
    for (std::size_t channel = 0; channel < kChannels; ++channel) {
      SmfVoice& voice = channels[channel];
      if (voice.notes == 0) {
        continue;
      }
      voice.track = track;
      voice.channel = channel;
      voice.name = file.tracks[track].name;
      voice.drums = channel == kDrumChannel;
      const std::uint8_t own = file.tracks[track].programs[channel];
      voice.program = own == kNoProgram ? anywhere[channel] : own;
      voice.instrument = voice.drums                   ? u8"Batería"_w
                         : voice.program == kNoProgram ? std::string_view()
                                                       : kInstruments[voice.program];
      voices.push_back(std::move(voice));
    }
  }
  GuessTune(file, voices);
  return voices;
}

std::string_view WhyNoTune(const std::vector<SmfVoice>& voices) {
  if (voices.empty()) {
    return "no tiene ninguna nota";
  }
  return std::ranges::any_of(voices, &SmfVoice::tune)
             ? ""
             : u8"solo tiene percusión: de ella no sale ninguna melodía"_w;
}

std::vector<SmfNote> NotesOf(const SmfFile& file, const SmfVoice& voice) {
  std::vector<SmfNote> notes;
  std::ranges::copy_if(file.tracks[voice.track].notes, std::back_inserter(notes),
                       [&](const SmfNote& note) { return note.channel == voice.channel; });
  std::ranges::stable_sort(notes, [](const SmfNote& a, const SmfNote& b) {
    return a.start != b.start ? a.start < b.start : a.key > b.key;
  });
  return notes;
}

std::string KeyText(int key) {
  return std::string(formats::kSpanishPitches.at(static_cast<std::size_t>(key % 12))) + " " +
         std::to_string(key / 12);
}

std::string VoiceText(const SmfVoice& voice) {
  std::string text = voice.name.empty() ? "Sin nombre" : voice.name;
  text += voice.tune ? u8", parece la melodía"_w : "";
  text += voice.instrument.empty() ? "" : " (" + voice.instrument + ")";
  text += ", canal " + std::to_string(voice.channel + 1);
  text += ", " + core::Counted(voice.notes, "nota", "notas");
  return text + ", de " + KeyText(voice.lowest) + " a " + KeyText(voice.highest);
}

}  // namespace tonadex::midi
