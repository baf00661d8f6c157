#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "core/melody_file.h"
#include "midi/mMidiLibOut.h"
#include "tests/cli/run_cli.h"
#include "tests/core/test_melody.h"
#include "tests/midi/smf_bytes.h"
#include "tests/support/temp_folder.h"

namespace tonadex::cli::run_test {

using test::Outcome;
using test::RunCli;

constexpr std::string_view kGood = "Vals:d=4,o=5,b=125:8c#,2d.6,p";

TEST(Cli, AnswersAndTellsTheShellWhatWentWrong) {
  const test::TempFolder folder;
  folder.Write("good", kGood);
  folder.Write("vals.120", kGood);
  folder.Write("bad", "x:y");
  folder.Write("untimed", "x:d=4,o=5,b=z:c");
  folder.Write("a.1", "");
  folder.Write("two", "Otra:d=4,o=5,b=100:c\nVals:d=4,o=5,b=100:d\n");
  folder.Write("long", std::string(core::kMaxLineBytes + 1, 'x'));
  core::RTTTLMelody melody = test::ParsedMelody(kGood);
  melody.TrackName = "MIDI by Tonadex";
  folder.Write("m.mid", midi::MidiFileBytes(melody));
  folder.Write("drums.mid", test::SmfOf({{{0, 12, 40, 9, 64}}}, 48));
  folder.Write("photo", std::string("\x89PNG\r\n\0a:d=4,o=5:c,d,e", 23));
  folder.Write("cut.mid", midi::MidiFileBytes(melody).substr(0, 50));
  test::ExpectRuns("Runs", folder.path().string() + "/");
  EXPECT_EQ(RunCli({}).code, 2);
  EXPECT_EQ(folder.Read("a.mid") + folder.Read("out"), "(none)(none)");
}

TEST(Cli, ConvertsForEveryModel) {
  const Outcome outcome = RunCli({"convertir", "--todos", "--json"}, kGood);
  EXPECT_EQ(outcome.code, 0) << "files that nobody asked for are no failure";
  std::istringstream lines(outcome.out);
  int models = 0;
  int empty = 0;
  for (std::string line; std::getline(lines, line); ++models) {
    empty += nlohmann::json::parse(line)["resultado"] == "" ? 1 : 0;
  }
  EXPECT_EQ(models, 29);
  EXPECT_EQ(empty, 3) << "two KWS rows and MIDI";
  EXPECT_EQ(nlohmann::json::parse(RunCli({"modelos", "--json"}).out).size(), 29u);
}

TEST(Cli, GivesTheStepsInJson) {
  const std::string steps =
      R"([{"grupo":"(2)99#*","nota":1,"palabras":"re sostenido, redonda, con puntillo, octava media",
           "pantalla":"1.#d2","teclas":[{"tecla":"2","veces":1,"mantener":true},
             {"tecla":"9","veces":2,"mantener":false},{"tecla":"#","veces":1,"mantener":false},
             {"tecla":"*","veces":1,"mantener":false}]}])";
  const std::string melody = "x:d=1,o=5,b=125:d#.6";
  for (const std::string_view way : {"--lineas", "--json"}) {
    const auto nokia =
        RunCli({"convertir", "-t", "nokia pulsaciones", "--pasos", std::string(way)}, melody);
    EXPECT_EQ(nlohmann::json::parse(nokia.out)["pasos"], nlohmann::json::parse(steps));
  }
  const std::string all = RunCli({"convertir", "--todos", "--pasos", "--json"}, kGood).out;
  EXPECT_EQ(std::ranges::count(all, '\n'), 14) << "the models that are typed into";
}

TEST(Cli, WritesTheFileThatItIsAskedFor) {
  const test::TempFolder folder;
  const std::filesystem::path file(u8"añ o");
  const std::string name = folder.path().string() + "/añ o";
  EXPECT_EQ(RunCli({"convertir", "-t", "motorola sms", "-o", name}, kGood).code, 0);
  EXPECT_EQ(folder.Read(file), "L35&2 C#-3D5R4&&69");
  const Outcome kws = RunCli({"convertir", "-t", "kws", "-o", name}, "x:d=4,o=4,b=120:c,8p,a");
  EXPECT_TRUE(kws.err.starts_with("Las melodías de Kyocera, debido")) << kws.err;
  EXPECT_TRUE(kws.err.ends_with("\nKWS Grabado a:\n" + name + "\n")) << kws.err;
  EXPECT_EQ(test::Hex(folder.Read(file)), "ED FF FF FF 03 00 01 04 F6 01 00 00 FA 00 0A 04 F6 01");
}

// Any bytes may be a melody file: checks title and result of each.
TEST(Cli, ReadsHostileFiles) {
  const test::TempFolder folder;
  const std::string file = (folder / "m.txt").string();
  for (const test::Row& row : test::Table("Hostile files")) {
    folder.Write("m.txt", row[0]);
    const Outcome outcome = RunCli({"convertir", "-m", " Compositor", "--json", file});
    const auto json = nlohmann::json::parse(outcome.out);
    EXPECT_EQ(outcome.code, row[2].empty() ? 1 : 0) << row[0];
    EXPECT_EQ(json["resultado"], row[2]);
    if (!row[2].empty() || json["titulo"] != "") {
      EXPECT_EQ(json["titulo"], "Melodia " + row[1] + " para Nokia en formato de compositor.");
    }
  }
}

}  // namespace tonadex::cli::run_test
