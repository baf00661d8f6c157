#pragma once

#include <string>
#include <vector>

#include "cli/context.h"
#include "import/open_melody.h"

namespace tonadex::cli {

// The melodies of a FICHERO argument of any format; their remarks go to the error stream. Throws
// Failure.
std::vector<import::OpenedMelody> OpenFile(Context& context, const std::string& file);

}  // namespace tonadex::cli
