#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::formats {

using namespace core::literals;

// Follows the number of a note whose duration the format does not have.
inline constexpr std::string_view kBadDuration = u8" no tiene una duración válida"_w;

// Appends `before`, the note's 1-based number, `after` and CR LF. The wording differs by phone.
inline void AppendNoteWarning(std::string& warnings, std::string_view before, std::size_t number,
                              std::string_view after) {
  warnings.append(before).append(std::to_string(number)).append(after).append(core::kCrLf);
}

}  // namespace tonadex::formats
