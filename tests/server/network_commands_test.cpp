// tonadex-cli's buscar, azar, descargar and subir, run in this process against a server.

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "cli/context.h"
#include "server/embedded_server.h"
#include "tests/support/temp_folder.h"

namespace tonadex {
namespace {

using std::string;

struct Outcome {
  int code;
  string out, err;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};
void PrintTo(const Outcome& o, std::ostream* os) {
  *os << o.code << "\nout: " << o.out << "\nerr: " << o.err;
}

Outcome RunCli(std::vector<const char*> words, const string& input = {}) {
  words.insert(words.begin(), "tonadex-cli");
  std::istringstream in(input);
  std::ostringstream out, err;
  const int code = cli::Run(static_cast<int>(words.size()), words.data(), in, out, err);
  return {code, out.str(), err.str()};
}

TEST(NetworkCommands, SearchDownloadAndUpload) {
  const test::TempFolder home;
  ::setenv("TONADEX_HOME", home.path().c_str(), 1);
  home.Write("servidor/vals.29", "Vals:d=4,o=5,b=63:c,djuh9hay");
  const server::EmbeddedServer server(home / "servidor", "");
  ::setenv("TONADEX_SERVIDOR", (server.BaseAddress() + "/ ").c_str(), 1);
  const char* melody = "Mi ñu:d=4,o=5,b=100:c#,d\n";

  EXPECT_EQ(RunCli({"buscar", "nada"}),
            (Outcome{1, "", "tonadex-cli: No se encontró ninguna melodía\n"}));
  EXPECT_EQ(
      RunCli({"subir"}, melody),
      (Outcome{0, "-: Melodia subida correctamente. Gracias por colaborar con Tonadex.\n", ""}));
  EXPECT_EQ(
      RunCli({"subir", "-"}, melody),
      (Outcome{1, "", "-: La melodia NO se ha subido, pues ya existia en nuestro servidor.\n"}));
  EXPECT_EQ(RunCli({"subir"}, "Mala:d=4,o=5,b=100:c,,d"),  // the server looks at the notes
            (Outcome{1, "",
                     "tonadex-cli: -: el servidor contesta: El texto no es una melodía RTTTL "
                     "válida.\n"}));
  EXPECT_EQ(RunCli({"buscar", "ÑU", "mi"}), (Outcome{0, "Mi ñu.24\tMi ñu\n", ""}));
  EXPECT_EQ(
      RunCli({"buscar", "vals", "--json"}),
      (Outcome{0, "[\n {\n  \"fichero\": \"vals.29\",\n  \"melodia\": \"Vals (vals)\"\n }\n]\n",
               ""}));
  EXPECT_EQ(RunCli({"azar"}).code, 0);
  const string folder = (home / "melodias").string();
  EXPECT_EQ(RunCli({"descargar", "vals.29", "no.1", "../x.1"}),
            (Outcome{2, folder + "/vals.29\n",
                     "tonadex-cli: no.1: el servidor contesta: No hay ninguna melodía con ese "
                     "nombre.\n"
                     "tonadex-cli: ../x.1: no es un nombre de melodía (nombre.número)\n"}));
  EXPECT_EQ(home.Read("melodias/vals.29"), "Vals:d=4,o=5,b=63:c,djuh9hay\r\n");
  EXPECT_EQ(home.Read("melodias/no.1"), "(none)");
  EXPECT_EQ(RunCli({"azar", "--servidor", "http://127.0.0.1:1"}).code, 3);
  ::unsetenv("TONADEX_SERVIDOR");
  EXPECT_EQ(RunCli({"buscar", "ñu"}),
            (Outcome{0, "Mi ñu.24\tMi ñu\n", ""}));  // the folder's own server
  ::unsetenv("TONADEX_HOME");
}

}  // namespace
}  // namespace tonadex
