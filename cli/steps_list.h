#pragma once

#include <span>
#include <string>

#include "phones/typing_steps.h"

namespace tonadex::cli {

// The steps as a table for a terminal, one numbered line per group: group, keys, note and, for a
// Nokia, what its display must show. Windows-1252, lines separated by LF.
std::string StepsList(std::span<const phones::TypingStep> steps);

}  // namespace tonadex::cli
