#include "server/line_log.h"

#include <stdexcept>
#include <utility>
#ifdef _WIN32
#include <io.h>
#else
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#endif

namespace tonadex::server {

#ifdef _WIN32

void SayLine(Stream stream, std::string_view line) {
  const std::string text = std::string(line) + '\n';
  ::_write(static_cast<int>(stream), text.data(), static_cast<unsigned>(text.size()));
}

void SecureStandardStreams() {}  // not needed on Windows

#else

namespace {
// A pipe reported as writable takes this many bytes (PIPE_BUF) without blocking.
constexpr std::size_t kMaxBytesAtOnce = 4096;
}  // namespace

void SayLine(Stream stream, std::string_view line) {
  const std::string text = std::string(line.substr(0, kMaxBytesAtOnce - 1)) + '\n';
  pollfd place{static_cast<int>(stream), POLLOUT, 0};
  if (::poll(&place, 1, 0) == 1 && (place.revents & POLLOUT) != 0) {
    [[maybe_unused]] const auto written = ::write(place.fd, text.data(), text.size());
  }
}

void SecureStandardStreams() {
  std::signal(SIGPIPE, SIG_IGN);
  for (int number = 0; number <= 2; ++number) {
    if (::fcntl(number, F_GETFD) == -1) {
      [[maybe_unused]] const int opened = ::open("/dev/null", O_RDWR);  // gets the lowest number
    }
  }
}

#endif

LineLog::LineLog(const std::string& file) : name_(file) {
  if (!file.empty()) {
    file_.open(file, std::ios::app | std::ios::binary);
    if (!file_) {
      throw std::runtime_error("no se puede escribir el registro «" + file + "»");
    }
  }
}

void LineLog::Reopen() {
  std::ofstream fresh(name_, std::ios::app | std::ios::binary);
  const std::lock_guard lock(mutex_);
  if (file_.is_open() && fresh) {
    file_ = std::move(fresh);
  }
}

void LineLog::operator()(std::string_view line) {
  const std::lock_guard lock(mutex_);
  if (!file_.is_open()) {
    SayLine(Stream::kError, line);
    return;
  }
  file_.clear();  // retry after an error: the disk may have space again
  file_ << line << std::endl;
}

}  // namespace tonadex::server
