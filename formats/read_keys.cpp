#include <array>

#include "core/text.h"
#include "formats/readers.h"

// Key presses of the phones whose keys 1 to 7 are the notes.
namespace tonadex::formats {
namespace {

constexpr int kNokiaOctave = 5, kSamsungOctave = 4;  // the lowest
constexpr int kShortestLevel = 5;
constexpr std::array kNaturals = {0, 2, 4, 5, 7, 9, 11};  // by key, from 1

// Durations by the presses of the duration key; 0 for none.
using Presses = std::array<int, 5>;
struct Samsung {
  char sharpKey, durationKey, pauseKey;
  Presses notes, pauses;
};
constexpr Samsung kSamsung1 = {'#', '*', '*', {4, 2, 1, 16, 8}, {4, 2, 1, 16, 8}};
constexpr Samsung kSamsung2 = {'^', '<', '>', {4, 8, 16, 2, 1}, {0, 4, 8, 16, 2}};

std::optional<int> TakeNatural(Scanner& in) {
  const char key = in.Peek();
  if (key < '1' || key > '7') {
    return std::nullopt;
  }
  in.Next();
  return kNaturals[static_cast<std::size_t>(key - '1')];
}

double DurationOf(Scanner& in, char key, const Presses& presses) {
  const auto times = static_cast<std::size_t>(in.Run(key));
  if (times >= presses.size() || presses[times] == 0) {
    in.Fail();
  }
  return LengthOf(presses[times]);
}

// Blanks separate the groups; without this rule the keys of other makes would also be read as
// notes.
void EndGroup(Scanner& in) {
  if (!in.AtBlank()) {
    in.Fail();
  }
}

Reading ReadSamsungKeys(const Samsung& phone, std::string_view text) {
  return ReadNotes(text, [&phone](Scanner& in, NoteLine& line, Reading& reading) {
    if (phone.pauseKey == phone.durationKey ? in.Take('0') : in.Peek() == phone.pauseKey) {
      line.Add(kPause, DurationOf(in, phone.pauseKey, phone.pauses));
      return EndGroup(in);
    }
    const std::optional<int> natural = TakeNatural(in);
    if (!natural) {
      in.Fail();
    }
    const int sharp = in.Take(phone.sharpKey) ? 1 : 0;
    const int eights = in.Run('8');
    if (eights > 2) {
      in.Fail();
    }
    const int octave = kSamsungOctave + (eights == 2 ? 0 : eights == 1 ? 2 : 1);
    line.Add(Pitch(*natural + sharp, octave, reading),
             DurationOf(in, phone.durationKey, phone.notes));
    EndGroup(in);
  });
}

}  // namespace

Reading ReadNokiaKeys(std::string_view text) {
  int level = 2, octave = 0;  // a quarter, the lowest octave
  return ReadNotes(text, [&](Scanner& in, NoteLine& line, Reading& reading) {
    const bool held = in.Take('(');
    const bool pause = !held && in.Take('0');
    const std::optional<int> natural = pause ? 0 : TakeNatural(in);
    if (!natural || (held && !in.Take(')'))) {
      in.Fail();
    }
    const int changed = level + in.Run('8') - in.Run('9');
    if (changed < 0 || changed > kShortestLevel) {
      in.Fail();
    }
    const double length = Modified(kWhole / (1 << changed), held ? Modifier::kDotted : Modifier{});
    if (pause) {  // the phone returns to the duration before it
      line.Add(kPause, length);
      return EndGroup(in);
    }
    level = changed;
    const int sharp = in.Take('#') ? 1 : 0;
    const int stars = in.Run('*');
    if (stars > 2) {  // the third one would lead back
      in.Fail();
    }
    octave = (octave + stars) % 3;
    line.Add(Pitch(*natural + sharp, kNokiaOctave + octave, reading), length);
    EndGroup(in);
  });
}

Reading ReadSamsungKeys1(std::string_view text) {
  return ReadSamsungKeys(kSamsung1, text);
}

Reading ReadSamsungKeys2(std::string_view text) {
  return ReadSamsungKeys(kSamsung2, text);
}

}  // namespace tonadex::formats
