#include "tests/support/fakes.h"

#include <fstream>
#include <iterator>

namespace tonadex::test {

void FakeRichTextBox::LoadFile(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    throw core::RunTimeError(core::ErrorNumber::kFileNotFound, "No se encuentra el archivo");
  }
  source.assign(std::istreambuf_iterator<char>(in), {});
}

}  // namespace tonadex::test
