#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "server/limits.h"
#include "server/rate_limit.h"
#include "server/search_index.h"

namespace tonadex::server {

enum class UploadResult { kStored, kExists, kRefused, kTooMany, kReadOnly, kDiskFailure };

struct UploadAnswer {
  UploadResult result = UploadResult::kStored;
  std::string_view fault;  // why it was refused, Windows-1252
};

// The store cannot be reached now and may be later: the request gets a 503. what() is for the
// operator.
struct StoreAway : std::runtime_error {
  using runtime_error::runtime_error;
};

// The melodies that the server serves, wherever they are kept. Every store gives the same answers
// in the same order. All texts are Windows-1252. Safe to use from several threads. Unless it says
// otherwise, a function may throw StoreAway.
class Store {
 public:
  Store(bool writable, int uploadsPerMinute) : writable_(writable), uploads_(uploadsPerMinute) {}
  virtual ~Store() = default;
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  // Whether requests can be answered now; cheap, throws nothing.
  virtual bool Reachable() const noexcept = 0;

  // Reads again what others may have changed by hand. False, and nothing changed, when it was told
  // to stop.
  virtual bool Reload(const std::stop_token& stop = {}) = 0;

  virtual std::size_t size() const = 0;
  // Listings: runs of "description (stem.number)498".
  // At most `limit` melodies whose name or stem holds every word, newest first; incomplete when
  // `abandoned` ended the search.
  virtual std::string Search(std::string_view query, const std::function<bool()>& abandoned = {},
                             std::size_t limit = kMaxSearchRecords) const = 0;
  virtual std::string Random(std::uint64_t seed) const = 0;  // kRandomRecords different melodies
  virtual std::vector<SharedText> FullListing() const = 0;   // oldest first, in one or more texts

  // A melody's bytes; empty when there is no such melody or the name is invalid.
  virtual std::optional<std::string> Melody(std::string_view fileName) const = 0;

  // Checks and stores a melody. After kStored nothing can lose it; nothing is ever overwritten. The
  // uploads of a client are counted here, in memory: each server has its own count.
  UploadAnswer Upload(std::string_view fileName, std::string_view contents, std::string_view client,
                      Clock::time_point now);

 private:
  // Stores a melody that has passed every check.
  virtual UploadResult Add(std::string_view fileName, std::string_view contents) = 0;

  const bool writable_;
  RateLimit uploads_;
};

// Up to `count` different numbers below `end`, in random order.
std::vector<std::uint32_t> DifferentNumbers(std::uint64_t seed, std::size_t count, std::size_t end);

}  // namespace tonadex::server
