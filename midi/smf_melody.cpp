#include "midi/smf_melody.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <map>
#include <span>
#include <string_view>

#include "core/text.h"
#include "core/windows1252.h"
#include "formats/reading.h"
#include "midi/smf_own.h"

namespace tonadex::midi {
namespace {

using namespace core::literals;

// Positions and lengths are in sixty-fourths of a whole note: a dotted thirty-second is three.
constexpr std::uint32_t kUnitsPerQuarter = 16;
constexpr std::int64_t kStep = 2;  // notes are placed on thirty-seconds
using formats::kFastestTempo, formats::kSlowestTempo;
constexpr int kUsuallySlowest = 40, kUsuallyFastest = 250;
constexpr int kMostDoublings = 20;  // enough for every tempo of a file
constexpr std::string_view kEndsInBar = u8"Acaba en el compás "_w;
constexpr std::int64_t kLeastPause = 4;
constexpr double kTickRounding = 1e-3;  // ticks computed from positions may not be integers

using Length = formats::NoteLength;
constexpr auto& kLengths = formats::kNoteLengths;

const Length& LongestUpTo(std::int64_t units) {
  const auto found =
      std::ranges::find_if(kLengths, [&](const Length& each) { return each.units <= units; });
  return found == kLengths.end() ? kLengths.back() : *found;
}

// A note of the single voice, in ticks; it ends at the start of the next one at the latest.
struct Stroke {
  std::uint32_t start = 0, end = 0;
  int key = 0;
  std::size_t covered = 0;  // number of notes left out because of it
  std::size_t bar = 0;      // counted from 0
};

// Drops a note if one with precedence sounds for more than half of it; shorter overlaps are normal
// in played music.
std::vector<Stroke> OneVoice(std::span<const SmfNote> notes, Taken taken) {
  std::array<std::uint32_t, 128> soundsUntil{};
  std::uint32_t firstUntil = 0;
  std::vector<Stroke> strokes;
  for (const SmfNote& note : notes) {
    const std::uint32_t half = note.start + (note.end - note.start) / 2;
    const auto above = std::span(soundsUntil).subspan(note.key + std::size_t{1});
    const bool together = !strokes.empty() && strokes.back().start == note.start;
    const bool covered =
        taken == Taken::kFirst
            ? together || firstUntil > half
            : together || std::ranges::any_of(above, [&](std::uint32_t end) { return end > half; });
    soundsUntil[note.key] = std::max(soundsUntil[note.key], note.end);
    if (covered) {
      ++strokes.back().covered;
      continue;
    }
    if (!strokes.empty()) {
      strokes.back().end = std::min(strokes.back().end, note.start);
    }
    strokes.push_back({note.start, note.end, note.key});
    firstUntil = note.end;
  }
  return strokes;
}

// A run of bars of `ticks` ticks each, starting at `tick`.
struct Bars {
  struct Part {
    double tick;
    std::size_t firstBar;  // counted from 0
    double ticks;
  };
  std::vector<Part> parts;

  Bars(const SmfFile& file, std::size_t track) {
    const double whole = 4.0 * file.division;
    parts.push_back({0, 0, whole});
    for (const SmfMeter& meter : MetersFor(file, track)) {
      const double ticks = whole * meter.numerator / meter.denominator;
      const Part& last = parts.back();
      if (meter.tick <= last.tick) {
        parts.back().ticks = ticks;
      } else {
        // A change of metre within a bar starts a new bar.
        const double gone = std::ceil((meter.tick - last.tick) / last.ticks);
        parts.push_back({static_cast<double>(meter.tick),
                         last.firstBar + static_cast<std::size_t>(gone), ticks});
      }
    }
  }

  std::size_t BarAt(double tick) const {
    const auto next = std::ranges::upper_bound(parts, tick, {}, &Part::tick);
    const Part& part = next == parts.begin() ? parts.front() : *std::prev(next);
    return part.firstBar + static_cast<std::size_t>((tick - part.tick) / part.ticks);
  }
};

// A stroke at its position in the melody.
struct Placed {
  std::int64_t start = 0, end = 0;
  Stroke stroke;
  std::size_t lost = 0;  // number of shorter strokes dropped at the same position
};

// How to read a voice: a quarter note of the file becomes `scale` quarter notes. `exact` is for
// files whose times are note lengths already.
struct Reading {
  double scale = 1;
  bool exact = false;
};

// The grid on which a reading places strokes.
struct Grid {
  double unitsPerTick;
  std::int64_t step;

  Grid(std::uint32_t division, const Reading& reading)
      : unitsPerTick(reading.scale * kUnitsPerQuarter / division),
        step(reading.exact ? 1 : kStep) {}
  std::int64_t Nearest(std::uint32_t tick) const {
    const double steps = tick * unitsPerTick / static_cast<double>(step);
    return step * static_cast<std::int64_t>(std::floor(steps + 0.5));
  }
  double Tick(std::int64_t units) const { return static_cast<double>(units) / unitsPerTick; }
};

struct PlacedVoice {
  std::vector<Placed> strokes;
  std::size_t lost = 0;
  std::size_t moved = 0;  // by more than half a thirty-second of the file
};

PlacedVoice Place(std::span<const Stroke> strokes, const Grid& grid, double scale) {
  PlacedVoice voice;
  for (const Stroke& stroke : strokes) {
    const std::int64_t start = grid.Nearest(stroke.start);
    const double error = std::abs(stroke.start * grid.unitsPerTick - static_cast<double>(start));
    voice.moved += error > scale ? 1 : 0;
    const Placed placed{start, std::max(grid.Nearest(stroke.end), start + grid.step), stroke, 0};
    if (voice.strokes.empty() || voice.strokes.back().start < start) {
      voice.strokes.push_back(placed);
      continue;
    }
    Placed& last = voice.strokes.back();
    ++voice.lost;
    const std::size_t lost = last.lost + 1;
    last = stroke.end - stroke.start > last.stroke.end - last.stroke.start ? placed : last;
    last.lost = lost;
  }
  return voice;
}

// The sounding length of a stroke when the next one starts at `next`.
std::int64_t SoundingUnits(const Placed& stroke, std::int64_t next, bool exact) {
  const std::int64_t time = next - stroke.start;
  const std::int64_t silence = std::max<std::int64_t>(next - stroke.end, 0);
  const bool touch = !exact && (silence < kLeastPause || 4 * silence <= time);
  return touch ? time : time - silence;
}

// The end of the last stroke, with the shortest length that is not shorter than it.
std::int64_t EndOfLast(const Placed& stroke) {
  const auto shorter = std::ranges::find_if(
      kLengths, [&](const Length& each) { return each.units < stroke.end - stroke.start; });
  return stroke.start + (shorter == kLengths.begin() ? shorter->units : std::prev(shorter)->units);
}

struct Written {
  std::vector<core::PlainNote> notes;
  std::size_t strokes = 0;  // number of strokes that became notes
  bool cut = false;
};

// Writes as many strokes as fit, ending after a whole bar if at least one bar fits.
Written Write(std::span<const Placed> strokes, std::size_t most, bool exact) {
  Written written;
  std::vector<core::PlainNote>& notes = written.notes;
  struct {
    std::size_t notes = 0, strokes = 0;
  } whole;  // size after the last whole bar
  for (std::size_t i = 0; i < strokes.size(); ++i) {
    const Placed& stroke = strokes[i];
    if (notes.size() >= most) {
      written.cut = true;
      break;
    }
    const std::int64_t next = i + 1 < strokes.size() ? strokes[i + 1].start : EndOfLast(stroke);
    const Length& length = LongestUpTo(SoundingUnits(stroke, next, exact));
    const int key = stroke.stroke.key;
    notes.push_back({key % 12, key / 12, length.length, length.dotted});
    ++written.strokes;
    if (i + 1 == strokes.size()) {
      break;
    }
    if (strokes[i + 1].stroke.bar > stroke.stroke.bar) {
      whole = {notes.size(), written.strokes};
    }
    for (std::int64_t left = next - stroke.start - length.units;
         left >= kStep && notes.size() <= most;) {
      const Length& pause = LongestUpTo(left);
      notes.push_back({.length = pause.length, .dotted = pause.dotted});
      left -= pause.units;
    }
  }
  if (written.cut && whole.notes > 0) {
    notes.resize(whole.notes);
    written.strokes = whole.strokes;
  }
  while (!notes.empty() && notes.back().semitone < 0) {
    notes.pop_back();
  }
  return written;
}

// The tempos between two ticks, with the number of ticks of each.
std::map<std::uint32_t, double> TemposBetween(const SmfFile& file, std::size_t track, double first,
                                              double last) {
  std::vector<SmfTempo> tempos = TemposFor(file, track);
  tempos.insert(tempos.begin(), SmfTempo{});
  std::map<std::uint32_t, double> lasting;
  for (std::size_t i = 0; i < tempos.size(); ++i) {
    const double end = i + 1 < tempos.size() ? tempos[i + 1].tick : last;
    const double ticks = std::min(end, last) - std::max<double>(tempos[i].tick, first);
    if (ticks > 0) {
      lasting[tempos[i].microseconds] += ticks;
    }
  }
  return lasting;
}

// Transposes by whole octaves so that most notes are in the phone's range, then moves each
// remaining note to the nearest octave of the range.
void MoveOctaves(SmfMelody& result, const SmfChoice& choice) {
  std::vector<core::PlainNote>& notes = result.melody.notes;
  const int highest = choice.lowestOctave + choice.octaves - 1;
  const auto outside = [&](int octaves) {
    return std::ranges::count_if(notes, [&](const core::PlainNote& note) {
      const int octave = note.octave + octaves;
      return note.semitone >= 0 && (octave < choice.lowestOctave || octave > highest);
    });
  };
  int best = 0;
  for (const int octaves : {1, -1, 2, -2, 3, -3, 4, -4, 5, -5, 6, -6, 7, -7}) {
    best = outside(octaves) < outside(best) ? octaves : best;
  }
  if (best != 0) {
    result.remarks.push_back(
        std::string(best > 0 ? "Sube " : "Baja ") +
        core::Counted(static_cast<std::size_t>(std::abs(best)), "octava", "octavas") + ".");
  }
  if (const auto others = outside(best); others > 0) {
    result.remarks.push_back(
        ("Cambia de octava " + core::Counted(static_cast<std::size_t>(others), "nota", "notas"))
            .append(u8" fuera del alcance del móvil."_w));
  }
  for (core::PlainNote& note : notes) {
    const bool pause = note.semitone < 0;
    note.octave = pause ? core::PlainNote{}.octave
                        : std::clamp(note.octave + best, choice.lowestOctave, highest);
  }
}

int TempoOf(std::uint32_t microseconds, double scale) {
  return static_cast<int>(
      std::clamp<double>(std::round(60e6 / microseconds * scale), kSlowestTempo, kFastestTempo));
}

// Chooses the reading with the shortest text; on a tie the file's own. A lost note costs as much as
// a few notes of text, an unusual tempo likewise more; moving a note costs more than any text can
// save.
Reading ShortestReading(std::span<const Stroke> strokes, std::uint32_t division,
                        std::uint32_t microseconds) {
  constexpr std::size_t kLostCost = 20, kTempoCost = 100, kMovedCost = 1000000;
  Reading best;
  std::size_t least = std::numeric_limits<std::size_t>::max();
  for (int i = 0; i < 2 * kMostDoublings + 1; ++i) {
    const int doublings = i % 2 == 0 ? -i / 2 : (i + 1) / 2;
    const Reading reading{.scale = std::ldexp(1.0, doublings)};
    const double tempo = 60e6 / microseconds * reading.scale;
    if (tempo < kSlowestTempo || tempo > kFastestTempo) {
      continue;
    }
    const bool unusual = tempo < kUsuallySlowest || tempo > kUsuallyFastest;
    const PlacedVoice placed = Place(strokes, Grid(division, reading), reading.scale);
    const Written written = Write(placed.strokes, core::kMaxParts, false);
    const std::size_t cost = core::RtttlText({"", kSlowestTempo, written.notes}).size() +
                             kLostCost * placed.lost + kMovedCost * placed.moved +
                             (unusual ? kTempoCost : 0);
    if (cost < least) {
      least = cost;
      best = reading;
    }
  }
  return best;
}

std::uint32_t LongestTempo(const SmfFile& file, std::size_t track, std::span<const Placed> strokes,
                           std::vector<std::string>& remarks) {
  const auto tempos = TemposBetween(
      file, track, strokes.front().stroke.start,
      std::max<double>(strokes.back().stroke.end, strokes.front().stroke.start + 1.0));
  if (tempos.size() > 1) {
    remarks.emplace_back(u8"El tempo cambia: se toma el que más dura."_w);
  }
  return std::ranges::max_element(tempos, {}, [](const auto& tempo) { return tempo.second; })
      ->first;
}

void AddRemarks(SmfMelody& result, std::span<const Placed> strokes, bool cut, Taken taken) {
  std::size_t covered = 0, lost = 0;
  for (const Placed& placed : strokes) {
    covered += placed.stroke.covered;
    lost += placed.lost;
  }
  if (cut) {
    std::string words(kEndsInBar);
    words += std::to_string(result.lastBar) + " de " + std::to_string(result.bars);
    result.remarks.push_back(words.append(u8": no caben más notas."_w));
  }
  if (covered > 0) {
    result.remarks.push_back(("Quita " + core::Counted(covered, "nota", "notas"))
                                 .append(taken == Taken::kHighest
                                             ? u8" por debajo de otra más aguda."_w
                                             : u8" a la vez que otra anterior."_w));
  }
  if (lost > 0) {
    result.remarks.push_back("Quita " + core::Counted(lost, "nota", "notas") +
                             " de menos de una fusa.");
  }
}

// The strokes in the bars `first` to `last`, counted from 0.
std::span<const Stroke> BarsOf(std::span<const Stroke> strokes, std::size_t first,
                               std::size_t last) {
  const auto begin = std::ranges::lower_bound(strokes, first, {}, &Stroke::bar);
  const auto end = std::ranges::upper_bound(strokes, last, {}, &Stroke::bar);
  return begin < end ? std::span(begin, end) : std::span<const Stroke>();
}

SmfMelody MelodyOfVoice(const SmfFile& file, const SmfVoice& voice, const SmfChoice& choice,
                        bool exact) {
  Reading reading{.exact = exact};
  const Grid inFile(file.division, reading);
  const Bars bars(file, voice.track);
  std::vector<Stroke> strokes = OneVoice(NotesOf(file, voice), choice.taken);
  for (Stroke& stroke : strokes) {  // a note played slightly early belongs to the bar that follows
    stroke.bar = bars.BarAt(inFile.Tick(inFile.Nearest(stroke.start)) + kTickRounding);
  }
  SmfMelody result;
  result.melody.name = choice.name;
  result.bars = strokes.back().bar + 1;
  result.firstBar = choice.firstBar == 0 ? strokes.front().bar + 1 : choice.firstBar;
  const auto chosen = BarsOf(strokes, result.firstBar - 1, result.bars);
  if (chosen.empty()) {
    return result;
  }
  const std::size_t most =
      choice.mostNotes == 0 ? core::kMaxParts : std::min(choice.mostNotes, core::kMaxParts);
  PlacedVoice placed = Place(chosen, inFile, reading.scale);
  Written written = Write(placed.strokes, most, exact);
  placed.strokes.resize(written.strokes);
  const std::uint32_t microseconds =
      LongestTempo(file, voice.track, placed.strokes, result.remarks);
  if (!exact) {
    const std::size_t lastBar = placed.strokes.back().stroke.bar;
    reading = ShortestReading(BarsOf(chosen, 0, lastBar), file.division, microseconds);
    placed = Place(chosen, Grid(file.division, reading), reading.scale);
    written = Write(placed.strokes, most, false);
    placed.strokes.resize(written.strokes);
  }
  result.lastBar = placed.strokes.back().stroke.bar + 1;
  result.melody.tempo = TempoOf(microseconds, reading.scale);
  result.melody.notes = std::move(written.notes);
  AddRemarks(result, placed.strokes, written.cut, choice.taken);
  if (file.smpteTime) {
    result.remarks.emplace_back(
        u8"El fichero mide el tiempo en segundos: los compases son de dos segundos."_w);
  }
  MoveOctaves(result, choice);
  return result;
}

}  // namespace

SmfMelody MelodyOf(const SmfFile& file, const SmfVoice& voice, const SmfChoice& choice) {
  return IsOwnFile(file) ? MelodyOfVoice(WithPlainTimes(file), voice, choice, true)
                         : MelodyOfVoice(file, voice, choice, false);
}

}  // namespace tonadex::midi
