#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/context.h"
#include "core/melody_file.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/temp_folder.h"

namespace tonadex::cli {
namespace {

using namespace std::string_view_literals;

struct Result {
  int code = 0;
  std::string out, err;
};

Result RunCli(std::vector<std::string> arguments, std::string_view input = "") {
  std::vector<const char*> argv = {"tonadex-cli"};
  for (const std::string& argument : arguments) {
    argv.push_back(argument.c_str());
  }
  std::istringstream in{std::string(input)};
  std::ostringstream out, err;
  const int code = Run(static_cast<int>(argv.size()), argv.data(), in, out, err);
  return {code, out.str(), err.str()};
}

constexpr std::string_view kGood = "Vals:d=4,o=5,b=125:8c#,2d.6,p";

TEST(Cli, ShowsThePageAndTheMessages) {
  Result result = RunCli({"convertir", "-m", " Motorola por SMS"}, kGood);
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "Melodia Vals para Motorola en formato SMS\n\nL35&2 C#-3D5R4&&69\n\n"
            "Envia esta melodia mandando el texto indicado a tu móvil mediante un SMS, o mediante "
            "un cable de datos. \nEnvia esta melodia a tu teléfono escribiendo esto en un mensaje "
            "de texto, o mediante un cable de datos.\nTempo: 125\n");
  EXPECT_EQ(result.err, "");
  result = RunCli({"convertir", "-t", "emelody", "--solo-resultado", "-"}, "x:d=4,o=5,b=9:c,d\nz");
  EXPECT_EQ(result.out, "BEGIN:EMELODY\nVERSION:1.0\nMELODY:+C+D\nEND:EMELODY\n");
  result = RunCli({"convertir", "-t", "3310", "--json", "--fila", "Año"}, "x:y");
  EXPECT_EQ(result.code, 1);
  const auto json = nlohmann::json::parse(result.out);
  EXPECT_EQ(json["modelo"], "3210,3310,3330,3390,8250");
  EXPECT_EQ(json["fichero"], "-");
  result = RunCli({"comprobar"}, kGood);
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "-: correcto, 3 notas y pausas\n");
  result = RunCli({"comprobar"}, "x:y");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out + result.err,
            "-: Error desconocido al separar las notas del RTTTL.Comprueba que sea correcto\n");
  EXPECT_EQ(RunCli({"modelos", "--marca", "siemens"}).out, "Siemens\n  \"MIDI (cable)\"\n");
  EXPECT_EQ(nlohmann::json::parse(RunCli({"modelos", "--json"}).out).size(), 29u);
}

TEST(Cli, ConvertsForEveryModel) {
  const Result result = RunCli({"convertir", "--todos", "--json"}, kGood);
  EXPECT_EQ(result.code, 0) << "files that nobody asked for are no failure";
  std::istringstream lines(result.out);
  int models = 0;
  int empty = 0;
  for (std::string line; std::getline(lines, line); ++models) {
    empty += nlohmann::json::parse(line)["resultado"] == "" ? 1 : 0;
  }
  EXPECT_EQ(models, 29);
  EXPECT_EQ(empty, 3) << "two KWS rows and MIDI";
}

TEST(Cli, TellsTheShellWhatWentWrong) {
  const test::TempFolder folder;
  folder.Write("good", kGood);
  folder.Write("bad", "x:y");
  folder.Write("long", std::string(core::kMaxLineBytes + 1, 'x'));
  const std::string at = folder.path().string() + "/";
  for (const test::Row& row : test::Table("Runs")) {
    std::vector<std::string> arguments;
    for (const std::string_view part : core::SplitText(row[0], ' ')) {
      arguments.emplace_back(part);
      core::ReplaceAll(arguments.back(), "@", at);
    }
    const Result result = RunCli(arguments);
    EXPECT_EQ(std::to_string(result.code), row[1]) << row[0] << '\n' << result.err;
    EXPECT_EQ(result.err.empty(), row[1] == "0") << row[0];
  }
  EXPECT_EQ(RunCli({}).code, 2);
  EXPECT_EQ(folder.Read("a.mid") + folder.Read("out"), "(none)(none)");
}

TEST(Cli, WritesTheFileThatItIsAskedFor) {
  const test::TempFolder folder;
  const std::string name = folder.path().string() + "/añ o";
  EXPECT_EQ(RunCli({"convertir", "-t", "motorola sms", "-o", name}, kGood).code, 0);
  EXPECT_EQ(folder.Read(std::filesystem::path(u8"añ o")), "L35&2 C#-3D5R4&&69");
  Result result = RunCli({"convertir", "-t", "kws", "-o", name}, "x:d=4,o=4,b=120:c,8p,a");
  EXPECT_EQ(result.err.find("Las melodías de Kyocera, debido"), 0u);
  EXPECT_NE(result.err.find("\nKWS Grabado a:\n" + name + "\n"), std::string::npos);
  EXPECT_EQ(test::Hex(folder.Read(std::filesystem::path(u8"añ o"))),
            "ED FF FF FF 03 00 01 04 F6 01 00 00 FA 00 0A 04 F6 01");
}

// What anybody may hand in as a melody file, and the title and the result that it gives.
TEST(Cli, ReadsHostileFiles) {
  struct {
    std::string_view bytes, title, result;
  } constexpr kFiles[] = {
      {"Canci\xC3\xB3n:d=4,o=5,b=9:cjuh9hay\r\nzz"sv, "Canción", "4#c2 "},
      {"\xEF\xBB\xBF"
       "Canci\xC3\xB3n:d=4,o=5,b=9:c\nzz"sv,
       "Canción", "4c2 "},
      {"a\0b\x1B[31m:d=4,o=5,b=9:c,\0"sv, "a\0b\x1B[31m"sv,
       "4c2 4\0"
       "2 "sv},
      {"\x80\xFF:d=4,o=5,b=9:c,\xC1"sv, "€ÿ", "4c2 4á2 "},
      {""sv, "", ""},
      {"\xFF\xFE\0\0\x01"sv, "ÿþ\0\0\x01"sv, ""},
  };
  const test::TempFolder folder;
  for (const auto& c : kFiles) {
    folder.Write("m.txt", c.bytes);
    const Result result =
        RunCli({"convertir", "-m", " Compositor", "--json", (folder / "m.txt").string()});
    const auto json = nlohmann::json::parse(result.out);
    EXPECT_EQ(result.code, c.result.empty() ? 1 : 0);
    EXPECT_EQ(json["resultado"], c.result);
    const bool kept = json["titulo"] == "";
    EXPECT_TRUE(kept ? c.result.empty()
                     : json["titulo"] == "Melodia " + std::string(c.title) +
                                             " para Nokia en formato de compositor.")
        << json["titulo"];
  }
  folder.Write("vals.120", kGood);
  EXPECT_NE(RunCli({"convertir", "-t", "3310", (folder / "vals.120").string()})
                .out.find("Melodia Vals (vals) para"),
            std::string::npos)
      << "a file of the repertoire has its row as its title";
  const Result terminal = RunCli({"convertir", "-t", "rtttl cable"}, "a\x1B[31m\x9B:\0:\t"sv);
  EXPECT_EQ(terminal.out.find('\x1B'), std::string::npos) << "no orders to the terminal";
}

}  // namespace
}  // namespace tonadex::cli
