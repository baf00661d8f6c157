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

// Values measured when the metrics are requested.
struct Gauges {
  std::optional<std::size_t> melodies;  // empty when the store is unreachable
  int connections = 0;
};

// Counts requests by path and status. All paths unknown to the server count as one, so that the
// number of counters is bounded. Safe to use from several threads.
class Metrics {
 public:
  void Count(const Exchange& exchange);
  // All counters since the start in Prometheus' text format, UTF-8.
  std::string Text(const Gauges& gauges) const;

 private:
  struct Route {
    std::map<int, std::uint64_t> statuses;
    std::array<std::uint64_t, 8> upTo{};  // cumulative, by kDurations; the last counts all
    std::uint64_t bytes = 0;
    double seconds = 0;
  };

  mutable std::mutex mutex_;  // held for about 100 ns
  std::map<std::string, Route> routes_;
  std::map<std::string_view, std::uint64_t> refusals_;
};

}  // namespace tonadex::server
