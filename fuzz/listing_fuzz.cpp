#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "files/paths.h"
#include "fuzz/require.h"
#include "net/addresses.h"
#include "net/download.h"
#include "net/file_name.h"
#include "net/upload.h"
#include "tests/support/parsed_listing.h"
#include "tests/support/temp_folder.h"

// Reads any bytes as the listing of a melody server and downloads the files of its rows.
namespace {

using namespace tonadex;
namespace fs = std::filesystem;

constexpr std::size_t kDownloads = 3;  // maximum per listing

std::size_t Records(std::string_view reply) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = reply.find(net::kRecordEnd, at)) != reply.npos;
       at += net::kRecordEnd.size()) {
    ++count;
  }
  return count;
}

void CheckParts(const std::string& reply, const net::Listing& listing) {
  Require(listing.rows.size() == Records(reply), "another number of rows than of records");
  Require(!core::Contains(listing.rest, net::kRecordEnd) && reply.ends_with(listing.rest),
          "another rest");
  Require(listing.rows.empty() ? listing.record.empty() && listing.number.empty()
                               : listing.rows.back().text == listing.record,
          "another last record");
  const std::size_t half = reply.find(net::kRecordEnd, reply.size() / 2);
  if (half != reply.npos &&
      Records(reply.substr(0, half)) + 1 + Records(reply.substr(half + 4)) == listing.rows.size()) {
    net::Listing parts = net::ParseListing(reply.substr(0, half + 4), false);
    const net::Listing rest = net::ParseListing(reply.substr(half + 4), false);
    parts.rows.insert(parts.rows.end(), rest.rows.begin(), rest.rows.end());
    Require(parts.rows == listing.rows, "a record that depends on the others");
  }
}

void CheckStems(const net::Listing& search, const net::Listing& all) {
  Require(search.rows.size() == all.rows.size(), "a search of another length");
  for (std::size_t i = 0; i < all.rows.size(); ++i) {
    const std::string& stem = search.rows[i].text;
    Require(search.rows[i].number == all.rows[i].number, "a search with other numbers");
    const std::string& row = all.rows[i].text;  // its last character need not be ")"
    Require(stem == row || (row.starts_with(std::string(stem).append(" (").append(stem)) &&
                            row.size() == 2 * stem.size() + 3),
            "a stem that is not its description");
  }
}

// Whatever name the server sends, the file is written inside the folder or not at all.
void CheckDownload(const net::ListingRow& row, const std::string& reply) {
  const test::TempFolder home;
  const fs::path folder = home / "melodias";
  fs::create_directory(folder);
  std::string asked;
  std::string text;
  const bool stored = net::DownloadMelody(
      [&](std::string_view path) {
        asked = path;
        return reply;
      },
      folder, home.path() / "bin", row.text, row.number, text);
  const std::string name = core::MelodyFileName(row.text, row.number);
  Require(asked == net::MelodyAddress(name), "another address than the row's");
  const bool listable =
      !name.starts_with('.') && core::SkipErrors([&] { core::RepertoireRow("x:", name); });
  Require(stored == (listable && net::IsSafeFileName(name)), "stored or not, against its name");
  Require(std::distance(fs::directory_iterator(home.path()), {}) == 1, "a file elsewhere");
  Require(std::distance(fs::directory_iterator(folder), {}) == (stored ? 1 : 0), "other files");
  if (stored) {
    Require(home.Read("melodias" / files::PathFromText(name)) == text + "\r\n", "other bytes");
    Require(text == reply || text + "\n" == reply, "another text than the reply");
  }
}

// Uploads the melody `name:d=4…`: it is sent once, unless the listing or a rule forbids it.
void CheckUpload(const std::string& listing) {
  const std::string name = listing.substr(0, 20);
  const std::string melody = name + ":d=4,o=5,b=100:c";
  const std::string key = net::UploadKey(name, melody);
  std::string text = melody;
  std::string kept;
  std::string sent;
  const auto result = net::UploadMelody(
      [&](std::string_view path) {
        sent = path;
        return path == net::kFullListingPath ? listing : "";
      },
      name, text, kept);
  Require(kept == listing, "another listing than the server's");
  Require((result == net::UploadResult::kAlreadyThere) == core::Contains(listing, key),
          "sent although it is there, or the reverse");
  Require((result == net::UploadResult::kSent) == (sent == net::UploadAddress(key, text)),
          "another melody than the one that was sent");
  Require(result != net::UploadResult::kSent || !core::Contains(text, "#"),
          "contents that a sharp cuts");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string reply(data, data + size);
  const net::Listing all = net::ParseListing(reply, false);
  CheckParts(reply, all);
  CheckStems(net::ParseListing(reply, true), all);
  for (std::size_t i = 0; i < std::min(all.rows.size(), kDownloads); ++i) {
    CheckDownload(all.rows[i], reply);
  }
  CheckUpload(reply);
  return 0;
}
