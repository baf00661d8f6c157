#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/melody_file.h"
#include "core/rtttl.h"
#include "core/text.h"
#include "fuzz/require.h"
#include "net/file_name.h"
#include "server/limits.h"
#include "server/melody_name.h"
#include "server/search_index.h"
#include "tests/support/parsed_listing.h"

// A server's melodies and a search: the first line holds the search words, each further line a file
// name, a tab and the melody.
namespace {

using namespace tonadex;

std::vector<std::string_view> Split(std::string_view text, char delimiter) {
  std::vector<std::string_view> parts;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find(delimiter, at), text.size());
    parts.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return parts;
}

// A client that reads the record requests exactly this file, with and without shortened rows.
void CheckRecord(std::string_view description, std::string_view fileName) {
  Require(net::IsSafeFileName(fileName), "a name that no client stores");
  Require(description.find_first_of(".()\r\n") == description.npos,
          "a description that a client misreads");
  const std::string record = server::Record(description, fileName);
  for (const bool stemAlone : {false, true}) {
    const net::Listing listing = net::ParseListing(record, stemAlone);
    Require(listing.rows.size() == 1 && listing.rest.empty(), "no record of its own");
    Require(core::MelodyFileName(listing.rows[0].text, listing.rows[0].number) == fileName,
            "a record that leads elsewhere");
  }
}

void CheckUpload(std::string_view fileName, std::string_view contents) {
  if (!server::UploadFault(fileName, contents).empty()) {
    return;
  }
  core::RTTTLMelody melody;
  melody.Text = core::UndoSharpEscape(contents.substr(0, contents.find_first_of("\r\n")));
  Require(server::ParseMelodyName(fileName) && core::ParseRTTTL(melody) == core::kParsed,
          "an upload of no use");
}

// Whether the folded line contains all folded words of the query.
bool Matches(const std::string& line, const std::vector<std::string>& words) {
  return std::ranges::all_of(words, [&](const auto& word) { return core::Contains(line, word); });
}

// The distinct words that a search uses.
std::vector<std::string> Words(std::string_view query) {
  std::vector<std::string> words;
  std::string word;
  for (const char c : core::Fold(query.substr(0, server::kMaxSearchBytes)) + ' ') {
    if (core::Code(c) > ' ') {
      word += c;
    } else {
      if (!word.empty() && words.size() < server::kMaxSearchWords &&
          std::ranges::find(words, word) == words.end()) {
        words.push_back(word);
      }
      word.clear();
    }
  }
  return words;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(data, data + size);
  const auto lines = Split(input, '\n');
  const std::vector<std::string> words = Words(lines[0]);
  server::SearchIndex index;
  std::vector<std::uint32_t> expected;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const std::string_view fileName = lines[i].substr(0, lines[i].find('\t'));
    const std::string_view contents =
        lines[i].substr(std::min(fileName.size() + 1, lines[i].size()));
    CheckUpload(fileName, contents);
    const auto name = server::ParseMelodyName(fileName);
    if (!name) {
      continue;
    }
    Require(std::string(name->stem) + "." + std::to_string(name->number) == fileName,
            "a name that is not its parts");
    const std::string description = server::Description(contents, name->stem);
    CheckRecord(description, fileName);
    if (Matches(core::Fold(description) + ' ' + core::Fold(name->stem), words)) {
      expected.insert(expected.begin(), static_cast<std::uint32_t>(index.size()));
    }
    index.Add(description, fileName);
  }
  Require(index.Search(lines[0], index.size()) == expected, "a search that finds other melodies");
  std::string records;
  for (const server::SharedText& text : index.Records()) {
    records += *text;
  }
  Require(net::ParseListing(records, false).rows.size() == index.size(),
          "records that run together");
  return 0;
}
