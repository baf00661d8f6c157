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

// Melodies in a PostgreSQL database that any number of servers may share: an acknowledged upload is
// found by all of them at once. Creates and upgrades the schema. Texts are Windows-1252.
class PostgresqlStore final : public Store {
 public:
  using Report = std::function<void(std::string_view utf8)>;

  // `address` is a postgresql:// URI. If the database is unreachable, requests throw StoreAway
  // until it can be reached. `report` gets a line when it becomes unreachable or reachable, or
  // rejects a statement. Throws std::runtime_error for a database that this program cannot use.
  PostgresqlStore(const std::string& address, Report report,
                  int uploadsPerMinute = kUploadsPerMinute);
  ~PostgresqlStore() override;

  bool Reachable() const noexcept override;
  bool Reload(const std::stop_token& stop = {}) override;
  std::size_t size() const override;
  // Ignores `abandoned`; the database limits the time of a search.
  std::string Search(std::string_view query, const std::function<bool()>& abandoned = {},
                     std::size_t limit = kMaxSearchRecords) const override;
  std::string Random(std::uint64_t seed) const override;
  std::vector<SharedText> FullListing() const override;
  std::optional<std::string> Melody(std::string_view fileName) const override;

  // Adds the melodies of a folder, oldest first, skipping names that exist; returns the number of
  // added ones. May be interrupted and repeated. Throws std::filesystem::filesystem_error when the
  // folder cannot be read.
  std::size_t CopyFrom(const std::filesystem::path& folder);

 private:
  struct State;
  UploadResult Add(std::string_view fileName, std::string_view contents) override;

  std::unique_ptr<State> state_;
};

// Whether the value of --almacen is a database URI. False also for unescaped special characters in
// its user or password: libpq would read a part of the password as a host, port or database and
// show it in error messages.
bool IsDatabaseAddress(std::string_view address);

}  // namespace tonadex::server
