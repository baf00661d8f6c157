// The terminal program: many melodies through one pipe, the start of the program, and processor
// time while playing, each with a reference measurement.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "cli/context.h"
#include "cli/line_stream.h"
#include "json/conversion.h"
#include "json/text.h"
#include "midi/mMidiLibOut.h"
#include "midi/playback.h"
#include "platform/sound/fluid_sequencer.h"

namespace {

using namespace tonadex;

constexpr std::string_view kModel = " Pulsaciones";
constexpr std::size_t kLines = 20'000;

// Melodies of 40 to 60 notes, all different.
std::vector<std::string> RandomMelodies() {
  constexpr std::string_view kPitches[] = {"c", "c#", "d", "d#", "e", "f", "f#",
                                           "g", "g#", "a", "a#", "b", "p"};
  constexpr std::string_view kDurations[] = {"", "", "", "2", "4", "8", "8", "16"};
  constexpr std::string_view kOctaves[] = {"", "", "4", "5", "6", ".", "6."};
  std::mt19937 random(3);
  const auto any = [&random](const auto& table) { return table[random() % std::size(table)]; };
  std::vector<std::string> melodies(kLines);
  for (std::string& melody : melodies) {
    melody = "m" + std::to_string(random() % 1000) + ":d=4,o=5,b=125:";
    for (std::size_t notes = 40 + random() % 20; notes != 0; --notes) {
      melody.append(any(kDurations)).append(any(kPitches)).append(any(kOctaves));
      melody += notes == 1 ? '\n' : ',';
    }
  }
  return melodies;
}

const std::vector<std::string>& Melodies() {
  static const std::vector<std::string> melodies = RandomMelodies();
  return melodies;
}

// Discards all output.
class Sink : public std::streambuf {
 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    benchmark::DoNotOptimize(text[size / 2]);
    return size;
  }
  int overflow(int c) override { return c; }
};

// A read-only stream buffer over an existing text.
class TextBuffer : public std::streambuf {
 public:
  explicit TextBuffer(std::string& text) {
    setg(text.data(), text.data(), text.data() + text.size());
  }
};

void Lines(benchmark::State& state) {
  const auto lines = static_cast<std::size_t>(state.range(0));
  std::string input;
  for (std::size_t i = 0; i < lines; ++i) {
    input += Melodies()[i % kLines];
  }
  Sink sink;
  std::ostream out(&sink);
  for ([[maybe_unused]] auto _ : state) {
    TextBuffer buffer(input);
    std::istream in(&buffer);
    cli::ConvertLines(in, out, kModel, "");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The reference for Lines: only the conversions, on one core.
void ConversionsAlone(benchmark::State& state) {
  core::RTTTLMelody melody;
  for ([[maybe_unused]] auto _ : state) {
    for (const std::string& line : Melodies()) {
      json::LoadMelody(melody, line);
      benchmark::DoNotOptimize(json::ConvertLoaded(melody, kModel, "m", std::nullopt));
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kLines));
}

template <bool kCopied>
void Json(benchmark::State& state) {
  std::string json;
  std::int64_t bytes = 0;
  for ([[maybe_unused]] auto _ : state) {
    for (const std::string& line : Melodies()) {
      json.clear();
      const std::string_view text = std::string_view(line).substr(0, line.size() - 1);
      kCopied ? static_cast<void>(json.append(text)) : json::AppendJson(json, text);
      benchmark::DoNotOptimize(json.data());
      bytes += static_cast<std::int64_t>(text.size());
    }
  }
  state.SetBytesProcessed(bytes);
}

std::string InTempFolder(const char* name, std::string_view bytes) {
  const std::filesystem::path file = std::filesystem::temp_directory_path() / name;
  std::ofstream(file, std::ios::binary) << bytes;
  return file.string();
}

// Starts a program and waits for its end; its output is discarded.
void Start(benchmark::State& state, std::vector<const char*> arguments) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  arguments.push_back(nullptr);
  for ([[maybe_unused]] auto _ : state) {
    pid_t child = 0;
    int status = 1;
    if (::posix_spawn(&child, arguments[0], &actions, nullptr,
                      const_cast<char* const*>(arguments.data()), environ) != 0 ||
        ::waitpid(child, &status, 0) != child || status != 0) {
      state.SkipWithError("the program cannot be started");
      break;
    }
  }
  posix_spawn_file_actions_destroy(&actions);
}

// Plays for two seconds on a silent device and counts the wake-ups of this process. With a sound
// server, its client's thread adds about ten per period.
void WakeUps(benchmark::State& state) {
  core::RTTTLMelody melody;
  json::LoadMelody(melody, "x:d=1,o=5,b=60:c,e,g");
  core::ParseRTTTL(melody);
  melody.FileName = InTempFolder("tonadex-bench.mid", midi::MidiFileBytes(melody));
  const auto wakeUps = [] {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_nvcsw);
  };
  for ([[maybe_unused]] auto _ : state) {
    platform::FluidSequencer sequencer(
        {{"file"}, platform::SoundOptionsFromEnvironment().soundFonts});
    midi::MciOpenAndPlay(melody, sequencer);
    while (sequencer.PositionMs().value_or(0) == 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    const double before = wakeUps();
    std::this_thread::sleep_for(std::chrono::seconds(2));
    state.counters["wake_ups_per_second"] = (wakeUps() - before) / 2;
    if (sequencer.IsSilent()) {
      state.SkipWithError("no soundfont: nothing plays");
    }
  }
  std::filesystem::remove(melody.FileName);
}

BENCHMARK(Lines)
    ->RangeMultiplier(10)
    ->Range(1'000, 1'000'000)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ConversionsAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(Json<false>)->Name("Json/escaped");
BENCHMARK(Json<true>)->Name("Json/copied");
const std::string kTune = InTempFolder("tonadex-bench.txt", Melodies().front());
const std::vector<const char*> kArguments[] = {
    {"/bin/true"},
    {TONADEX_CLI, "--version"},
    {TONADEX_CLI, "convertir", "-t", "3310", kTune.c_str()}};
BENCHMARK_CAPTURE(Start, yardstick, kArguments[0])->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Start, version, kArguments[1])->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Start, conversion, kArguments[2])->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(WakeUps)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
