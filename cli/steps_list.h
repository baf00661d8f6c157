#pragma once

#include <span>
#include <string>

#include "phones/typing_steps.h"

namespace tonadex::cli {

// The steps as a table for a terminal beside the phone, one numbered line a group: group, keys,
// note and, for a Nokia, what its display must show. Windows-1252, lines parted by LF.
std::string StepsList(std::span<const phones::TypingStep> steps);

}  // namespace tonadex::cli
