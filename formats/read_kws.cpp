#include <cmath>
#include <limits>
#include <map>
#include <vector>

#include "core/text.h"
#include "core/windows1252.h"
#include "formats/note_length.h"
#include "formats/pitch.h"
#include "formats/readers.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr std::size_t kHeaderSize = 6, kEntrySize = 4;
constexpr int kNoteKind = 4, kLowestOctave = 4, kLowestNote = 1;
constexpr int kMaxEntryMs = 0xFFFF;  // a longer note is split
constexpr double kRoundingMs = 1;

struct Entry {
  int note = 0;  // 0 for a pause
  int ms = 0;
};

std::vector<Entry> Entries(std::string_view bytes) {
  const auto at = [bytes](std::size_t i) { return static_cast<unsigned>(core::Code(bytes[i])); };
  const std::size_t count = bytes.size() < kHeaderSize ? 0 : at(4) + (at(5) << 8);
  if (bytes.size() < kHeaderSize || bytes.size() != kHeaderSize + count * kEntrySize) {
    RefuseFile({"byte 5: dice que hay ", std::to_string(count), u8" notas, y el fichero mide "_w,
                std::to_string(bytes.size()), " bytes"});
  }
  std::vector<Entry> entries;
  for (std::size_t i = kHeaderSize; i < bytes.size(); i += kEntrySize) {
    const unsigned note = at(i), kind = at(i + 1), high = at(i + 3);
    if (kind != (note == 0 ? 0u : unsigned{kNoteKind})) {
      RefuseFile({"byte ", std::to_string(i + 2), ": no es una nota ni una pausa"});
    }
    const auto ms = static_cast<int>((high << 8) | ((at(i + 2) ^ (high << 1)) & 0xFFu));
    const Entry entry = {static_cast<int>(note), ms};
    if (!entries.empty() && entries.back().note == entry.note &&
        entries.back().ms % kMaxEntryMs == 0) {
      entries.back().ms += entry.ms;
    } else {
      entries.push_back(entry);
    }
  }
  return entries;
}

using Counts = std::map<int, int>;  // how often each length in ms occurs

struct Fit {
  int tempo = kAssumedTempo;
  bool exact = false;  // every length is a sum of note lengths, but for rounding
  double cost = std::numeric_limits<double>::max();
};

// Of the tempos that explain the lengths, the one that needs the fewest pauses after notes; then
// the nearer one, then the more usual one.
Fit FitOf(int tempo, const Counts& lengths) {
  const double unit = kWholeNoteMs / (kWhole * tempo);
  double error = 0, offMs = 0, joined = 0;
  bool exact = true;
  for (const auto& [ms, count] : lengths) {
    const double units = std::round(ms / unit);
    const double off = std::abs(ms - units * unit);
    exact = exact && off <= kRoundingMs && units > 1;
    error += count * off / unit;
    offMs += off / static_cast<double>(lengths.size());
    joined += IsOneLength(static_cast<int>(units)) ? 0 : count;
  }
  const double unusual = std::abs(std::log2(static_cast<double>(tempo) / kAssumedTempo));
  constexpr double kInexact = 1e6;
  return {tempo, exact, exact ? joined + offMs + unusual / 10 : kInexact + error + joined};
}

Fit BestFit(const std::vector<Entry>& entries) {
  Counts lengths;
  for (const Entry& entry : entries) {
    ++lengths[entry.ms];
  }
  Fit best;
  for (int tempo = kSlowestTempo; tempo <= kFastestTempo; ++tempo) {
    const Fit fit = FitOf(tempo, lengths);
    best = fit.cost < best.cost ? fit : best;
  }
  return best;
}

}  // namespace

Reading ReadKws(std::string_view bytes) {
  const std::vector<Entry> entries = Entries(bytes);
  if (entries.size() > kMostNotes) {
    RefuseTooLong();
  }
  Reading reading;
  const Fit fit = BestFit(entries);
  reading.melody.tempo = fit.tempo;
  reading.Remark(u8"El formato guarda tiempos, no figuras: el tempo es el que mejor encaja."_w);
  const double unit = kWholeNoteMs / (kWhole * fit.tempo);
  NoteLine line(reading);
  for (const Entry& entry : entries) {
    const int semitone = entry.note - kLowestNote;
    const core::PlainNote pitch =
        entry.note == 0
            ? kPause
            : Pitch(semitone % kSemitones, kLowestOctave + semitone / kSemitones, reading);
    line.Add(pitch, fit.exact ? std::round(entry.ms / unit) : entry.ms / unit);
  }
  return reading;
}

}  // namespace tonadex::formats
