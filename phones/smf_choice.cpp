#include "phones/smf_choice.h"

#include <algorithm>
#include <utility>

#include "phones/formats.h"

namespace tonadex::phones {
namespace {

constexpr int kHighestOctave = 7;  // that phones have
constexpr int kUsualOctave = 5;    // the lowest one of phones with few octaves

}  // namespace

midi::SmfChoice ChoiceFor(std::string_view model, std::string name) {
  midi::SmfChoice choice{.name = std::move(name)};
  const Format* format = FindFormat(model);
  if (format == nullptr) {
    return choice;
  }
  choice.mostNotes = format->noteLimit;
  const Octaves& octaves = format->octaves;
  if (octaves.range == OctaveRange::kAround) {
    choice.lowestOctave = std::min(kUsualOctave, kHighestOctave + 1 - octaves.count);
    choice.octaves = octaves.count;
  } else if (octaves.range != OctaveRange::kAny) {
    choice.lowestOctave = octaves.lowest;
    choice.octaves = octaves.count > 0 ? octaves.count : kHighestOctave + 1 - octaves.lowest;
  }
  return choice;
}

}  // namespace tonadex::phones
