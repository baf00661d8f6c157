#include "formats/note_length.h"

#include <algorithm>
#include <array>
#include <limits>

#include "core/number.h"
#include "core/runtime_error.h"

namespace tonadex::formats {
namespace {

constexpr double kDotFactor = 1.5;
constexpr int kTableTempo = 125;  // tempo of both tables

// In ms, indexed by NoteCodes::length; the 62.5 ms of a thirty-second are rounded up.
constexpr std::array<int, core::kLengths.size()> kBaseLengths = {2000, 1000, 500, 250, 125, 63};

constexpr Band kBands[] = {
    {85, 5, false},  {110, 5, true},   {160, 4, false},
    {218, 4, true},  {317, 3, false},  {437, 3, true},
    {605, 2, false}, {875, 2, true},   {1255, 1, false},
    {1750, 1, true}, {3005, 0, false}, {std::numeric_limits<std::int16_t>::max(), 0, true}};
static_assert(std::ranges::is_sorted(kBands, {}, &Band::upToMs));

const Band& BandOf(std::int16_t lengthMs) {
  return *std::ranges::lower_bound(kBands, lengthMs, {}, &Band::upToMs);
}

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
  return std::ranges::find(core::kLengths, duration) != core::kLengths.end();
}

std::int16_t NoteLengthMs(std::string_view duration, std::string_view tempo, bool dotted) {
  const auto base = std::ranges::find(kDurationTexts, duration);
  if (base == kDurationTexts.end()) {
    return 0;
  }
  const int ms = kBaseLengths[static_cast<std::size_t>(base - kDurationTexts.begin())];
  const double plain = ms * kTableTempo / ToTempo(tempo);
  return core::ToInt16(dotted ? plain * kDotFactor : plain);
}

std::string_view DurationForLength(std::int16_t lengthMs, std::string& noteText) {
  const Band& band = BandOf(lengthMs);
  if (band.dotted) {
    noteText += '.';
  }
  return kDurationTexts[band.length];
}

const Band& Tempo125Bands::operator[](const core::NoteCodes& note) {
  const Band*& band = bands_[note.length][note.dotted ? 1 : 0];
  if (band == nullptr) {
    const bool known = note.length < kDurationTexts.size();
    band = &BandOf(NoteLengthMs(known ? kDurationTexts[note.length] : "", tempo_, note.dotted));
  }
  return *band;
}

}  // namespace tonadex::formats
