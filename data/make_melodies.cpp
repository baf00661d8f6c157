// Writes the melodies of the shelf table as melody files:
//
//   make_melodies SHELF OUTDIR [repertorio]
//
// One file "stem.number" per row, or per row with that flag; the folder is made when it is missing.
// A file holds one line: the RTTTL text in Windows-1252, every "#" as "juh9hay", and CR LF.
// Prints nothing. Exit codes: 0 written, 1 a bad row or a failed write, 2 wrong arguments.

#include <cctype>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "shelf.h"

namespace {

namespace fs = std::filesystem;
using tonadex::data::ShelfError;
using tonadex::data::ShelfRow;

constexpr std::string_view kSharp = "juh9hay";
constexpr std::size_t kMaxLength = 99999;  // a file's number has at most five digits
constexpr std::string_view kStemCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";

void CheckRow(const ShelfRow& row) {
  const auto refuse = [&](const std::string& why) { throw ShelfError(row.line, why); };
  if (row.stem.empty() || row.stem.find_first_not_of(kStemCharacters) != std::string::npos) {
    refuse("the stem needs ASCII letters, figures, \"-\" or \"_\"");
  }
  if (row.flags != "-" && !row.InRepertoire()) {
    refuse("unknown flag \"" + row.flags + "\"");
  }
  const std::vector<std::string_view> sections = tonadex::data::SplitAt(row.rtttl, ':');
  if (sections.size() != 3 || sections[0].empty() || sections[2].empty()) {
    refuse("the melody needs a name, a header and notes with \":\" between them");
  }
  const std::vector<std::string_view> header = tonadex::data::SplitAt(sections[1], ',');
  if (header.size() != 3 || !header[0].starts_with("d=") || !header[1].starts_with("o=") ||
      !header[2].starts_with("b=")) {
    refuse("the header needs d=, o= and b=, in this order");
  }
  if (row.rtttl.size() > kMaxLength) {
    refuse("the melody is too long for a file's number");
  }
}

// Names that differ in case alone are one file on some systems.
std::string FoldedName(std::string name) {
  for (char& c : name) {
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return name;
}

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
  const std::vector<ShelfRow> rows = tonadex::data::ReadShelf(table);
  std::set<std::string> names;
  for (const ShelfRow& row : rows) {
    CheckRow(row);
    if (!names.insert(FoldedName(row.FileName())).second) {
      throw ShelfError(row.line, "a second file " + row.FileName());
    }
  }
  fs::create_directories(folder);
  for (const ShelfRow& row : rows) {
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
