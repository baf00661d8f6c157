#include "app/voice_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>

namespace tonadex::app {
namespace {

constexpr std::size_t kColumns = 240, kLanes = 12;
constexpr double kLowestRow = 30, kTallestRow = 88;
constexpr double kPad = 6, kNumber = 32, kThinnest = 2;

// The voices that a picture of this height shows, and their place.
struct Rows {
  std::size_t first, count;
  double top, height;
};
Rows RowsIn(std::size_t voices, int selected, double height) {
  const double room = std::max(0.0, height - 2 * kPad);
  const auto most = static_cast<std::size_t>(std::max(1.0, std::floor(room / kLowestRow)));
  const std::size_t count = std::min(voices, most);
  const auto wanted = static_cast<std::size_t>(std::max(selected, 0));
  const std::size_t first = std::min(wanted - std::min(wanted, count / 2), voices - count);
  return {first, count, kPad,
          std::min(kTallestRow, room / static_cast<double>(std::max<std::size_t>(count, 1)))};
}

std::uint32_t LastTick(const midi::SmfFile& file) {
  std::uint32_t last = 1;
  for (const midi::SmfTrack& track : file.tracks) {
    for (const midi::SmfNote& note : track.notes) {
      last = std::max(last, note.end);
    }
  }
  return last;
}

// Whether some note sounds in each column of one lane: begun and ended notes are counted, so that
// the length of a note costs nothing.
class Lane {
 public:
  void Add(std::size_t first, std::size_t last) {
    ++changes_[first];
    --changes_[last + 1];
  }
  void Finish(double height, VoiceRoll& roll) const {
    int sounding = 0;
    for (std::size_t column = 0; column <= kColumns; ++column) {
      const int before = sounding;
      sounding += changes_[column];
      const double at = static_cast<double>(column) / kColumns;
      if (before == 0 && sounding > 0) {
        roll.push_back({at, at, height});
      } else if (before > 0 && sounding == 0) {
        roll.back().end = at;
      }
    }
  }

 private:
  std::array<int, kColumns + 1> changes_{};
};

VoiceRoll RollOf(const midi::SmfFile& file, const midi::SmfVoice& voice, double ticks) {
  std::array<Lane, kLanes> lanes;
  const double range = voice.highest - voice.lowest + 1;
  const auto column = [&](std::uint32_t tick) {
    return std::min(kColumns - 1, static_cast<std::size_t>(tick / ticks * kColumns));
  };
  for (const midi::SmfNote& note : file.tracks[voice.track].notes) {
    if (note.channel == voice.channel) {
      const double height = (note.key - voice.lowest) / range;
      // A column stays free before the next note, so that equal notes are told apart.
      const std::size_t first = column(note.start), end = column(note.end);
      lanes[static_cast<std::size_t>(height * kLanes)].Add(first,
                                                           end > first + 2 ? end - 2 : first);
    }
  }
  VoiceRoll roll;
  for (std::size_t i = 0; i < kLanes; ++i) {
    lanes[i].Finish(static_cast<double>(i) / (kLanes - 1), roll);
  }
  return roll;
}

}  // namespace

std::vector<VoiceRoll> VoiceRolls(const midi::SmfFile& file,
                                  const std::vector<midi::SmfVoice>& voices) {
  const double ticks = LastTick(file);
  std::vector<VoiceRoll> rolls;
  std::ranges::transform(voices, std::back_inserter(rolls),
                         [&](const midi::SmfVoice& voice) { return RollOf(file, voice, ticks); });
  return rolls;
}

Picture VoicesPicture(const std::vector<VoiceRoll>& rolls, int selected, double width,
                      double height) {
  const Rows rows = RowsIn(rolls.size(), selected, height);
  Picture picture;
  for (std::size_t i = 0; i < rows.count; ++i) {
    const std::size_t voice = rows.first + i;
    const bool chosen = std::cmp_equal(voice, selected);
    const double top = rows.top + static_cast<double>(i) * rows.height;
    const Box row = {kPad, top, width - 2 * kPad, rows.height - 2};
    picture.push_back(
        Filled(row, chosen ? Ink::kAccentWash : Ink::kWindow, 6, static_cast<int>(voice)));
    picture.push_back(Text(std::to_string(voice + 1),
                           {row.x + kPad, row.y, kNumber - kPad, row.height}, 14,
                           chosen ? Ink::kText : Ink::kMuted, Shape::Align::kLeft, chosen));
    const Box staff = {row.x + kNumber, row.y + kPad / 2, row.width - kNumber - kPad,
                       row.height - kPad};
    const double lane = std::max(kThinnest, staff.height / kLanes);
    for (const RollMark& mark : rolls[voice]) {
      const double x = staff.x + mark.start * staff.width;
      const double y = staff.y + (1 - mark.height) * (staff.height - lane);
      const double length = std::max(kThinnest, (mark.end - mark.start) * staff.width - 1);
      picture.push_back(Filled({x, y, length, lane - 1}, chosen ? Ink::kAccent : Ink::kFaint, 1));
    }
  }
  return picture;
}

}  // namespace tonadex::app
