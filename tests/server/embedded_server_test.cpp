#include "server/embedded_server.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "core/windows1252.h"
#include "net/addresses.h"
#include "net/client.h"
#include "net/download.h"
#include "net/listing.h"
#include "net/upload.h"
#include "platform/http/http_client.h"
#include "platform/message_box.h"
#include "server/file_system.h"
#include "server/http_server.h"
#include "tests/support/temp_folder.h"

namespace tonadex::server {
namespace {

using namespace core::literals;
using std::string;
using test::TempFolder;

string Get(const EmbeddedServer& server, const string& path) {
  return platform::HttpClient().Get(server.BaseAddress() + path);
}

string UploadPath(const string& name) {
  const string text = name + ":d=4,o=5,b=100:c,d,e";
  return net::UploadAddress(net::UploadKey(name, text), text);
}

void WaitForRole(const EmbeddedServer& server, EmbeddedRole role) {
  const auto end = Clock::now() + std::chrono::seconds(20);
  while (server.Role() != role && Clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  ASSERT_EQ(server.Role(), role);
}

TEST(EmbeddedServer, ServesTheClientFromItsFirstMelodies) {
  const TempFolder first, home;
  first.Write("vals.29", "Vals:d=4,o=5,b=63:c,djuh9hay\r\n");
  const EmbeddedServer server(home / "servidor", first.path());
  platform::HttpClient http;
  const net::Fetch fetch = net::FetchFrom(http, server.BaseAddress());
  platform::RecordingMessages messages;
  const platform::ScopedMessageSink sink(messages);

  string text = string(u8"Mi ñandú:d=4,o=5,b=100:c#,d"_w);
  string listing;
  EXPECT_EQ(net::UploadMelody(fetch, u8"Mi ñandú"_w, text, listing), net::UploadResult::kSent);
  EXPECT_EQ(http.LastStatus(), 200);
  text = string(u8"Mi ñandú:d=4,o=5,b=100:c#,d"_w);
  EXPECT_EQ(net::UploadMelody(fetch, u8"Mi ñandú"_w, text, listing),
            net::UploadResult::kAlreadyThere);

  const auto rows = net::ParseListing(fetch(net::SearchAddress(u8"MI ÑANDU"_w)), true).rows;
  ASSERT_EQ(rows, (std::vector<net::ListingRow>{{string(u8"Mi ñandú"_w), 27}}));
  EXPECT_TRUE(net::DownloadMelody(fetch, home.path(), rows[0].text, rows[0].number, text));
  EXPECT_EQ(home.Read("Mi ñandú.27"), string(u8"Mi ñandú:d=4,o=5,b=100:cjuh9hay,d\r\n"_w));
  EXPECT_TRUE(net::DownloadMelody(fetch, home.path(), "Vals (vals)", 29, text));
  EXPECT_EQ(home.Read("vals.29"), "Vals:d=4,o=5,b=63:c,djuh9hay\r\r\n");
  EXPECT_EQ(net::ParseListing(fetch(net::kRandomPath), false).rows.size(), 2u);
}

TEST(EmbeddedServer, IsSharedByTwoProgramsAndOutlivesTheFirst) {
  const TempFolder home;
  auto first = std::make_unique<EmbeddedServer>(home.path(), "");
  const EmbeddedServer second(home.path(), "");
  EXPECT_EQ(first->Role(), EmbeddedRole::kHost);
  EXPECT_EQ(second.Role(), EmbeddedRole::kGuest);
  const string address = first->BaseAddress();
  EXPECT_EQ(second.BaseAddress(), address);
  Get(second, UploadPath("Una"));
  EXPECT_EQ(Get(*first, "/todoslostonos.php"), "Una (Una.23)498");
  first.reset();
  WaitForRole(second, EmbeddedRole::kHost);
  EXPECT_EQ(second.BaseAddress(), address);
  Get(second, UploadPath("Dos"));
  EXPECT_EQ(Get(second, "/todoslostonos.php"), "Una (Una.23)498Dos (Dos.23)498");
}

TEST(EmbeddedServer, ReadsWhileTheFoldersOwnerDoesNotListen) {
  const TempFolder home;
  home.Write("vals.29", "Vals:d=4,o=5,b=63:c,d");
  home.Write(".puerto", "1\n");  // nobody listens there
  auto owner = FolderLock::Try(home.path());
  const EmbeddedServer server(home.path(), "");
  EXPECT_EQ(server.Role(), EmbeddedRole::kReader);
  EXPECT_EQ(Get(server, "/azar.php"), "Vals (vals.29)498");
  EXPECT_EQ(Get(server, UploadPath("Una")), "Este servidor solo deja leer.");
  const string address = server.BaseAddress();
  owner.reset();
  WaitForRole(server, EmbeddedRole::kHost);
  EXPECT_EQ(server.BaseAddress(), address);
  Get(server, UploadPath("Una"));
  EXPECT_EQ(Get(server, "/listatonos.php?cadenadebusqueda=una"), "Una (Una.23)498");
}

TEST(ParseListing, TakesAHundredThousandRecordsFromAServer) {
  string listing;
  for (int i = 0; i < 100'000; ++i) {
    listing += "Melody " + std::to_string(i) + " (m" + std::to_string(i) + ".120)498";
  }
  HttpServer server({}, [&](const Request&) { return TextReply(200, listing); });
  const string base = "http://127.0.0.1:" + std::to_string(server.Port());
  const auto rows = net::ParseListing(platform::HttpClient().Get(base + "/x"), true).rows;
  ASSERT_EQ(rows.size(), 100'000u);
  EXPECT_EQ(rows.back(), (net::ListingRow{"Melody 99999 (m99999)", 120}));
}

}  // namespace
}  // namespace tonadex::server
