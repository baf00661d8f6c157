#pragma once

#include <cmath>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "files/read.h"

// Measures recorded sound.
namespace tonadex::test {

inline constexpr double kSampleRate = 44100;

// The left channel, -1 to 1, of 16-bit stereo samples that start `skip` bytes into the file.
inline std::vector<double> ReadSamples(const std::filesystem::path& file, std::size_t skip) {
  const std::string bytes = files::ReadWhole(file).value_or("");
  std::vector<double> samples;
  for (std::size_t at = skip; at + 4 <= bytes.size(); at += 4) {
    const int low = static_cast<unsigned char>(bytes[at]);
    const int high = static_cast<signed char>(bytes[at + 1]);
    samples.push_back((high * 256 + low) / 32768.0);
  }
  return samples;
}

inline double LengthMs(const std::vector<double>& samples) {
  return static_cast<double>(samples.size()) / kSampleRate * 1000;
}

// Root mean square of `length` ms from `ms` on; 0 after the end.
inline double Loudness(const std::vector<double>& samples, double ms, double length) {
  const auto at = [&samples](double time) {
    return std::min(samples.size(), static_cast<std::size_t>(time * kSampleRate / 1000));
  };
  double sum = 0;
  for (std::size_t i = at(ms); i < at(ms + length); ++i) {
    sum += samples[i] * samples[i];
  }
  return sum == 0 ? 0 : std::sqrt(sum / static_cast<double>(at(ms + length) - at(ms)));
}

}  // namespace tonadex::test
