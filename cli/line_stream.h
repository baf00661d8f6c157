#pragma once

#include <istream>
#include <ostream>
#include <string_view>

namespace tonadex::cli {

// Converts every line of `in` for one model and writes one JSON object per line to `out`, in order,
// on all cores. Memory stays bounded on endless input; what has arrived is answered without
// waiting for more. The title's row is `row`, or the melody's own name when that is empty. A line
// longer than core::kMaxLineBytes is answered by a message instead of a conversion. `steps` adds
// what to press (AppendStepsJson).
// False when `out` takes no more.
bool ConvertLines(std::istream& in, std::ostream& out, std::string_view model, std::string_view row,
                  bool steps = false);

}  // namespace tonadex::cli
