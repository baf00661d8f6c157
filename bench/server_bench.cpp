// The melody server's index: searches in large shelves, and the start with a large folder. The
// requests per second of the whole server are measured with wrk (docs/server.md).

#include <benchmark/benchmark.h>
#ifdef TONADEX_SQLITE
#include <sqlite3.h>
#endif

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

#include "server/search_index.h"
#include "server/shelf.h"

namespace {

namespace fs = std::filesystem;
using tonadex::server::SearchIndex;

constexpr std::array kSyllables = {"la",   "ma",  "no",  "ri",  "ta", "sol", "can",
                                   "cion", "de",  "el",  "val", "se", "di",  "luz",
                                   "mi",   "per", "tra", "gon", "bo", "sue"};

// Names of two to four words like real ones; the same names on every run.
std::string MakeName(std::mt19937& random) {
  std::string name;
  for (auto words = 2 + random() % 3; words > 0; --words) {
    for (auto syllables = 1 + random() % 3; syllables > 0; --syllables) {
      name += kSyllables[random() % kSyllables.size()];
    }
    name += words > 1 ? " " : "";
  }
  return name;
}

// Calls add(name, file name) for each melody of a shelf.
template <typename Add>
void MakeShelf(std::size_t melodies, Add add) {
  std::mt19937 random(1);
  for (std::size_t i = 0; i < melodies; ++i) {
    const std::string name = MakeName(random);
    add(name, name + std::to_string(i) + ".120");
  }
}

const SearchIndex& Index(std::size_t melodies) {
  static std::map<std::size_t, SearchIndex> indexes;
  SearchIndex& index = indexes[melodies];
  if (index.size() == 0) {
    MakeShelf(melodies, [&](const auto& name, const auto& file) { index.Add(name, file); });
  }
  return index;
}

// The search words determine how much of the index a search reads.
struct Query {
  const char* name;
  const char* words;
  const char* match;  // the same for SQLite
};
constexpr std::array kQueries = {
    Query{"newest", "", nullptr},
    Query{"everywhere", "la", nullptr},
    Query{"one_melody", "77777", R"("77777")"},
    Query{"nowhere_rare_letter", "waxahachie", R"("waxahachie")"},
    Query{"nowhere_common_letters", "alasenoria", R"("alasenoria")"},
    Query{"two_common_never_together", "lalalalala nonononono", R"("lalalalala" "nonononono")"},
    Query{"three_words", "cancion luz tragon", R"("cancion" "luz" "tragon")"},
};
constexpr int kFirstLong = 2;  // from here on every word has the three characters of a trigram

void BM_Search(benchmark::State& state) {
  const SearchIndex& index = Index(static_cast<std::size_t>(state.range(0)));
  const Query& query = kQueries[static_cast<std::size_t>(state.range(1))];
  std::size_t found = 0;
  for (auto _ : state) {
    found = index.Search(query.words, tonadex::server::kMaxSearchRecords).size();
    benchmark::DoNotOptimize(found);
  }
  state.SetLabel(query.name);
  state.counters["found"] = static_cast<double>(found);
}
BENCHMARK(BM_Search)
    ->ArgsProduct({{1'000, 10'000, 100'000, 1'000'000},
                   benchmark::CreateDenseRange(0, kQueries.size() - 1, 1)})
    ->Unit(benchmark::kMillisecond);

#ifdef TONADEX_SQLITE
// The same shelf in a table of SQLite's trigram tokenizer, in memory.
class SqliteShelf {
 public:
  explicit SqliteShelf(std::size_t melodies) {
    Check(sqlite3_open(":memory:", &database_));
    Run("CREATE VIRTUAL TABLE shelf USING fts5(name, file, tokenize='trigram')");
    Run("BEGIN");
    sqlite3_stmt* insert = Prepare("INSERT INTO shelf VALUES(?, ?)");
    MakeShelf(melodies, [&](const std::string& name, const std::string& file) {
      sqlite3_bind_text(insert, 1, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
      sqlite3_bind_text(insert, 2, file.data(), static_cast<int>(file.size()), SQLITE_STATIC);
      sqlite3_step(insert);
      Check(sqlite3_reset(insert));
    });
    sqlite3_finalize(insert);
    Run("COMMIT");
    Run("INSERT INTO shelf(shelf) VALUES('optimize')");
    search_ =
        Prepare("SELECT name, file FROM shelf WHERE shelf MATCH ? ORDER BY rowid DESC LIMIT ?");
  }
  ~SqliteShelf() {
    sqlite3_finalize(search_);
    sqlite3_close(database_);
  }
  SqliteShelf(const SqliteShelf&) = delete;
  SqliteShelf& operator=(const SqliteShelf&) = delete;

  std::size_t Search(const char* match) {
    sqlite3_bind_text(search_, 1, match, -1, SQLITE_STATIC);
    sqlite3_bind_int(search_, 2, static_cast<int>(tonadex::server::kMaxSearchRecords));
    std::size_t found = 0;
    for (; sqlite3_step(search_) == SQLITE_ROW; ++found) {
      benchmark::DoNotOptimize(sqlite3_column_text(search_, 1));
    }
    Check(sqlite3_reset(search_));
    return found;
  }

 private:
  static void Check(int result) {
    if (result != SQLITE_OK) {
      throw std::runtime_error(sqlite3_errstr(result));
    }
  }
  void Run(const char* sql) { Check(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr)); }
  sqlite3_stmt* Prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr));
    return statement;
  }

  sqlite3* database_ = nullptr;
  sqlite3_stmt* search_ = nullptr;
};

void BM_SqliteSearch(benchmark::State& state) {
  static std::map<std::size_t, std::unique_ptr<SqliteShelf>> shelves;
  const auto melodies = static_cast<std::size_t>(state.range(0));
  const Query& query = kQueries[static_cast<std::size_t>(state.range(1))];
  std::unique_ptr<SqliteShelf>& shelf = shelves[melodies];
  if (!shelf) {
    shelf = std::make_unique<SqliteShelf>(melodies);
  }
  std::size_t found = 0;
  for (auto _ : state) {
    found = shelf->Search(query.match);
  }
  state.SetLabel(query.name);
  state.counters["found"] = static_cast<double>(found);
}
BENCHMARK(BM_SqliteSearch)
    ->ArgsProduct({{1'000, 10'000, 100'000, 1'000'000},
                   benchmark::CreateDenseRange(kFirstLong, kQueries.size() - 1, 1)})
    ->Unit(benchmark::kMillisecond);
#endif

// A folder of melodies that is created once and removed at the end of the scope.
class BenchFolder {
 public:
  explicit BenchFolder(std::size_t melodies)
      : path_(fs::temp_directory_path() /
              ("tonadex-bench-" + std::to_string(std::random_device{}()))) {
    fs::create_directory(path_);
    std::mt19937 random(1);
    for (std::size_t i = 0; i < melodies; ++i) {
      const std::string name = MakeName(random) + std::to_string(i);
      std::ofstream(path_ / (name + ".300")) << name << ":d=4,o=5,b=120:" << std::string(280, 'c');
    }
  }
  ~BenchFolder() { fs::remove_all(path_); }
  BenchFolder(const BenchFolder&) = delete;
  BenchFolder& operator=(const BenchFolder&) = delete;
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

// Reads the folder; unless `again`, the first iteration finds no stored index.
void BM_Start(benchmark::State& state, bool again) {
  using tonadex::server::Shelf;
  const auto access = tonadex::server::ShelfAccess::kReadWrite;
  const BenchFolder folder(static_cast<std::size_t>(state.range(0)));
  if (again) {
    std::this_thread::sleep_for(2 * tonadex::server::kFileTimeStep);  // newer files are not indexed
    const Shelf first(folder.path(), access);
  }
  for (auto _ : state) {
    const Shelf shelf(folder.path(), access);
    benchmark::DoNotOptimize(shelf.size());
  }
}
BENCHMARK_CAPTURE(BM_Start, first, false)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK_CAPTURE(BM_Start, again, true)
    ->RangeMultiplier(10)
    ->Range(1'000, 1'000'000)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
