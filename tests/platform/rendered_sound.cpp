#include "tests/platform/rendered_sound.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <numbers>
#include <span>
#include <string>

namespace tonadex::test {
namespace {

constexpr int kLowest = 57, kHighest = 84;
constexpr double kStepMs = 10;
constexpr double kWindowMs = 40;
constexpr double kShortestMs = 60;  // less is the noise of a change
constexpr double kSilence = 0.003;

std::span<const double> Window(const std::vector<double>& samples, double ms, double length) {
  const auto at = [&samples](double time) {
    return std::min(samples.size(), static_cast<std::size_t>(time * kSampleRate / 1000));
  };
  return std::span(samples).subspan(at(ms), at(ms + length) - at(ms));
}

// How alike the sound is to itself one period of the pitch later: 1 for a tone of that pitch.
double Likeness(std::span<const double> sound, double period) {
  const auto whole = static_cast<std::size_t>(period);
  const double part = period - static_cast<double>(whole);
  double product = 0, first = 1e-12, second = 1e-12;
  for (std::size_t i = 0; i + whole + 1 < sound.size(); ++i) {
    const double later = sound[i + whole] * (1 - part) + sound[i + whole + 1] * part;
    product += sound[i] * later;
    first += sound[i] * sound[i];
    second += later * later;
  }
  return product / std::sqrt(first * second);
}

// A tone is alike itself after two periods as well: the highest pitch that is nearly as good wins.
int PitchOf(std::span<const double> sound) {
  int best = 0;
  double most = 0;
  for (int note = kHighest; note >= kLowest; --note) {
    const double frequency = 440 * std::exp2((note - 69) / 12.0);
    const double likeness = Likeness(sound, kSampleRate / frequency);
    if (likeness > most + 0.02) {
      most = likeness;
      best = note;
    }
  }
  return best;
}

}  // namespace

std::vector<double> ReadSamples(const std::filesystem::path& file, std::size_t skip) {
  std::ifstream input(file, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(input), {}};
  std::vector<double> samples;
  for (std::size_t at = skip; at + 4 <= bytes.size(); at += 4) {
    const int low = static_cast<unsigned char>(bytes[at]);
    const int high = static_cast<signed char>(bytes[at + 1]);
    samples.push_back((high * 256 + low) / 32768.0);
  }
  return samples;
}

double LengthMs(const std::vector<double>& samples) {
  return static_cast<double>(samples.size()) / kSampleRate * 1000;
}

double Loudness(const std::vector<double>& samples, double ms, double length) {
  double sum = 0;
  const auto window = Window(samples, ms, length);
  for (const double sample : window) {
    sum += sample * sample;
  }
  return window.empty() ? 0 : std::sqrt(sum / static_cast<double>(window.size()));
}

std::vector<HeardNote> HearNotes(const std::vector<double>& samples) {
  std::vector<HeardNote> notes;
  HeardNote run;
  for (double ms = 0; ms < LengthMs(samples); ms += kStepMs) {
    const bool silent = Loudness(samples, ms, kStepMs) < kSilence;
    const int pitch = silent ? 0 : PitchOf(Window(samples, ms, kWindowMs));
    if (pitch != run.pitch) {
      // A new note shows when it fills the greater part of the window.
      run = {pitch, ms == 0 ? 0 : ms + kWindowMs / 2, 0};
    }
    run.length += kStepMs;
    if (pitch != 0 && run.length == kShortestMs) {
      notes.push_back(run);
    } else if (pitch != 0 && run.length > kShortestMs) {
      notes.back() = run;
    }
  }
  return notes;
}

}  // namespace tonadex::test
