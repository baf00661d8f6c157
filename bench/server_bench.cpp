// The melody server's index: searches in large shelves, and the start with a large folder. The
// requests per second of the whole server are measured with wrk (docs/server.md).

#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
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

const SearchIndex& Index(std::size_t melodies) {
  static std::map<std::size_t, SearchIndex> indexes;
  SearchIndex& index = indexes[melodies];
  if (index.size() == 0) {
    std::mt19937 random(1);
    for (std::size_t i = 0; i < melodies; ++i) {
      const std::string name = MakeName(random);
      index.Add(name, name + std::to_string(i) + ".120");
    }
  }
  return index;
}

// The search words determine how much of the index a search reads.
struct Query {
  const char* name;
  const char* words;
};
constexpr std::array kQueries = {
    Query{"newest", ""},
    Query{"everywhere", "la"},
    Query{"one_melody", "77777"},
    Query{"nowhere_rare_letter", "waxahachie"},
    Query{"nowhere_common_letters", "alasenoria"},
    Query{"two_common_never_together", "lalalalala nonononono"},
    Query{"three_words", "cancion luz tragon"},
};

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
    ->ArgsProduct({{100'000, 1'000'000}, benchmark::CreateDenseRange(0, kQueries.size() - 1, 1)})
    ->Unit(benchmark::kMillisecond);

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
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
