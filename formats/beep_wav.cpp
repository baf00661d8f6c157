#include "formats/beep_wav.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/windows1252.h"
#include "formats/note_length.h"
#include "formats/pitch.h"
#include "formats/reading.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr unsigned kRate = 22050;  // samples a second
constexpr double kLongestMs = 600'000;
constexpr double kFadeSamples = kRate / 100.0;
constexpr double kSilence = 128, kLoudness = 60;           // of 8-bit samples
constexpr double kC0Hz = 440.0 / 16 / 1.6817928305074290;  // a of octave 4 has 440 Hz, 9 above c

// `size` bytes of a number, the lowest first.
void AppendNumber(std::size_t number, int size, std::string& bytes) {
  for (int i = 0; i < size; ++i) {
    bytes += static_cast<char>((number >> (8 * i)) & 0xFFu);
  }
}

struct Tone {
  double hertz;  // 0 for a pause
  double endMs;  // since the beginning of the melody
};

std::vector<Tone> TonesOf(const core::RTTTLMelody& melody) {
  std::vector<Tone> tones;
  double ms = 0;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    const int semitone = SemitoneOf(note);
    if (note.length == core::NoteCodes::kNoLength || (semitone < 0 && !core::IsPause(note))) {
      continue;
    }
    ms += ExactNoteLengthMs(core::kLengths[note.length], ToTempo(melody.Beats), note.dotted);
    if (!(ms >= 0 && ms <= kLongestMs)) {
      RefuseFile({u8"la melodía dura más de diez minutos"_w});
    }
    const double octave = melody.Notes.Octave(note);
    tones.push_back({semitone < 0 ? 0 : kC0Hz * std::exp2(octave + semitone / 12.0), ms});
  }
  return tones;
}

// The samples from the end of `samples` to that of the tone.
void AppendTone(const Tone& tone, std::string& samples) {
  const auto end = static_cast<std::size_t>(tone.endMs * kRate / 1000);
  const std::size_t start = samples.size();
  for (std::size_t i = start; i < end; ++i) {
    const double periods = static_cast<double>(i - start) * tone.hertz / kRate;
    const double fade = std::min(1.0, static_cast<double>(end - i) / kFadeSamples);
    const double wave = tone.hertz == 0 ? 0 : periods - std::floor(periods) < 0.5 ? 1 : -1;
    samples += static_cast<char>(std::lround(kSilence + wave * kLoudness * fade));
  }
}

}  // namespace

std::string BeepWav(const core::RTTTLMelody& melody) {
  std::string samples;
  for (const Tone& tone : TonesOf(melody)) {
    AppendTone(tone, samples);
  }
  std::string bytes = "RIFF";
  AppendNumber(36 + samples.size(), 4, bytes);
  bytes += "WAVEfmt ";
  AppendNumber(16, 4, bytes);  // size of the format
  AppendNumber(1, 2, bytes);   // plain samples
  AppendNumber(1, 2, bytes);   // channels
  AppendNumber(kRate, 4, bytes);
  AppendNumber(kRate, 4, bytes);  // bytes a second
  AppendNumber(1, 2, bytes);      // bytes of a sample
  AppendNumber(8, 2, bytes);      // its bits
  bytes += "data";
  AppendNumber(samples.size(), 4, bytes);
  return bytes + samples + std::string(samples.size() % 2, '\0');
}

}  // namespace tonadex::formats
