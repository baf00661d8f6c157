#include "server/postgresql/postgresql_store.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <span>
#include <stdexcept>
#include <utility>

#include "core/windows1252.h"
#include "server/melody_folder.h"
#include "server/melody_name.h"
#include "server/postgresql/connections.h"
#include "server/postgresql/sql.h"

namespace tonadex::server {
namespace {

namespace fs = std::filesystem;
using core::FromUtf8;
using core::ToUtf8;
using Number = long long;

// Random positions requested per wanted melody, because deletions leave gaps. When these do not
// suffice, all melodies are fetched.
constexpr std::size_t kDrawsPerRecord = 8;

Number SchemaVersion(pqxx::transaction_base& work) {
  return work.exec1(sql::kHasVersion)[0].as<bool>() ? work.exec1(sql::kVersion)[0].as<Number>(0)
                                                    : 0;
}

// Several servers may start at the same time: one creates or upgrades the schema, the others wait.
void Upgrade(pqxx::connection& connection) {
  constexpr Number kNewest = std::ssize(sql::kUpgrades);
  pqxx::work work(connection);
  Number version = SchemaVersion(work);
  if (version == 0 && work.exec1(sql::kEncoding)[0].as<std::string>() != "UTF8") {
    throw std::runtime_error(
        "la base de datos no está en UTF8: créala con createdb -E UTF8 -T template0");
  }
  if (version < kNewest) {
    work.exec(sql::kLockUpgrade);
    version = SchemaVersion(work);
  }
  if (version > kNewest) {
    throw std::runtime_error("la base de datos es de una versión más nueva de Tonadex");
  }
  if (version < kNewest) {
    work.exec(sql::kMakeVersion);
    for (const char* step : std::span(sql::kUpgrades).subspan(static_cast<std::size_t>(version))) {
      work.exec(step);
    }
    work.exec_params(sql::kSetVersion, kNewest);
  }
  work.commit();
}

struct NewMelody {
  std::string fileName, contents;
};

// Returns the number of added melodies; existing names are skipped. The caller commits.
Number Insert(pqxx::work& work, std::span<const NewMelody> melodies) {
  const Number last = work.exec1(sql::kLockState)[0].as<Number>();
  Number added = 0;
  for (const auto& [fileName, contents] : melodies) {
    const auto name = ParseMelodyName(fileName);
    const std::string description = DescriptionOf(contents, fileName);
    added += static_cast<Number>(
        work.exec_params(sql::kInsert, last + added + 1, ToUtf8(name->stem), name->number,
                         ToUtf8(description), ToUtf8(SearchedName(description, fileName)),
                         pqxx::binarystring(contents))
            .affected_rows());
  }
  work.exec_params(sql::kSetState, added);
  return added;
}

std::optional<std::string> Contents(pqxx::transaction_base& work, const MelodyName& name) {
  const pqxx::result rows = work.exec_params(sql::kContents, ToUtf8(name.stem), name.number);
  return rows.empty() ? std::nullopt : std::optional(pqxx::binarystring(rows[0][0]).str());
}

std::string_view View(const pqxx::field& field) {
  return {field.c_str(), field.size()};
}

std::string Listing(const pqxx::result& rows) {
  std::string listing;
  for (const pqxx::row& row : rows) {
    listing +=
        Record(FromUtf8(View(row[0])), FromUtf8(View(row[1])) + "." + std::string(View(row[2])));
  }
  return listing;
}

// A LIKE pattern that matches the text anywhere, byte for byte.
std::string Pattern(std::string_view word) {
  std::string pattern = "%";
  for (const char c : word) {
    pattern.append(c == '%' || c == '_' || c == '\\' ? 1 : 0, '\\').append(1, c);
  }
  return ToUtf8(pattern + "%");
}

std::string SearchStatement(std::size_t words) {
  std::string statement = sql::kSearch;
  for (std::size_t i = 0; i < words; ++i) {
    statement.append(sql::kSearchWord).append("$").append(std::to_string(i + 2));
  }
  return statement + sql::kSearchEnd;
}

// The full listing as last fetched; only newer melodies are added to it.
struct FullText {
  std::vector<SharedText> texts;
  Number last = 0, deletions = 0;

  void Append(const pqxx::result& rows) {
    std::string text = Listing(rows);
    if (!texts.empty() && texts.back()->size() < kSliceBytes) {
      texts.back() = std::make_shared<const std::string>(*texts.back() + text);
    } else {
      texts.push_back(std::make_shared<const std::string>(std::move(text)));
    }
    last = rows.back()[3].as<Number>();
  }
};

// The result of an upload whose statement was rejected; throws StoreAway for other errors.
UploadResult ResultOf(const pqxx::sql_error& error) {
  const std::string& code = error.sqlstate();
  // A replica; no privilege to write, an error whose code libpqxx leaves out.
  if (code == "25006" || dynamic_cast<const pqxx::insufficient_privilege*>(&error) != nullptr) {
    return UploadResult::kReadOnly;
  }
  if (code.starts_with("53")) {  // insufficient resources: disk, memory
    return UploadResult::kDiskFailure;
  }
  throw StoreAway(error.what());
}

}  // namespace

struct PostgresqlStore::State {
  State(const std::string& address, Report report)
      : connections(address, Upgrade, std::move(report)) {}

  // Connections::Run for reading statements.
  template <typename Use>
  auto Read(Use use, Clock::time_point end = Clock::time_point::max()) {
    try {
      return connections.Run(
          [&](pqxx::connection& connection, bool) {
            pqxx::nontransaction work(connection);
            return use(work);
          },
          end);
    } catch (const pqxx::sql_error& error) {
      throw StoreAway(error.what());
    }
  }

  // Waits at most as long as for the database itself.
  std::unique_lock<std::timed_mutex> LockFull() {
    std::unique_lock lock(mutex, std::chrono::milliseconds(kDatabaseUseMs));
    if (!lock) {
      throw StoreAway("la lista completa tarda demasiado");
    }
    return lock;
  }

  Connections connections;
  std::timed_mutex mutex;  // guards `full`
  FullText full;
};

PostgresqlStore::PostgresqlStore(const std::string& address, Report report, int uploadsPerMinute)
    : Store(true, uploadsPerMinute), state_(std::make_unique<State>(address, std::move(report))) {}

PostgresqlStore::~PostgresqlStore() = default;

bool PostgresqlStore::Reachable() const noexcept {
  try {
    return state_->Read([](auto& work) { return work.exec(sql::kAlive).size() == 1; },
                        Clock::now() + std::chrono::milliseconds(kDatabaseCheckMs));
  } catch (const std::exception&) {
    return false;
  }
}

bool PostgresqlStore::Reload(const std::stop_token&) {
  const auto lock = state_->LockFull();
  state_->full = {};
  return true;
}

std::size_t PostgresqlStore::size() const {
  return state_->Read(
      [](auto& work) { return work.exec1(sql::kState)[1].template as<std::size_t>(); });
}

std::string PostgresqlStore::Search(std::string_view query, const std::function<bool()>&,
                                    std::size_t limit) const {
  const std::vector<std::string> words = SearchWords(query);
  std::vector<std::string> parameters = {std::to_string(limit)};
  for (const std::string& word : words) {
    parameters.push_back(Pattern(word));
  }
  const std::string statement = SearchStatement(words.size());
  return Listing(state_->Read([&](auto& work) {
    return work.exec_params(statement, pqxx::prepare::make_dynamic_params(parameters));
  }));
}

std::string PostgresqlStore::Random(std::uint64_t seed) const {
  return Listing(state_->Read([&](auto& work) {
    const pqxx::row state = work.exec1(sql::kState);
    const auto last = state[0].template as<std::size_t>();
    std::string positions;
    for (const auto number : DifferentNumbers(seed, kRandomRecords * kDrawsPerRecord, last)) {
      positions.append(positions.empty() ? "{" : ",").append(std::to_string(number + 1));
    }
    pqxx::result rows =
        work.exec_params(sql::kAt, positions.empty() ? "{}" : positions + "}", kRandomRecords);
    const bool few = rows.size() < std::min(kRandomRecords, state[1].template as<std::size_t>());
    return few ? work.exec_params(sql::kAnywhere, kRandomRecords) : rows;
  }));
}

std::vector<SharedText> PostgresqlStore::FullListing() const {
  const auto lock = state_->LockFull();
  FullText& full = state_->full;
  for (bool more = true; more;) {
    more = state_->Read([&](auto& work) {
      const auto deletions = work.exec1(sql::kState)[2].template as<Number>();
      if (full.deletions != deletions) {
        full = {{}, 0, deletions};
      }
      const pqxx::result rows = work.exec_params(sql::kAfter, full.last, kListingRows);
      if (!rows.empty()) {
        full.Append(rows);
      }
      return rows.size() == kListingRows;
    });
  }
  return full.texts;
}

std::optional<std::string> PostgresqlStore::Melody(std::string_view fileName) const {
  const auto name = ParseMelodyName(fileName);
  return name ? state_->Read([&](auto& work) { return Contents(work, *name); }) : std::nullopt;
}

UploadResult PostgresqlStore::Add(std::string_view fileName, std::string_view contents) {
  const NewMelody melody{std::string(fileName), std::string(contents)};
  try {
    return state_->connections.Run([&](pqxx::connection& connection, bool again) {
      pqxx::work work(connection);
      if (Insert(work, {&melody, 1}) == 1) {
        work.commit();
        return UploadResult::kStored;
      }
      // If the lost connection had committed, this is the same upload.
      return again && Contents(work, *ParseMelodyName(fileName)) == contents
                 ? UploadResult::kStored
                 : UploadResult::kExists;
    });
  } catch (const pqxx::sql_error& error) {
    return ResultOf(error);
  }
}

std::size_t PostgresqlStore::CopyFrom(const fs::path& folder) {
  MelodyFolder source(folder, ShelfAccess::kReadOnly);
  const StoredMelodies melodies = source.Read();
  std::vector<NewMelody> batch;
  std::size_t bytes = 0;
  Number added = 0;
  for (const StoredMelody& melody : melodies.list) {
    if (auto contents = source.Melody(melody.fileName)) {
      bytes += contents->size();
      batch.push_back({std::string(melody.fileName), *std::move(contents)});
    }
    const bool last = &melody == &melodies.list.back();
    if (last || batch.size() == kMaxCopiedMelodies || bytes > kMaxCopiedBytes) {
      added += state_->connections.Run([&](pqxx::connection& connection, bool) {
        pqxx::work work(connection);
        const Number count = Insert(work, batch);
        work.commit();
        return count;
      });
      batch.clear();
      bytes = 0;
    }
  }
  return static_cast<std::size_t>(added);
}

bool IsDatabaseAddress(std::string_view address) {
  const std::string_view scheme = address.substr(0, address.find("://"));
  if (scheme.size() == address.size() || (scheme != "postgresql" && scheme != "postgres")) {
    return false;
  }
  const std::string_view rest = address.substr(scheme.size() + 3);
  for (std::size_t at = rest.find('%'); at != rest.npos; at = rest.find('%', at + 1)) {
    const std::string_view digits = rest.substr(at + 1, 2);
    if (digits.size() < 2 || digits.find_first_not_of("0123456789abcdefABCDEF") != digits.npos) {
      return false;
    }
  }
  const std::size_t host = rest.rfind('@');
  return host == rest.npos || rest.substr(0, host).find_first_of("@/?#") == rest.npos;
}

}  // namespace tonadex::server
