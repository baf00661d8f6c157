#pragma once

#include <vector>

#include "app/picture.h"
#include "midi/smf_voices.h"

// The voices of a MIDI file as drawings one under the other, on one time line.
namespace tonadex::app {

// A piece of a voice's drawing, in parts of the width and the height, 0 to 1.
struct RollMark {
  double start = 0, end = 0;
  double height = 0;
};

// The notes of a voice, simplified to what a drawing can show: its size has a bound.
using VoiceRoll = std::vector<RollMark>;

std::vector<VoiceRoll> VoiceRolls(const midi::SmfFile& file,
                                  const std::vector<midi::SmfVoice>& voices);

// As many voices as have room, the selected one among them, with their numbers from 1; a click hits
// the index of a voice.
Picture VoicesPicture(const std::vector<VoiceRoll>& rolls, int selected, double width,
                      double height);

}  // namespace tonadex::app
