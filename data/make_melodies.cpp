// Writes the melodies of the shelf table as melody files:
//
//   make_melodies SHELF OUTDIR [repertorio]
//
// One file "stem.number" per row, or per row with that flag; OUTDIR is created if missing. A file
// has one line: the RTTTL text in Windows-1252 with every "#" replaced by "juh9hay", and CR LF.
// Prints nothing. Exit codes: 0 written, 1 invalid row or failed write, 2 wrong arguments.

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "data/shelf.h"

namespace {

namespace fs = std::filesystem;
using tonadex::data::ShelfRow;

constexpr std::string_view kSharp = "juh9hay";

std::string FileContents(std::string_view rtttl) {
  std::string contents;
  for (const char c : rtttl) {
    contents += c == '#' ? kSharp : std::string_view(&c, 1);
  }
  return contents + "\r\n";
}

void WriteFile(const fs::path& path, std::string_view contents) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
  file.close();
  if (!file) {
    throw std::runtime_error("cannot write " + path.string());
  }
}

void MakeMelodies(const fs::path& shelf, const fs::path& folder, bool repertoireOnly) {
  std::ifstream table(shelf, std::ios::binary);
  if (!table) {
    throw std::runtime_error("cannot open it");
  }
  fs::create_directories(folder);
  for (const ShelfRow& row : tonadex::data::ReadShelf(table)) {
    if (row.InRepertoire() || !repertoireOnly) {
      WriteFile(folder / row.FileName(), FileContents(row.rtttl));
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const bool repertoireOnly = arguments.size() == 3 && arguments[2] == "repertorio";
  if (arguments.size() != 2 && !repertoireOnly) {
    std::cerr << "use: make_melodies SHELF OUTDIR [repertorio]\n";
    return 2;
  }
  try {
    MakeMelodies(arguments[0], arguments[1], repertoireOnly);
  } catch (const std::exception& error) {
    std::cerr << "make_melodies: " << arguments[0] << ": " << error.what() << '\n';
    return 1;
  }
  return 0;
}
