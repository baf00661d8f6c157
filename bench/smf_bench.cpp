#include <benchmark/benchmark.h>

#include <cstdint>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "midi/smf_melody.h"
#include "tests/midi/smf_bytes.h"

// Times the reading of MIDI files that resemble band arrangements: twelve tracks with chords, 34 kB
// on average. "files" is files per second. Summing up the bytes of the same files is the reference.
namespace {

using namespace tonadex;

constexpr std::size_t kFiles = 50;
constexpr std::uint32_t kDivision = 480;

std::vector<midi::SmfNote> Track(std::mt19937& random, std::uint8_t channel) {
  constexpr std::uint32_t kSteps[] = {120, 240, 240, 480};
  std::vector<midi::SmfNote> notes;
  std::uint32_t now = static_cast<std::uint32_t>(random() % 8) * kDivision;
  const std::uint32_t voices = channel % 3 == 2 ? 3 : 1;
  for (std::size_t left = 300 + random() % 300; left > 0;
       left -= std::min<std::size_t>(left, voices)) {
    const std::uint32_t length = kSteps[random() % std::size(kSteps)];
    const auto key = static_cast<std::uint8_t>(40 + random() % 48);
    const auto start = now + static_cast<std::uint32_t>(random() % 9);
    for (std::uint32_t voice = 0; voice < voices; ++voice) {
      notes.push_back({start, start + length * 9 / 10, static_cast<std::uint8_t>(key + 4 * voice),
                       channel, 90});
    }
    now += length + 9;
  }
  return notes;
}

const std::vector<std::string>& Files() {
  static const std::vector<std::string> files = [] {
    std::mt19937 random(34);
    std::vector<std::string> made;
    while (made.size() < kFiles) {
      std::vector<std::vector<midi::SmfNote>> tracks;
      for (std::uint8_t channel = 0; channel < 12; ++channel) {
        tracks.push_back(Track(random, channel));
      }
      made.push_back(test::SmfOf(tracks, kDivision));
    }
    return made;
  }();
  return files;
}

std::uint64_t AddUp(const std::string& bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), std::uint64_t{0});
}

std::uint64_t Read(const std::string& bytes) {
  return midi::ReadSmf(bytes).tracks.front().notes.size();
}

std::uint64_t ReadVoices(const std::string& bytes) {
  return midi::VoicesOf(midi::ReadSmf(bytes)).size();
}

std::uint64_t MakeMelody(const std::string& bytes) {
  const auto file = midi::ReadSmf(bytes);
  for (const midi::SmfVoice& voice : midi::VoicesOf(file)) {
    if (voice.tune) {
      return core::RtttlText(midi::MelodyOf(file, voice, {.name = "x", .mostNotes = 50}).melody)
          .size();
    }
  }
  return 0;
}

template <std::uint64_t (*kWork)(const std::string&)>
void RunWork(benchmark::State& state) {
  std::size_t bytes = 0;
  for (auto _ : state) {
    for (const std::string& file : Files()) {
      benchmark::DoNotOptimize(kWork(file));
      bytes += file.size();
    }
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
  state.counters["files"] = benchmark::Counter(static_cast<double>(kFiles),
                                               benchmark::Counter::kIsIterationInvariantRate);
}

BENCHMARK(RunWork<AddUp>)->Name("bytes_added_up");
BENCHMARK(RunWork<Read>)->Name("read");
BENCHMARK(RunWork<ReadVoices>)->Name("read_and_voices");
BENCHMARK(RunWork<MakeMelody>)->Name("read_and_melody");

}  // namespace

BENCHMARK_MAIN();
