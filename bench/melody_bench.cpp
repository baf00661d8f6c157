#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/rtttl.h"
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
#include "nokia3210/octave_range.h"
#include "phones/catalogue.h"
#include "phones/conversion.h"
#include "phones/formats.h"

// Whole melodies through the parser, each writer, the MIDI file and the conversion. "note" is the
// time of one note; it should not grow from a melody of 50 notes to one of 5000. (Motorola messages
// end after 35 notes, so there it shrinks.)
namespace {

using namespace tonadex;

constexpr std::array<std::size_t, 2> kNoteCounts = {50, 5000};

// Octaves 4 to 6 as in most melodies, every duration, sharps, dots and pauses.
std::string MelodyText(std::size_t notes) {
  constexpr std::array<std::string_view, 16> kItems = {"c",   "8d#.6", "p",   "16a4", "2f#", "32g6",
                                                       "8p",  "4e",    "8c6", "d.",   "1a#", "16h4",
                                                       "4.p", "g#5",   "8f",  "2c.6"};
  std::string text = "banco:d=4,o=5,b=140:";
  for (std::size_t i = 0; i < notes; ++i) {
    text.append(i == 0 ? "" : ",").append(kItems[i % kItems.size()]);
  }
  return text;
}

core::RTTTLMelody ParsedMelody(std::size_t notes) {
  core::RTTTLMelody melody;
  core::InitMelody(melody, "/tmp/");
  melody.Text = MelodyText(notes);
  if (core::ParseRTTTL(melody) != core::kParsed || melody.Notes.size() != notes) {
    std::cerr << "the melody does not parse\n";
    std::exit(1);
  }
  return melody;
}

// One piece of work on a melody that was parsed before; gives what it wrote.
using Work = std::string (*)(core::RTTTLMelody& melody);

std::string Parse(core::RTTTLMelody& melody) {
  return core::ParseRTTTL(melody) == core::kParsed ? melody.Name : "";
}

template <auto kWriter>
std::string Written(core::RTTTLMelody& melody) {
  std::string warnings;
  return kWriter(melody, warnings, 4);
}

std::string Mdy(core::RTTTLMelody& melody) {
  std::string warnings;
  return formats::TriumMdyText(melody, warnings);
}

std::string Kws(core::RTTTLMelody& melody) {
  std::string warnings;
  return formats::KwsBytes(melody, warnings).value_or("");
}

std::string Midi(core::RTTTLMelody& melody) {
  return midi::MidiFileBytes(melody);
}

std::string OctaveRange(core::RTTTLMelody& melody) {
  return std::to_string(nokia3210::AutoOctave(melody, 2));
}

struct Row {
  std::string_view name;
  Work work;
};

constexpr Row kRows[] = {
    {"parse", Parse},
    {"nokia_composer", Written<formats::NokiaComposerText>},
    {"nokia_keys", Written<formats::NokiaKeyPresses>},
    {"emelody", Written<formats::EMelodyText>},
    {"imelody", Written<formats::IMelodyText>},
    {"tempo125", formats::RtttlAtTempo125},
    {"motorola_sms", Written<formats::MotorolaSmsText>},
    {"motorola_keys", Written<formats::MotorolaKeyPresses>},
    {"motorola_imelody", Written<formats::MotorolaIMelodyKeys>},
    {"samsung_keys_1", Written<formats::SamsungKeyPresses1>},
    {"samsung_keys_2", Written<formats::SamsungKeyPresses2>},
    {"trium_mdy", Mdy},
    {"kws_bytes", Kws},
    {"midi_bytes", Midi},
    {"octave_range", OctaveRange},
};

void SetNoteTime(benchmark::State& state, std::size_t notes) {
  using benchmark::Counter;
  state.counters["note"] =
      Counter(static_cast<double>(notes), Counter::kIsIterationInvariantRate | Counter::kInvert);
}

void RunWork(benchmark::State& state, Work work, std::size_t notes) {
  core::RTTTLMelody melody = ParsedMelody(notes);
  if (work(melody).empty()) {
    state.SkipWithError("nothing was written");
    return;
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(work(melody));
  }
  SetNoteTime(state, notes);
}

class NoFile : public phones::SaveFileQuestion {
 public:
  std::optional<std::string> AskSaveFile(const phones::SaveRequest&) override {
    return std::nullopt;
  }
};

// A melody as the repertoire page converts it, for every model whose result is a text.
void ConvertAll(benchmark::State& state, std::size_t notes) {
  std::vector<std::string> models;
  for (const phones::CatalogueRow& row : phones::CatalogueRows()) {
    if (!phones::SavesFile(row.model)) {
      models.emplace_back(row.model);
    }
  }
  const std::string text = MelodyText(notes);
  core::RTTTLMelody melody = ParsedMelody(notes);
  NoFile ask;
  for (auto _ : state) {
    for (const std::string& model : models) {
      melody.Text = text;
      const auto page = phones::ConvertSelectedMelody(melody, model, "banco", ask).page;
      if (!page || page->result.empty()) {
        state.SkipWithError("nothing was converted");
        return;
      }
      benchmark::DoNotOptimize(page->result.data());
    }
  }
  SetNoteTime(state, notes * models.size());
}

// Composer notation as the start page converts it.
void Compose(benchmark::State& state, std::size_t notes) {
  core::RTTTLMelody melody = ParsedMelody(notes);
  std::string warnings;
  nokia3210::CNokia converter;
  converter.SetOriginalText(formats::NokiaComposerText(melody, warnings, 4));
  for (auto _ : state) {
    converter.Convert();
    benchmark::DoNotOptimize(converter.ConvertedNotes().data());
  }
  if (converter.NoteCount() != notes) {
    state.SkipWithError("notes were lost");
    return;
  }
  SetNoteTime(state, notes);
}

void RegisterAll() {
  for (const std::size_t notes : kNoteCounts) {
    const std::string suffix = "/" + std::to_string(notes);
    for (const Row& row : kRows) {
      benchmark::RegisterBenchmark((std::string(row.name) + suffix).c_str(), RunWork, row.work,
                                   notes);
    }
    benchmark::RegisterBenchmark(("composer_to_rtttl" + suffix).c_str(), Compose, notes);
    benchmark::RegisterBenchmark(("conversion_all_texts" + suffix).c_str(), ConvertAll, notes);
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 1;
  }
  RegisterAll();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
