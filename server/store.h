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
  std::string_view fault;  // Windows-1252; the reason of a refusal
};

// Thrown when the store is temporarily unreachable; the request gets a 503. what() is UTF-8 for the
// operator.
struct StoreAway : std::runtime_error {
  using runtime_error::runtime_error;
};

// The melodies that the server serves. Every implementation gives the same answers in the same
// order. Texts are Windows-1252. Safe to use from several threads. Functions may throw StoreAway
// unless stated otherwise.
class Store {
 public:
  Store(bool writable, int uploadsPerMinute) : writable_(writable), uploads_(uploadsPerMinute) {}
  virtual ~Store() = default;
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  // Whether requests can be answered now. Cheap; does not throw.
  virtual bool Reachable() const noexcept = 0;

  // Reads again what may have been changed by hand. Returns false, with nothing changed, if `stop`
  // was requested.
  virtual bool Reload(const std::stop_token& stop = {}) = 0;

  virtual std::size_t size() const = 0;
  // Listings are sequences of records "description (stem.number)498".
  // At most `limit` melodies whose name or stem contains every word, newest first; incomplete if
  // `abandoned` returns true.
  virtual std::string Search(std::string_view query, const std::function<bool()>& abandoned = {},
                             std::size_t limit = kMaxSearchRecords) const = 0;
  virtual std::string Random(std::uint64_t seed) const = 0;  // kRandomRecords different melodies
  virtual std::vector<SharedText> FullListing() const = 0;   // oldest first, in one or more texts

  // A melody's bytes; empty when there is no such melody or the name is invalid.
  virtual std::optional<std::string> Melody(std::string_view fileName) const = 0;

  // Checks and stores a melody. After kStored it is durable; existing melodies are never
  // overwritten. Uploads per client are counted in this process's memory: each server has its own
  // count.
  UploadAnswer Upload(std::string_view fileName, std::string_view contents, std::string_view client,
                      Clock::time_point now);

 private:
  // Stores a melody that has passed all checks.
  virtual UploadResult Add(std::string_view fileName, std::string_view contents) = 0;

  const bool writable_;
  RateLimit uploads_;
};

// Up to `count` distinct random numbers below `end`, in random order.
std::vector<std::uint32_t> DifferentNumbers(std::uint64_t seed, std::size_t count, std::size_t end);

}  // namespace tonadex::server
