#include "cli/line_stream.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "cli/convert_line.h"
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

std::string ConvertBatch(const Batch& lines, std::string_view model, std::string_view row) {
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
  }
  return json;
}

// Results in the order of their lines, at most `capacity` under way.
class OrderedResults {
 public:
  explicit OrderedResults(std::size_t capacity) : capacity_(capacity) {}

  // Waits for room. False when the writer gave up.
  bool Push(std::future<std::string> result) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return results_.size() < capacity_ || closed_; });
    if (closed_) {
      return false;
    }
    results_.push_back(std::move(result));
    changed_.notify_all();
    return true;
  }

  // The next result; an invalid one at the end.
  std::future<std::string> Pop() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return !results_.empty() || closed_; });
    if (results_.empty()) {
      return {};
    }
    std::future<std::string> next = std::move(results_.front());
    results_.pop_front();
    changed_.notify_all();
    return next;
  }

  void Close() {
    const std::scoped_lock lock(mutex_);
    closed_ = true;
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::future<std::string>> results_;
  std::size_t capacity_;
  bool closed_ = false;
};

// However the reader or the writer ends: the other one would wait for ever.
class ClosesAtEnd {
 public:
  explicit ClosesAtEnd(OrderedResults& results) : results_(results) {}
  ~ClosesAtEnd() { results_.Close(); }
  ClosesAtEnd(const ClosesAtEnd&) = delete;
  ClosesAtEnd& operator=(const ClosesAtEnd&) = delete;

 private:
  OrderedResults& results_;
};

void WriteResults(OrderedResults& results, std::ostream& out) {
  const ClosesAtEnd closing(results);
  for (std::future<std::string> next = results.Pop(); next.valid(); next = results.Pop()) {
    out << next.get() << std::flush;
    if (!out) {
      return;
    }
  }
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

void ReadLines(std::istream& in, std::string_view model, std::string_view row,
               OrderedResults& results) {
  const ClosesAtEnd closing(results);
  for (Batch lines = ReadBatch(in); !lines.empty(); lines = ReadBatch(in)) {
    auto task = [batch = std::move(lines), model, row] { return ConvertBatch(batch, model, row); };
    if (!results.Push(std::async(std::launch::async, std::move(task)))) {
      return;
    }
  }
}

}  // namespace

bool ConvertLines(std::istream& in, std::ostream& out, std::string_view model,
                  std::string_view row) {
  OrderedResults results(2 * std::size_t{std::max(2u, std::thread::hardware_concurrency())});
  auto writer = std::async(std::launch::async, [&] { WriteResults(results, out); });
  ReadLines(in, model, row, results);
  writer.get();
  return static_cast<bool>(out);
}

}  // namespace tonadex::cli
