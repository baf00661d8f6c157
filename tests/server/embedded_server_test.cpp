#include "server/embedded_server.h"

#include <gtest/gtest.h>

#include <string>

#include "core/windows1252.h"
#include "net/addresses.h"
#include "net/upload.h"
#include "platform/http/http_client.h"
#include "server/file_system.h"
#include "tests/core/table.h"
#include "tests/server/ask.h"
#include "tests/support/eventually.h"
#include "tests/support/full_disk.h"
#include "tests/support/temp_folder.h"

namespace tonadex::server::embedded_server_test {

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

TEST(EmbeddedServer, BeginsWithTheFirstMelodies) {
  const TempFolder first, home;
  first.Write("vals.29", "Vals:d=4,o=5,b=63:c,djuh9hay\r\n");
  const EmbeddedServer server(home / "servidor", first.path());
  EXPECT_EQ(Get(server, "/tonos/vals.29"), "Vals:d=4,o=5,b=63:c,djuh9hay\r\n");
  EXPECT_NE(Get(server, "/").find("web/pagina.js"), string::npos) << "the page";
  EXPECT_NE(Get(server, "/api/v1/buscar?texto=vals").find("vals.29"), string::npos);
  Get(server, UploadPath(string(u8"Mi ñandú"_w)));
  EXPECT_EQ(Get(server, net::SearchAddress(u8"MI ÑANDU"_w)), u8"Mi ñandú (Mi ñandú.28)498"_w);
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
  EXPECT_TRUE(test::Eventually([&] { return second.Role() == EmbeddedRole::kHost; }));
  EXPECT_EQ(second.BaseAddress(), address);
  Get(second, UploadPath("Dos"));
  EXPECT_EQ(Get(second, "/todoslostonos.php"), "Una (Una.23)498Dos (Dos.23)498");
}

TEST(EmbeddedServer, LeavesNoPortThatNobodyListensOn) {
  const TempFolder first, home;
  first.Write("vals.29", "Vals:d=4,o=5,b=63:c,d");
  std::make_unique<EmbeddedServer>(home.path(), "").reset();
  EXPECT_EQ(PublishedPort(home.path()), std::nullopt);
  for (const char* source : {"", first.path().c_str()}) {  // cannot be copied
    home.Write(".puerto", "1\n");                          // left by a killed program
    const test::FullDisk full(0);
    const EmbeddedServer server(home.path(), source);
    EXPECT_EQ(PublishedPort(home.path()), std::nullopt) << source;
  }
}

TEST(EmbeddedServer, ReadsWhileTheFoldersOwnerDoesNotListen) {
  const TempFolder home;
  home.Write("vals.29", "Vals:d=4,o=5,b=63:c,d");
  home.Write(".puerto", "1\n");  // nobody listens on this port
  auto owner = FolderLock::Try(home.path());
  const EmbeddedServer server(home.path(), "");
  EXPECT_EQ(server.Role(), EmbeddedRole::kReader);
  EXPECT_EQ(Get(server, "/azar.php"), "Vals (vals.29)498");
  EXPECT_EQ(Get(server, UploadPath("Una")), "Este servidor solo deja leer.");
  const string address = server.BaseAddress();
  owner.reset();
  EXPECT_TRUE(test::Eventually([&] { return server.Role() == EmbeddedRole::kHost; }));
  EXPECT_EQ(server.BaseAddress(), address);
  Get(server, UploadPath("Una"));
  EXPECT_EQ(Get(server, "/listatonos.php?cadenadebusqueda=una"), "Una (Una.23)498");
}

TEST(EmbeddedServer, ReadsWhatItCannotWrite) {
  const TempFolder first, home;
  first.Write("vals.29", "Vals:d=4,o=5,b=63:c,d");
  home.Write("file", "");
  home.Write("own/jota.29", "Jota:d=4,o=5,b=63:c,d");
  std::filesystem::create_directory(home / "own/.candado");  // no lock file can be created
  for (const auto& [folder, listing] :
       {std::pair{"file/servidor", "Vals (vals.29)498"}, {"own", "Jota (jota.29)498"}}) {
    const EmbeddedServer server(home / folder, first.path());
    EXPECT_EQ(server.Role(), EmbeddedRole::kReader) << folder;
    EXPECT_EQ(Get(server, "/todoslostonos.php"), listing);
    EXPECT_EQ(Get(server, UploadPath("Una")), "Este servidor solo deja leer.");
  }
  EXPECT_THROW(EmbeddedServer(home / "file/servidor", home / "none"), std::exception);
}

// A web page of any origin can make a browser send requests to this machine.
TEST(EmbeddedServer, AnswersThisMachinesProgramsAndItsOwnPagesAlone) {
  const TempFolder home;
  const EmbeddedServer server(home.path(), "");
  for (const test::Row& row : test::Table("Own requests")) {
    for (const std::string_view fields : core::SplitText(row[1], ';')) {
      const string reply =
          test::Ask(*PublishedPort(home.path()), "/mini.php", string(fields) + "\r\n");
      EXPECT_EQ(reply.substr(0, 3), row[0]) << fields;
    }
  }
}

}  // namespace tonadex::server::embedded_server_test
