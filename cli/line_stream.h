#pragma once

#include <istream>
#include <ostream>
#include <string_view>

namespace tonadex::cli {

// Converts every line of `in` for one model and writes one JSON object per line to `out`, in order,
// on all cores. Memory is bounded on endless input, and available lines are answered without
// waiting for more. The row of the title is `row`, or the melody's name when that is empty. A line
// longer than core::kMaxLineBytes is answered with a message. `steps` adds the typing steps
// (AppendStepsJson). False when writing to `out` fails.
bool ConvertLines(std::istream& in, std::ostream& out, std::string_view model, std::string_view row,
                  bool steps = false);

}  // namespace tonadex::cli
