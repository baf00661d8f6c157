#include "cli/line_stream.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <future>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "core/melody_file.h"
#include "json/conversion.h"

namespace tonadex::cli {
namespace {

// Size of the batch that one task converts; less when no more input is available yet.
constexpr std::size_t kBatchBytes = std::size_t{1} << 15;
// Output that may wait for an earlier batch, whose task can have lost its core to another program.
constexpr std::size_t kMaxWaitingBytes = std::size_t{1} << 20;

// Splits the input into batches of whole lines.
class BatchReader {
 public:
  explicit BatchReader(std::istream& in) : in_(*in.rdbuf()) {}

  // Returns the available lines with their ends, at least one; "" at the end of the input. Only the
  // last line of the input may lack its end. An overlong line loses characters but is still
  // overlong.
  std::string Next() {
    std::string batch = std::exchange(rest_, {});
    std::size_t end = 0;  // end of the last whole line
    while (end == 0 || (batch.size() < kBatchBytes && in_.in_avail() > 0)) {
      const std::size_t before = batch.size();
      ended_ = ended_ || !AppendAvailable(batch);  // a terminal can continue after its end
      if (ended_) {
        return batch;
      }
      const std::size_t last = std::string_view(batch).substr(before).find_last_of("\r\n");
      if (last != std::string_view::npos) {
        end = before + last + 1;
      } else if (end == 0 && batch.size() > core::kMaxLineBytes) {
        batch.resize(core::kMaxLineBytes + 1);
      }
    }
    rest_ = batch.substr(end);
    batch.resize(end);
    afterReturn_ = rest_.empty() && batch.back() == '\r';
    return batch;
  }

 private:
  // Reads the available characters, or waits for one. False at the end of the input.
  bool AppendAvailable(std::string& batch) {
    if (std::exchange(afterReturn_, false) && in_.sgetc() == '\n') {
      in_.sbumpc();  // second half of the CR LF that ends the previous batch
    }
    const auto most = std::clamp<std::streamsize>(in_.in_avail(), 1, kBatchBytes);
    const std::size_t before = batch.size();
    batch.resize(before + static_cast<std::size_t>(most));
    const std::streamsize read = in_.sgetn(&batch[before], most);
    batch.resize(before + static_cast<std::size_t>(read));
    return read != 0;
  }

  std::streambuf& in_;
  std::string rest_;  // a line whose end has not arrived
  bool afterReturn_ = false, ended_ = false;
};

// Removes the first line and returns it without its end.
std::string_view TakeLine(std::string_view& lines) {
  std::string_view line = lines.substr(0, lines.find('\n'));
  line = line.substr(0, line.find('\r'));
  lines.remove_prefix(line.size());
  lines.remove_prefix(lines.starts_with("\r\n") ? 2 : lines.empty() ? 0 : 1);
  return line;
}

// Tasks take batches in turn and convert them in parallel. A task that finishes the next batch to
// be written also writes those that finished before it; none waits for another's conversion unless
// it is far ahead.
class Conversions {
 public:
  Conversions(std::istream& in, std::ostream& out, std::string_view model, std::string_view row,
              bool steps)
      : reader_(in), out_(out), model_(model), row_(row), steps_(steps) {}

  // Converts and writes batches until the input ends or `out` fails.
  void Work() try {
    json::LineConverter converter(model_, row_, steps_);
    std::string json;
    while (true) {
      const auto [number, batch] = Take();
      if (batch.empty()) {
        return;
      }
      json.clear();
      for (std::string_view lines = batch; !lines.empty();) {
        converter.Append(json, TakeLine(lines));
        json += '\n';
      }
      if (!Finish(number, json)) {
        return;
      }
    }
  } catch (...) {
    Stop();
    throw;
  }

  bool AllWritten() const { return !stopped_ && out_; }

 private:
  struct Batch {
    std::size_t number;
    std::string lines;
  };

  Batch Take() {
    const std::lock_guard lock(reading_);
    return {taken_++, reader_.Next()};
  }

  // Writes a batch's output and those that wait for it, or leaves it to the task that writes the
  // batch before. `json` may have another content afterwards. False when writing fails.
  bool Finish(std::size_t number, std::string& json) {
    std::unique_lock lock(writing_);
    changed_.wait(
        lock, [&] { return stopped_ || number == written_ || waitingBytes_ < kMaxWaitingBytes; });
    if (number != written_) {
      waitingBytes_ += json.size();
      waiting_.emplace(number, std::exchange(json, {}));
      return !stopped_;
    }
    while (!stopped_) {
      lock.unlock();  // no other task writes: only this one's batch is the next
      const bool failed = !(out_ << json << std::flush);
      lock.lock();
      stopped_ = stopped_ || failed;
      changed_.notify_all();
      const auto next = waiting_.find(++written_);
      if (next == waiting_.end()) {
        break;
      }
      waitingBytes_ -= next->second.size();
      json.swap(next->second);
      waiting_.erase(next);
    }
    return !stopped_;
  }

  void Stop() {
    const std::lock_guard lock(writing_);
    stopped_ = true;
    changed_.notify_all();
  }

  std::mutex reading_;  // guards the next two
  BatchReader reader_;
  std::size_t taken_ = 0;  // batches
  std::mutex writing_;     // guards the next five
  std::condition_variable changed_;
  std::size_t written_ = 0;                     // batches
  std::map<std::size_t, std::string> waiting_;  // outputs of batches after the next one
  std::size_t waitingBytes_ = 0;
  bool stopped_ = false;
  std::ostream& out_;
  const std::string model_, row_;
  const bool steps_;
};

}  // namespace

bool ConvertLines(std::istream& in, std::ostream& out, std::string_view model, std::string_view row,
                  bool steps) {
  Conversions conversions(in, out, model, row, steps);
  // At least one task beside this one, so that one converts while the other waits for input.
  std::vector<std::future<void>> tasks(std::max(2u, std::thread::hardware_concurrency()) - 1);
  for (std::future<void>& task : tasks) {
    task = std::async(std::launch::async, [&conversions] { conversions.Work(); });
  }
  conversions.Work();
  for (std::future<void>& task : tasks) {
    task.get();
  }
  return conversions.AllWritten();
}

}  // namespace tonadex::cli
