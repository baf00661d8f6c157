#pragma once

#include <string>
#include <vector>

#include "cli/context.h"
#include "import/open_melody.h"

namespace tonadex::cli {

// Reads the melodies of a FICHERO argument in any format; writes their remarks to the error stream.
// Throws Failure.
std::vector<import::OpenedMelody> OpenFile(Context& context, const std::string& file);

}  // namespace tonadex::cli
