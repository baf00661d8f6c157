#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/text.h"

namespace tonadex::formats {

// Appends `before`, the note's 1-based number, `after` and CR LF. The wording differs by phone.
inline void AppendNoteWarning(std::string& warnings, std::string_view before, std::size_t number,
                              std::string_view after) {
  warnings.append(before).append(std::to_string(number)).append(after).append(core::kCrLf);
}

}  // namespace tonadex::formats
