#include "cli/line_stream.h"

#include <algorithm>
#include <deque>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "cli/convert_line.h"
#include "cli/steps_json.h"
#include "core/melody_file.h"
#include "core/windows1252.h"
#include "files/read.h"

namespace tonadex::cli {
namespace {

using namespace core::literals;

// Lines that one task converts; also cut off when the input pauses or the bytes add up.
constexpr std::size_t kBatchLines = 1024;
constexpr std::size_t kBatchBytes = std::size_t{1} << 18;

using Batch = std::vector<std::string>;

phones::Conversion TooLong() {
  phones::Conversion conversion;
  conversion.messages.push_back(
      {std::string(u8"La línea pasa de 1 MiB y no puede ser una melodía."_w)});
  return conversion;
}

std::string ConvertBatch(const Batch& lines, std::string_view model, std::string_view row,
                         bool steps) {
  core::RTTTLMelody melody;
  std::string json;
  for (const std::string& bytes : lines) {
    phones::Conversion conversion;
    if (bytes.size() > core::kMaxLineBytes) {
      conversion = TooLong();
    } else {
      const std::string line = core::UndoSharpEscape(core::FromOutside(bytes));
      const std::string_view name = std::string_view(line).substr(0, line.find(':'));
      conversion = ConvertLine(melody, line, model, row.empty() ? name : row, std::nullopt);
    }
    json += ConversionJson(conversion);
    if (steps) {
      AppendStepsJson(json, StepsOf(conversion, model, melody));
    }
    json += "}\n";
  }
  return json;
}

// The lines that are there now, at least one unless the input has ended.
Batch ReadBatch(std::istream& in) {
  Batch lines;
  std::size_t bytes = 0;
  do {
    std::optional<std::string> line = files::ReadLine(in, core::kMaxLineBytes);
    if (!line) {
      break;
    }
    bytes += line->size();
    lines.push_back(*std::move(line));
  } while (lines.size() < kBatchLines && bytes < kBatchBytes && in.rdbuf()->in_avail() > 0);
  return lines;
}

}  // namespace

bool ConvertLines(std::istream& in, std::ostream& out, std::string_view model, std::string_view row,
                  bool steps) {
  const std::size_t most = 2 * std::size_t{std::max(2u, std::thread::hardware_concurrency())};
  // Each batch is converted at once and written after the one before it, unless that failed. Only
  // its neighbours hold a batch's future, so that a finished one is forgotten.
  std::deque<std::shared_future<bool>> underWay;
  for (Batch lines = ReadBatch(in); !lines.empty(); lines = ReadBatch(in)) {
    auto task = [&out, model, row, steps, batch = std::move(lines),
                 before =
                     underWay.empty() ? std::shared_future<bool>() : underWay.back()]() mutable {
      const std::string json = ConvertBatch(std::exchange(batch, {}), model, row, steps);
      const std::shared_future<bool> earlier = std::move(before);
      return (!earlier.valid() || earlier.get()) && (out << json << std::flush);
    };
    underWay.push_back(std::async(std::launch::async, std::move(task)));
    if (underWay.size() > most) {
      if (!underWay.front().get()) {
        return false;
      }
      underWay.pop_front();
    }
  }
  return underWay.empty() ? static_cast<bool>(out) : underWay.back().get();
}

}  // namespace tonadex::cli
