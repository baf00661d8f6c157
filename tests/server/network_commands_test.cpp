// buscar, azar, descargar and subir of tonadex-cli, run in this process with a real server.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

#include "server/embedded_server.h"
#include "tests/cli/run_cli.h"
#include "tests/http/raw_socket.h"
#include "tests/support/temp_folder.h"

namespace tonadex::network_commands_test {

TEST(NetworkCommands, SearchDownloadAndUpload) {
  const test::TempFolder home;
  ::setenv("TONADEX_HOME", home.path().c_str(), 1);
  home.Write("servidor/vals.29", "Vals:d=4,o=5,b=63:c,djuh9hay");
  const server::EmbeddedServer server(home / "servidor", "");
  ::setenv("TONADEX_SERVIDOR", (server.BaseAddress() + "/ ").c_str(), 1);
  test::ExpectRuns("Network commands", home.path().string() + "/");
  EXPECT_EQ(home.Read("melodias/vals.29"), "Vals:d=4,o=5,b=63:c,djuh9hay\r\n");
  EXPECT_EQ(home.Read("melodias/no.1"), "(none)");
  ::unsetenv("TONADEX_SERVIDOR");
  ASSERT_EQ(::mkfifo((home / "servidor.txt").c_str(), 0600), 0) << "must not be waited for";
  EXPECT_EQ(test::RunCli({"buscar", "ñu"}).out, "Mi ñu.24\tMi ñu\n") << "the folder's own server";
  for (const auto& [reply, words] :
       {std::pair("502 Bad Gateway\r\n\r\n<html>", "el servidor rechaza la petición"),
        std::pair("301 Moved\r\nLocation: https://x/\r\n\r\nMoved",
                  "la dirección del servidor ha cambiado (código 301): puede que ahora empiece por "
                  "https://")}) {
    const test::RawServer portal(
        [&](const test::RawSocket& client) { client.Send("HTTP/1.1 " + std::string(reply)); });
    EXPECT_EQ(test::RunCli({"azar", "--servidor", portal.Base()}).err,
              "tonadex-cli: " + std::string(words) + "\n");
  }
  ::unsetenv("TONADEX_HOME");
}

}  // namespace tonadex::network_commands_test
