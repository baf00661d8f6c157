#pragma once

#include "midi/smf_reader.h"

// MIDI files that midi/mMidiLibOut writes for phones: their tempo event is constant, the division
// encodes the tempo, and each length has a fixed number of ticks.
namespace tonadex::midi {

bool IsOwnFile(const SmfFile& file);

// Returns the file with real times and tempo: sixteen units per quarter note.
SmfFile WithPlainTimes(const SmfFile& file);

}  // namespace tonadex::midi
