#include "tests/support/temp_folder.h"

#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <system_error>

namespace tonadex::test {

TempFolder::TempFolder() {
  std::random_device random;
  do {
    path_ = std::filesystem::temp_directory_path() /
            ("tonadex-test-" + std::to_string(random()) + std::to_string(random()));
  } while (!std::filesystem::create_directory(path_));
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

void TempFolder::Write(const std::filesystem::path& name, std::string_view bytes) const {
  const std::filesystem::path file = path_ / name;
  std::filesystem::create_directories(file.parent_path());
  std::ofstream out(file, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush()) {
    throw std::runtime_error("cannot write " + file.string());
  }
}

std::string TempFolder::Read(const std::filesystem::path& name) const {
  std::ifstream in(path_ / name, std::ios::binary);
  if (!in) {
    return "(none)";
  }
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace tonadex::test
