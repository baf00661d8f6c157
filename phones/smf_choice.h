#pragma once

#include <string>
#include <string_view>

#include "midi/smf_melody.h"

namespace tonadex::phones {

// The choice that makes a melody for a model of the catalogue: no more notes and pauses than it
// takes, in its octaves. For "" and unknown models everything that RTTTL can hold.
midi::SmfChoice ChoiceFor(std::string_view model, std::string name);

}  // namespace tonadex::phones
