#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "server/exchange.h"

namespace tonadex::server {

inline constexpr std::string_view kMetricsPath = "/metricas";
inline constexpr std::string_view kMetricsType = "text/plain; version=0.0.4; charset=utf-8";

// What is measured at the moment of asking.
struct Gauges {
  std::optional<std::size_t> melodies;  // none when the store cannot be reached
  int connections = 0;
};

// Counts requests by path and status. There are only as many paths as the server knows, all others
// are one. Safe to use from several threads.
class Metrics {
 public:
  void Count(const Exchange& exchange);
  // All counts since the start, in Prometheus' text format, UTF-8.
  std::string Text(const Gauges& gauges) const;

 private:
  struct Route {
    std::map<int, std::uint64_t> statuses;
    std::array<std::uint64_t, 8> upTo{};  // requests up to each of kDurations, the last for all
    std::uint64_t bytes = 0;
    double seconds = 0;
  };

  mutable std::mutex mutex_;  // held for some hundred nanoseconds
  std::map<std::string, Route> routes_;
  std::map<std::string_view, std::uint64_t> refusals_;
};

}  // namespace tonadex::server
