#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "server/store.h"

namespace tonadex::server {

// The melodies of a PostgreSQL database, which any number of servers may share: what one has
// acknowledged, all of them find at once. The schema is made and upgraded here.
class PostgresqlStore final : public Store {
 public:
  using Report = std::function<void(std::string_view utf8)>;

  // `address` is a URI, postgresql://…. A database that is away is waited for: until then every
  // request throws StoreAway. `report` gets a line when it goes away, is back, or refuses a
  // statement. Throws std::runtime_error for a database that this program cannot use.
  PostgresqlStore(const std::string& address, Report report,
                  int uploadsPerMinute = kUploadsPerMinute);
  ~PostgresqlStore() override;

  bool Reachable() const noexcept override;
  bool Reload(const std::stop_token& stop = {}) override;
  std::size_t size() const override;
  // A search is not abandoned; the database limits its time.
  std::string Search(std::string_view query, const std::function<bool()>& abandoned = {},
                     std::size_t limit = kMaxSearchRecords) const override;
  std::string Random(std::uint64_t seed) const override;
  std::vector<SharedText> FullListing() const override;
  std::optional<std::string> Melody(std::string_view fileName) const override;

  // Adds the melodies of a folder, oldest first, except those whose names are there already; gives
  // how many were added. May be interrupted and repeated. Throws
  // std::filesystem::filesystem_error when it cannot read the folder.
  std::size_t CopyFrom(const std::filesystem::path& folder);

 private:
  struct State;
  UploadResult Add(std::string_view fileName, std::string_view contents) override;

  std::unique_ptr<State> state_;
};

// Whether --almacen names a database.
bool IsDatabaseAddress(std::string_view address);

}  // namespace tonadex::server
