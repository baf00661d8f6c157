#include "formats/note_length.h"

#include <algorithm>
#include <array>
#include <limits>

#include "core/number.h"
#include "core/runtime_error.h"

namespace tonadex::formats {
namespace {

constexpr double kDotFactor = 1.5;
constexpr int kTableTempo = 125;  // at which both tables hold

struct BaseLength {
  std::string_view duration;
  int ms;  // 62.5 of a thirty-second is rounded
};

constexpr std::array kBaseLengths = std::to_array<BaseLength>(
    {{"1", 2000}, {"2", 1000}, {"4", 500}, {"8", 250}, {"16", 125}, {"32", 63}});

constexpr std::array<double, 6> kPhoneDurations = {1, 2, 4, 8, 16, 32};

struct Band {
  std::int16_t upToMs;  // inclusive; from the end of the band before
  std::string_view duration;
  bool dotted;
};

constexpr std::array kBands = std::to_array<Band>({
    {85, "32", false},
    {110, "32", true},
    {160, "16", false},
    {218, "16", true},
    {317, "8", false},
    {437, "8", true},
    {605, "4", false},
    {875, "4", true},
    {1255, "2", false},
    {1750, "2", true},
    {3005, "1", false},
    {std::numeric_limits<std::int16_t>::max(), "1", true},
});
static_assert(std::ranges::is_sorted(kBands, {}, &Band::upToMs));

}  // namespace

double ToTempo(std::string_view beats) {
  const double tempo = core::ToNumber(beats);
  if (tempo == 0) {
    throw core::RunTimeError(core::ErrorNumber::kDivisionByZero, "el tempo es 0");
  }
  return tempo;
}

double ExactNoteLengthMs(double duration, double tempo, bool dotted) {
  const double plain = kWholeNoteMs / (tempo * duration);
  return dotted ? plain * kDotFactor : plain;
}

bool IsPhoneDuration(double duration) {
  return std::ranges::find(kPhoneDurations, duration) != kPhoneDurations.end();
}

std::int16_t NoteLengthMs(std::string_view duration, std::string_view tempo, bool dotted) {
  const auto base = std::ranges::find(kBaseLengths, duration, &BaseLength::duration);
  if (base == kBaseLengths.end()) {
    return 0;
  }
  const double plain = base->ms * kTableTempo / ToTempo(tempo);
  return core::ToInt16(dotted ? plain * kDotFactor : plain);
}

std::string_view DurationForLength(std::int16_t lengthMs, std::string& noteText) {
  const auto band = std::ranges::lower_bound(kBands, lengthMs, {}, &Band::upToMs);
  if (band->dotted) {
    noteText += '.';
  }
  return band->duration;
}

}  // namespace tonadex::formats
