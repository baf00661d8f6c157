#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "core/rtttl.h"
#include "data/shelf.h"
#include "formats/ems.h"
#include "formats/kws.h"
#include "formats/motorola_keys.h"
#include "formats/motorola_sms.h"
#include "formats/nokia_composer.h"
#include "formats/nokia_keys.h"
#include "formats/samsung_keys.h"
#include "formats/tempo125.h"
#include "formats/trium_mdy.h"
#include "midi/mMidiLibOut.h"
#include "nokia3210/cnokia.h"
#include "phones/catalogue.h"
#include "phones/conversion.h"
#include "phones/formats.h"

// Times the parser, each writer, the MIDI file and the whole conversion; each includes the parse.
// "collection" is the shelf and generated melodies, 195 characters on average: too many different
// notes for a branch predictor to learn. "note" is the time per note; it should not grow from
// melodies of 50 notes to one of 5000. (Motorola messages end after 35 notes, so there it shrinks.)
// Copying the melodies with memcpy is the reference.
namespace {

using namespace tonadex;

using Texts = std::vector<std::string>;

constexpr std::size_t kCollection = 1137;
constexpr std::size_t kShortest = 120;  // characters of a generated melody
constexpr std::size_t kLongest = 270;

template <std::size_t kCount>
std::string_view Pick(std::mt19937& random, const std::string_view (&texts)[kCount]) {
  return texts[random() % kCount];
}

// Octaves 4 to 7, every duration, sharps, dots and pauses, as often as in the melodies of a shelf.
std::string Item(std::mt19937& random) {
  constexpr std::string_view kDurations[] = {"", "", "", "8", "8", "16", "2", "32", "1"};
  constexpr std::string_view kPitches[] = {"c", "c#", "d", "d#", "e", "f", "f#",
                                           "g", "g#", "a", "a#", "b", "p"};
  constexpr std::string_view kOctaves[] = {"", "", "5", "6", "6", "7", "4"};
  const std::string_view pitch = Pick(random, kPitches);
  std::string item(Pick(random, kDurations));
  item.append(pitch).append(random() % 8 == 0 ? "." : "");
  return pitch == "p" ? item : item.append(Pick(random, kOctaves));
}

std::string Header(std::mt19937& random) {
  constexpr std::string_view kStarts[] = {"banco:d=4,o=5,b=", "banco:d=8,o=6,b="};
  return std::string(Pick(random, kStarts)) + std::to_string(60 + random() % 180) + ":";
}

Texts MelodiesOf(std::size_t notes, std::size_t count) {
  std::mt19937 random(50);
  Texts texts;
  while (texts.size() < count) {
    std::string text = Header(random) + Item(random);
    for (std::size_t i = 1; i < notes; ++i) {
      text += "," + Item(random);
    }
    texts.push_back(std::move(text));
  }
  return texts;
}

// One melody in five has blanks between its notes.
Texts Collection() {
  std::ifstream shelf(TONADEX_SHELF);
  Texts texts;
  for (const data::ShelfRow& row : data::ReadShelf(shelf)) {
    texts.push_back(row.rtttl);
  }
  std::mt19937 random(1137);
  while (texts.size() < kCollection) {
    const std::size_t size = kShortest + random() % (kLongest - kShortest);
    const std::string_view separator = texts.size() % 5 == 0 ? ", " : ",";
    std::string text = Header(random) + Item(random);
    while (text.size() < size) {
      text.append(separator).append(Item(random));
    }
    texts.push_back(std::move(text));
  }
  return texts;
}

// One operation on a melody; returns the size of its output.
using Work = std::size_t (*)(core::RTTTLMelody& melody);

std::size_t Copy(core::RTTTLMelody& melody) {
  static char buffer[std::size_t{1} << 16];
  std::memcpy(buffer, melody.Text.data(), melody.Text.size());
  benchmark::DoNotOptimize(buffer);
  return melody.Text.size();
}

std::size_t Parse(core::RTTTLMelody& melody) {
  return core::ParseRTTTL(melody) == core::kParsed ? melody.Notes.size() : 0;
}

template <auto kWriter>
std::size_t Written(core::RTTTLMelody& melody) {
  std::string warnings;
  return kWriter(melody, warnings, 4).size();
}

std::size_t Tempo125(core::RTTTLMelody& melody) {
  return formats::RtttlAtTempo125(melody).size();
}

std::size_t Mdy(core::RTTTLMelody& melody) {
  std::string warnings;
  return formats::TriumMdyText(melody, warnings).size();
}

std::size_t Kws(core::RTTTLMelody& melody) {
  std::string warnings;
  return Parse(melody) == 0 ? 0 : formats::KwsBytes(melody, warnings).value_or("").size();
}

std::size_t MidiEvents(core::RTTTLMelody& melody) {
  return Parse(melody) == 0 ? 0 : midi::MidiNoteEvents(melody).size();
}

std::size_t MidiFile(core::RTTTLMelody& melody) {
  return Parse(melody) == 0 ? 0 : midi::MidiFileBytes(melody).size();
}

// The conversion of the repertoire page, including the choice of the octave.
std::size_t ConvertTo(core::RTTTLMelody& melody, std::string_view model) {
  phones::NoSaveFile ask;
  const auto page = phones::ConvertSelectedMelody(melody, model, "banco", ask).page;
  return page ? page->result.size() : 0;
}

std::size_t ConvertToKeys(core::RTTTLMelody& melody) {
  return ConvertTo(melody, " Pulsaciones");
}

std::size_t ConvertToAllTexts(core::RTTTLMelody& melody) {
  const std::string text = melody.Text;
  std::size_t size = 0;
  for (const phones::CatalogueRow& row : phones::CatalogueRows()) {
    if (!phones::SavesFile(row.model)) {
      melody.Text = text;
      size += ConvertTo(melody, row.model);
    }
  }
  return size;
}

// Converts composer notation, which the melody's text is, to RTTTL.
std::size_t Compose(core::RTTTLMelody& melody) {
  nokia3210::CNokia converter;
  converter.SetOriginalText(melody.Text);
  converter.Convert();
  return converter.NoteCount();
}

struct Row {
  std::string_view name;
  Work work;
};

constexpr Row kRows[] = {
    {"memcpy", Copy},
    {"parse", Parse},
    {"conversion_nokia_keys", ConvertToKeys},
    {"midi_events", MidiEvents},
    {"midi_file", MidiFile},
    {"kws_bytes", Kws},
    {"trium_mdy", Mdy},
    {"motorola_imelody", Written<formats::MotorolaIMelodyKeys>},
    {"tempo125", Tempo125},
    {"nokia_composer", Written<formats::NokiaComposerText>},
    {"nokia_keys", Written<formats::NokiaKeyPresses>},
    {"emelody", Written<formats::EMelodyText>},
    {"imelody", Written<formats::IMelodyText>},
    {"motorola_sms", Written<formats::MotorolaSmsText>},
    {"motorola_keys", Written<formats::MotorolaKeyPresses>},
    {"samsung_keys_1", Written<formats::SamsungKeyPresses1>},
    {"samsung_keys_2", Written<formats::SamsungKeyPresses2>},
    {"conversion_all_texts", ConvertToAllTexts},
};

std::size_t CountNotes(const Texts& texts) {
  std::size_t notes = 0;
  for (const std::string& text : texts) {
    notes +=
        static_cast<std::size_t>(std::ranges::count(text.substr(text.rfind(':') + 1), ',')) + 1;
  }
  return notes;
}

void RunWork(benchmark::State& state, Work work, const Texts& texts, std::size_t notes) {
  core::RTTTLMelody melody;
  core::InitMelody(melody, "/tmp/");
  for (auto _ : state) {
    for (const std::string& text : texts) {
      melody.Text = text;
      const std::size_t written = work(melody);
      if (written == 0) {
        state.SkipWithError("nothing was written");
        return;
      }
      benchmark::DoNotOptimize(written);
    }
  }
  using benchmark::Counter;
  const auto rate = [](std::size_t count, Counter::Flags flags) {
    return Counter(static_cast<double>(count), flags | Counter::kIsIterationInvariantRate);
  };
  state.counters["melodies"] = rate(texts.size(), Counter::kDefaults);
  state.counters["note"] = rate(notes, Counter::kInvert);
}

Texts AsComposerShows(Texts texts) {
  for (std::string& text : texts) {
    core::RTTTLMelody melody;
    melody.Text = text;
    std::string warnings;
    text = formats::NokiaComposerText(melody, warnings, 4);
  }
  return texts;
}

void Register(const std::string& suffix, const Texts& texts) {
  const std::size_t notes = CountNotes(texts);
  for (const Row& row : kRows) {
    benchmark::RegisterBenchmark((std::string(row.name) + suffix).c_str(), RunWork, row.work, texts,
                                 notes);
  }
  benchmark::RegisterBenchmark(("composer_to_rtttl" + suffix).c_str(), RunWork, Compose,
                               AsComposerShows(texts), notes);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 1;
  }
  Register("/collection", Collection());
  Register("/50", MelodiesOf(50, 100));
  Register("/5000", MelodiesOf(5000, 1));
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
