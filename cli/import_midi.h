#pragma once

#include <string>
#include <vector>

#include "cli/commands.h"
#include "import/open_melody.h"

namespace tonadex::cli {

// Converts the voice of a MIDI file that the arguments select. For --pistas it lists the voices
// instead and returns nothing. Throws Failure.
std::vector<import::OpenedMelody> OpenMidi(Context& context, const Arguments& arguments,
                                           const std::string& file, const std::string& bytes);

}  // namespace tonadex::cli
