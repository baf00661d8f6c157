#include <gtest/gtest.h>

#include <map>
#include <string_view>

#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "net/client.h"
#include "net/download.h"
#include "net/file_name.h"
#include "net/server_address.h"
#include "net/upload.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/fakes.h"
#include "tests/support/parsed_listing.h"
#include "tests/support/temp_folder.h"

namespace tonadex::net::net_test {

TEST(IsSafeFileName, AcceptsWhatEveryPlatformHolds) {
  for (const test::Row& row : test::Table("File names")) {
    for (const std::string_view name : core::SplitText(row[1], ';')) {
      EXPECT_EQ(IsSafeFileName(core::FromUtf8(name)), row[0] == "safe") << name;
    }
  }
  EXPECT_TRUE(IsSafeFileName(std::string(kMaxFileNameBytes, 'a')));
  EXPECT_FALSE(IsSafeFileName(std::string(kMaxFileNameBytes + 1, 'a')));
  EXPECT_FALSE(IsSafeFileName(std::string(kMaxFileNameBytes / 2 + 1, '\xF1')));
  // Windows does not allow these characters and control characters in file names.
  const std::string_view refused = "\"*/:<>?\\|\x7F\x81\x8D\x8F\x90\x9D";
  for (int code = 0; code < 256; ++code) {
    const char c = static_cast<char>(code);
    EXPECT_EQ(!IsSafeFileName(std::string{'a', c, 'a'}),
              code < 32 || core::Contains(refused, {&c, 1}))
        << code;
  }
}

TEST(StoreFile, FailsWithoutATrace) {
  const test::TempFolder folder;
  std::filesystem::create_directories(folder / "inner" / "vals.1");  // a folder has the name
  const auto inner = folder / "inner";
  EXPECT_THROW(StoreFile(inner, "../escaped.1", "x"), core::RunTimeError);
  EXPECT_THROW(StoreFile(inner, "vals.1", "x"), core::RunTimeError);
  EXPECT_THROW(StoreFile(folder / "missing", "vals.1", "x"), core::RunTimeError);
#ifndef _WIN32
  std::filesystem::create_symlink("/dev/null", folder / "device.1");
  EXPECT_THROW(StoreFile(folder.path(), "device.1", "x"), core::RunTimeError);
  std::filesystem::remove(folder / "device.1");
#endif
  const auto entries = std::filesystem::recursive_directory_iterator(folder.path());
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 2);
}

std::string Rows(const Listing& listing) {
  std::string text;
  for (const ListingRow& row : listing.rows) {
    text += row.text + "=" + std::to_string(row.number) + ";";
  }
  return text;
}

TEST(ParseListing, GivesRowsAndTheLastRecord) {
  for (const test::Row& row : test::Table("Listings")) {
    const Listing search = ParseListing(row[0], true);
    EXPECT_EQ(Rows(search), row[1]) << row[0];
    EXPECT_EQ(search.rest, row[3]) << row[0];
    EXPECT_EQ(Rows(ParseListing(row[0], false)), row[2].empty() ? row[1] : row[2]) << row[0];
  }
  const Listing listing = ParseListing("Vals (vals.120)498Tango (tango.98)498", true);
  EXPECT_EQ(listing.record + listing.number, "Tango (tango)98");
}

// A server at "http://s" that records the requests, and the folders of a client.
struct Server {
  test::ScriptedHttp http;
  Fetch fetch = FetchFrom(http, "http://s");
  test::TempFolder folder;
  std::string text = "before";

  Server() { std::filesystem::create_directory(folder / "m"); }
  bool Download(std::string_view row, int number) {
    return DownloadMelody(fetch, folder / "m", folder / "bin", row, number, text);
  }
};

TEST(DownloadMelody, StoresTheReplyOrWhatWasHeld) {
  for (const test::Row& row : test::Table("Downloads")) {
    Server server;
    const bool fails = row[0] == "(fails)";
    server.http.replies = {fails ? std::nullopt : std::optional(row[0])};
    EXPECT_EQ(server.Download("Vals (vals)", 120), !fails);
    EXPECT_EQ(server.folder.Read("m/vals.120"), row[1]);
    EXPECT_EQ(server.http.urls, std::vector<std::string>{"http://s/tonos/vals.120"});
  }
}

TEST(DownloadMelody, StoresNothingOutsideTheFolderOrThatNoListingCouldShow) {
  Server server;
  server.http.replies.assign(6, "x");
  constexpr std::pair<const char*, int> kRows[] = {{"a (../evil)", 1}, {"a (CON)", 1},
                                                   {"../evil", 1},     {"v (x.99999999999)", 0},
                                                   {"v (x)", 123456},  {"v (.x)", 1}};
  for (const auto& [row, number] : kRows) {
    EXPECT_FALSE(server.Download(row, number)) << row;
  }
  EXPECT_EQ(server.http.urls.front(), "http://s/tonos/../evil.1");
  EXPECT_TRUE(std::filesystem::is_empty(server.folder / "m"));
  EXPECT_EQ(server.folder.Read("evil.1"), "(none)");
}

// A failing server may send an error page, which must not replace a good melody.
TEST(DownloadMelody, KeepsWhatItReplacesInTheBin) {
  Server server;
  const test::TempFolder& folder = server.folder;
  server.http.replies = {"Vals:1\n", "Vals:1\n", "<html>", "x"};
  const auto download = [&] { return server.Download("Vals (vals)", 120); };
  EXPECT_TRUE(download() && download());
  EXPECT_FALSE(std::filesystem::exists(folder / "bin")) << "the same again";
  folder.Write("bin/vals.120", "binned before");
  EXPECT_TRUE(download());
  EXPECT_EQ(folder.Read("m/vals.120"), "<html>\r\n");
  EXPECT_EQ(folder.Read("bin/vals.120"), "binned before");
  EXPECT_EQ(folder.Read("bin/vals 2.120"), "Vals:1\r\n");
  std::filesystem::remove_all(folder / "bin");
  folder.Write("bin", "no folder");
  EXPECT_FALSE(download());
  EXPECT_EQ(folder.Read("m/vals.120"), "<html>\r\n") << "nothing is lost";
}

TEST(UploadMelody, ChecksAndSends) {
  std::map<std::string, std::pair<int, std::string>> outcomes;  // in the order of UploadResult
  for (const test::Row& row : test::Table("Upload boxes")) {
    outcomes[row[0]] = {static_cast<int>(outcomes.size()), row[1]};
  }
  for (const test::Row& row : test::Table("Uploads")) {
    SCOPED_TRACE(row[1]);
    Server server;
    server.http.replies = {core::FromUtf8(row[2]), "ERROR"};
    const test::Boxes shown;
    std::string text = core::FromUtf8(row[1]), listing;
    const UploadResult result = UploadMelody(server.fetch, core::FromUtf8(row[0]), text, listing);
    EXPECT_EQ(std::pair(static_cast<int>(result), shown.Text()), outcomes.at(row[3]));
    std::vector<std::string> urls = {"http://s/todoslostonos.php"};
    if (row[3] == "sent") {
      urls.push_back("http://s/uploadertonos.php?filename=" + core::FromUtf8(row[4]) +
                     "&contents=" + text);
    }
    EXPECT_EQ(server.http.urls, urls);
    EXPECT_EQ(text, core::FromUtf8(row[5].empty() ? row[1] : row[5]));
    EXPECT_EQ(listing, row[2]);
  }
}

// Characters with a meaning in URLs are refused in the text and in the name.
TEST(IsUploadable, RefusesWhatBreaksAnAddress) {
  for (const char sign : std::string_view("/\\?'&")) {
    const std::string text = "T:d=4,o=5,b=100:c";
    EXPECT_TRUE(IsUploadable(text, "T.17"));
    EXPECT_FALSE(IsUploadable(text + sign, "T.18")) << sign;
    EXPECT_FALSE(IsUploadable(text, std::string("T") + sign + ".17")) << sign;
  }
}

TEST(ConfiguredServer, IsCleanedAndTheFileComesLast) {
  const test::TempFolder folder;
  folder.Write("servidor.txt", "\xEF\xBB\xBF http://a/ /\r\nx");
  EXPECT_EQ(ConfiguredServer("", folder.path()), "http://a");
  EXPECT_EQ(ConfiguredServer(" http://b/ ", folder.path()), "http://b");
}

}  // namespace tonadex::net::net_test
