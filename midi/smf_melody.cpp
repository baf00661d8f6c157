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
#include <tuple>

#include "core/text.h"
#include "core/windows1252.h"
#include "midi/smf_own.h"

namespace tonadex::midi {
namespace {

using namespace core::literals;

// Positions and lengths are in sixty-fourths, so that a dotted thirty-second is a whole number.
constexpr std::uint32_t kUnitsPerQuarter = 16;
constexpr std::int64_t kStep = 2;  // notes begin at thirty-seconds
constexpr int kSlowest = 25, kFastest = 900;
constexpr int kUsuallySlowest = 40, kUsuallyFastest = 250;
constexpr int kMostDoublings = 20;  // reaches every tempo of a file
constexpr std::string_view kEndsInBar = u8"Acaba en el compás "_w;
constexpr std::int64_t kLeastPause = 4;
constexpr double kTickRounding = 1e-3;  // ticks computed from positions need not be whole

// The lengths of a note or a pause, the longest first.
struct Length {
  std::int64_t units;
  int length;
  bool dotted;
};
constexpr auto kLengths = std::to_array<Length>({{96, 1, true},
                                                 {64, 1, false},
                                                 {48, 2, true},
                                                 {32, 2, false},
                                                 {24, 4, true},
                                                 {16, 4, false},
                                                 {12, 8, true},
                                                 {8, 8, false},
                                                 {6, 16, true},
                                                 {4, 16, false},
                                                 {3, 32, true},
                                                 {2, 32, false}});

const Length& LongestUpTo(std::int64_t units) {
  const auto found =
      std::ranges::find_if(kLengths, [&](const Length& each) { return each.units <= units; });
  return found == kLengths.end() ? kLengths.back() : *found;
}

// One note at a time, in ticks; it ends where the next one begins at the latest.
struct Stroke {
  std::uint32_t start = 0, end = 0;
  int key = 0;
  std::size_t covered = 0;  // notes left out because of it
  std::size_t bar = 0;      // counted from 0
};

// A note counts as covered when another one, that has precedence, sounds for more than half of it:
// players let notes overlap a little.
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

// The bars of the file: from `tick` on they last `ticks` each.
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
        // A change within a bar begins a new one.
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

// A stroke in the melody's positions.
struct Placed {
  std::int64_t start = 0, end = 0;
  Stroke stroke;
  std::size_t lost = 0;  // shorter ones in the same place
};

// How a voice is read: a quarter note of the file lasts `scale` of the melody's. `exact` is for
// files whose times are lengths of notes already.
struct Reading {
  double scale = 1;
  bool exact = false;
};

// The grid on which strokes are placed, in a melody that is read so.
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

// How long the stroke sounds when the next one begins at `next`.
std::int64_t SoundingUnits(const Placed& stroke, std::int64_t next, bool exact) {
  const std::int64_t time = next - stroke.start;
  const std::int64_t silence = std::max<std::int64_t>(next - stroke.end, 0);
  const bool touch = !exact && (silence < kLeastPause || 4 * silence <= time);
  return touch ? time : time - silence;
}

// Where the last stroke's time ends: with the shortest length that holds it.
std::int64_t EndOfLast(const Placed& stroke) {
  const auto shorter = std::ranges::find_if(
      kLengths, [&](const Length& each) { return each.units < stroke.end - stroke.start; });
  return stroke.start + (shorter == kLengths.begin() ? shorter->units : std::prev(shorter)->units);
}

struct Written {
  std::vector<core::PlainNote> notes;
  std::size_t strokes = 0;  // how many of them became notes
  bool cut = false;
};

// Notes and pauses for as many strokes as fit, whole bars where at least one fits.
Written Write(std::span<const Placed> strokes, std::size_t most, bool exact) {
  Written written;
  std::vector<core::PlainNote>& notes = written.notes;
  struct {
    std::size_t notes = 0, strokes = 0;
  } whole;  // what the whole bars have taken
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

// The tempos between two ticks, by their length in ticks.
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

// Moves the notes by whole octaves so that most of them lie in the phone's, then each of the others
// to the nearest one.
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
      std::clamp<double>(std::round(60e6 / microseconds * scale), kSlowest, kFastest));
}

// The reading whose notes have the shortest text; that of the file where several have. A note that
// is lost counts as much as a few notes of text, so does a tempo that phones seldom take; no text
// is so short that a note may be moved for it.
Reading ShortestReading(std::span<const Stroke> strokes, std::uint32_t division,
                        std::uint32_t microseconds) {
  constexpr std::size_t kLostCost = 20, kTempoCost = 100, kMovedCost = 1000000;
  Reading best;
  std::size_t least = std::numeric_limits<std::size_t>::max();
  for (int i = 0; i < 2 * kMostDoublings + 1; ++i) {
    const int doublings = i % 2 == 0 ? -i / 2 : (i + 1) / 2;
    const Reading reading{.scale = std::ldexp(1.0, doublings)};
    const double tempo = 60e6 / microseconds * reading.scale;
    if (tempo < kSlowest || tempo > kFastest) {
      continue;
    }
    const bool unusual = tempo < kUsuallySlowest || tempo > kUsuallyFastest;
    const PlacedVoice placed = Place(strokes, Grid(division, reading), reading.scale);
    const Written written = Write(placed.strokes, core::kMaxParts, false);
    const std::size_t cost = core::RtttlText({"", kSlowest, written.notes}).size() +
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

// The strokes of the bars `first` to `last`, counted from 0.
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
  for (Stroke& stroke : strokes) {  // a note played a little early belongs to its bar
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
