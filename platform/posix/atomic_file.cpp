#include "platform/posix/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <system_error>

namespace tonadex::platform {
namespace {

// An open file, closed at the end of the scope.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Number() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }
  // False when the system reports a late write error.
  bool Close() {
    const int number = number_;
    number_ = -1;
    return number < 0 || ::close(number) == 0;
  }

 private:
  int number_;
};

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) {
      return false;
    }
    bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
  return true;
}

std::filesystem::path BehindLinks(const std::filesystem::path& file) {
  std::error_code failure;
  const auto target = std::filesystem::canonical(file, failure);
  return failure ? file : target;
}

// A rename is on the disk once its folder is. Not every file system can do that: no failure.
void SyncFolder(const std::filesystem::path& folder) {
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.IsOpen()) {
    ::fsync(opened.Number());
  }
}

bool Fill(Descriptor& file, std::string_view bytes, Durability durability, unsigned mode) {
  return ::fchmod(file.Number(), static_cast<mode_t>(mode)) == 0 &&
         WriteAll(file.Number(), bytes) &&
         (durability == Durability::kRename || ::fsync(file.Number()) == 0) && file.Close();
}

}  // namespace

bool WriteAtomically(const std::filesystem::path& file, std::string_view bytes,
                     Durability durability, unsigned mode) {
  const std::filesystem::path target = BehindLinks(file);
  std::string neighbour = target.native() + ".XXXXXX";
  Descriptor opened(::mkostemp(neighbour.data(), O_CLOEXEC));
  if (!opened.IsOpen()) {
    return false;
  }
  if (!Fill(opened, bytes, durability, mode) || ::rename(neighbour.c_str(), target.c_str()) != 0) {
    ::unlink(neighbour.c_str());
    return false;
  }
  if (durability == Durability::kDisk) {
    SyncFolder(target.parent_path());
  }
  return true;
}

std::optional<std::string> ReadSmallFile(const std::filesystem::path& file, std::size_t maxBytes) {
  const Descriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status = {};
  if (!opened.IsOpen() || ::fstat(opened.Number(), &status) != 0 || !S_ISREG(status.st_mode) ||
      static_cast<std::uintmax_t>(status.st_size) > maxBytes) {
    return std::nullopt;
  }
  std::string bytes(static_cast<std::size_t>(status.st_size) + 1, '\0');
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t count = ::read(opened.Number(), bytes.data() + filled, bytes.size() - filled);
    if (count == 0) {
      bytes.resize(filled);
      return bytes;
    }
    if (count < 0 && errno != EINTR) {
      return std::nullopt;
    }
    filled += count < 0 ? 0 : static_cast<std::size_t>(count);
  }
  return std::nullopt;  // it grows while it is read
}

}  // namespace tonadex::platform
