// Runs a fuzz target on the given files and the files of the given folders, without libFuzzer.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void Replay(const std::filesystem::path& file) {
  std::cerr << file.string() << std::endl;  // after a failure the last line names the input
  std::ifstream in(file, std::ios::binary);
  // A vector of the exact size, so that a sanitizer sees a read past the end.
  const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  int files = 0;
  for (int i = 1; i < argc; ++i) {
    if (!std::filesystem::exists(argv[i])) {
      std::cerr << argv[i] << " does not exist\n";
      return 1;
    }
    if (!std::filesystem::is_directory(argv[i])) {
      Replay(argv[i]);
      ++files;
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      Replay(entry.path());
      ++files;
    }
  }
  std::cout << files << " files\n";
  return files == 0 ? 1 : 0;
}
