#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "net/client.h"
#include "net/download.h"
#include "net/upload.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"

namespace tonadex::net {
namespace {

// A server at "http://s" that records the requests.
struct Server {
  test::ScriptedHttp http;
  Fetch fetch = FetchFrom(http, "http://s");
};

TEST(DownloadMelody, StoresTheReplyOrWhatWasHeld) {
  for (const test::Row& row : test::Table("Downloads")) {
    Server server;
    const bool fails = row[0] == "(fails)";
    server.http.replies = {fails ? std::nullopt : std::optional(row[0])};
    const test::TempFolder folder;
    std::string text = "before";
    EXPECT_EQ(DownloadMelody(server.fetch, folder.path(), folder / "bin", "Vals (vals)", 120, text),
              !fails);
    EXPECT_EQ(folder.Read("vals.120"), row[1]);
    EXPECT_EQ(server.http.urls, std::vector<std::string>{"http://s/tonos/vals.120"});
  }
}

TEST(DownloadMelody, StoresNothingOutsideTheFolderOrThatNoListingCouldShow) {
  Server server;
  server.http.replies.assign(6, "x");
  const test::TempFolder folder;
  std::filesystem::create_directory(folder / "melodias");
  std::string text;
  for (const std::string_view row : {"a (../evil)", "a (CON)", "../evil"}) {
    EXPECT_FALSE(DownloadMelody(server.fetch, folder / "melodias", folder / "bin", row, 1, text));
  }
  EXPECT_EQ(server.http.urls.front(), "http://s/tonos/../evil.1");
  EXPECT_FALSE(DownloadMelody(server.fetch, folder / "melodias", folder / "bin",
                              "v (x.99999999999)", 0, text));
  EXPECT_FALSE(
      DownloadMelody(server.fetch, folder / "melodias", folder / "bin", "v (x)", 123456, text));
  EXPECT_FALSE(
      DownloadMelody(server.fetch, folder / "melodias", folder / "bin", "v (.x)", 1, text));
  EXPECT_TRUE(std::filesystem::is_empty(folder / "melodias"));
  EXPECT_EQ(folder.Read("evil.1"), "(none)");
}

// A failing server may send an error page, which must not replace a good melody.
TEST(DownloadMelody, KeepsWhatItReplacesInTheBin) {
  Server server;
  server.http.replies = {"Vals:1\n", "Vals:1\n", "<html>", "x"};
  const test::TempFolder folder;
  std::string text;
  const auto download = [&] {
    return DownloadMelody(server.fetch, folder / "m", folder / "bin", "Vals (vals)", 120, text);
  };
  std::filesystem::create_directory(folder / "m");
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
  std::map<std::string, std::string> boxes;
  for (const test::Row& row : test::Table("Upload boxes")) {
    boxes[row[0]] = row[1];
  }
  const std::map<std::string, UploadResult> results = {{"sent", UploadResult::kSent},
                                                       {"there", UploadResult::kAlreadyThere},
                                                       {"invalid", UploadResult::kNotValid},
                                                       {"stop", UploadResult::kStopInName}};
  for (const test::Row& row : test::Table("Uploads")) {
    SCOPED_TRACE(row[1]);
    Server server;
    server.http.replies = {core::FromUtf8(row[2]), "ERROR"};
    const test::Boxes shown;
    std::string text = core::FromUtf8(row[1]), listing;
    EXPECT_EQ(UploadMelody(server.fetch, core::FromUtf8(row[0]), text, listing),
              results.at(row[3]));
    EXPECT_EQ(shown.Text(), boxes.at(row[3]));
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

}  // namespace
}  // namespace tonadex::net
