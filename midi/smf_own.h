#pragma once

#include "midi/smf_reader.h"

// MIDI files that midi/mMidiLibOut writes for phones: their tempo event says nothing, their
// division stands for the tempo, and each length has its own number of ticks.
namespace tonadex::midi {

bool IsOwnFile(const SmfFile& file);

// The file with the times that its ticks stand for: sixteen units a quarter note, and the tempo.
SmfFile WithPlainTimes(const SmfFile& file);

}  // namespace tonadex::midi
