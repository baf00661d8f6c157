#pragma once

#include <string>
#include <vector>

#include "cli/commands.h"
#include "import/open_melody.h"

namespace tonadex::cli {

// The melody of a MIDI file that the arguments choose; with --pistas none, its voices are written
// instead. Throws Failure.
std::vector<import::OpenedMelody> OpenMidi(Context& context, const Arguments& arguments,
                                           const std::string& file, const std::string& bytes);

}  // namespace tonadex::cli
