#include "server/store.h"

#include <algorithm>
#include <random>

#include "server/melody_name.h"

namespace tonadex::server {

UploadAnswer Store::Upload(std::string_view fileName, std::string_view contents,
                           std::string_view client, Clock::time_point now) {
  if (!writable_) {
    return {UploadResult::kReadOnly, {}};
  }
  if (!uploads_.Allow(client, now)) {
    return {UploadResult::kTooMany, {}};
  }
  if (const std::string_view fault = UploadFault(fileName, contents); !fault.empty()) {
    return {UploadResult::kRefused, fault};
  }
  return {Add(fileName, contents), {}};
}

std::vector<std::uint32_t> DifferentNumbers(std::uint64_t seed, std::size_t count,
                                            std::size_t end) {
  std::mt19937_64 random(seed);
  std::vector<std::uint32_t> chosen;
  while (chosen.size() < std::min(count, end)) {
    const auto number = static_cast<std::uint32_t>(random() % end);
    if (std::ranges::find(chosen, number) == chosen.end()) {
      chosen.push_back(number);
    }
  }
  return chosen;
}

}  // namespace tonadex::server
