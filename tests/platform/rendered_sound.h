#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

// Listens to recorded sound: a small ear for tests.
namespace tonadex::test {

inline constexpr double kSampleRate = 44100;

// The left channel, -1 to 1, of 16-bit stereo samples that begin `skip` bytes into the file.
std::vector<double> ReadSamples(const std::filesystem::path& file, std::size_t skip);

double LengthMs(const std::vector<double>& samples);

// Root mean square of the samples from `ms`, `length` ms long; 0 behind the end.
double Loudness(const std::vector<double>& samples, double ms, double length);

struct HeardNote {
  int pitch = 0;      // MIDI note number
  double start = 0;   // ms from the beginning of the samples
  double length = 0;  // ms
};

// The notes of a melody of one voice from note 57 to 84, told apart by pitch or silence. Starts are
// right to some 20 ms; a length that ends in silence includes the fading.
std::vector<HeardNote> HearNotes(const std::vector<double>& samples);

}  // namespace tonadex::test
