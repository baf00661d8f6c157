#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "app/controls.h"
#include "app/melody_notes.h"
#include "app/rtttl_check.h"
#include "core/melody_file.h"
#include "core/windows1252.h"
#include "midi/mMidiLibOut.h"
#include "phones/rtttl_check.h"
#include "phones/rtttl_repair.h"
#include "tests/cli/run_cli.h"
#include "tests/core/test_melody.h"
#include "tests/support/temp_folder.h"

namespace tonadex::cli {
namespace {

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
  folder.Write("cut.mid", midi::MidiFileBytes(melody).substr(0, 50));
  test::ExpectRuns("Runs", folder.path().string() + "/");
  EXPECT_EQ(RunCli({}).code, 2);
  EXPECT_EQ(folder.Read("a.mid") + folder.Read("out"), "(none)(none)");
}

// A text without faults is drawn as it is counted, to the last note.
void ExpectDrawnWhole(const std::string& text) {
  const phones::MelodyCheck check = phones::CheckRtttl(text);
  const app::Drawing drawing = app::MelodyDrawing(text);
  EXPECT_EQ(drawing.notes.size(), check.notes + check.pauses) << text;
  EXPECT_EQ(static_cast<std::size_t>(drawing.written), drawing.notes.size()) << text;
  EXPECT_NEAR(drawing.length, check.seconds * 1000, 1) << text;
}

// What the net does to melodies: comprobar and the window's box say the same of each, the drawing
// has every note of what they call good, and of what arreglar makes.
TEST(Cli, AgreesWithTheWindowAboutDamage) {
  std::size_t good = 0;
  for (const test::Row& row : test::Table("Repairs", TONADEX_REPAIRS)) {
    const std::string box = core::UndoSharpEscape(app::TextOfBox(row[0]));
    const phones::MelodyCheck window = app::RtttlCheck(box);
    const auto repaired = phones::RepairRtttl(box);
    if (repaired.size() == 1) {  // of several comprobar reads the first
      const Outcome outcome = RunCli({"comprobar"}, core::ToUtf8(box));
      const phones::MelodyCheck melody = phones::CheckRtttl(box);
      const bool fine = melody.verdict == phones::Verdict::kGood;
      good += fine ? 1 : 0;
      EXPECT_EQ(outcome.code == 0, fine) << row[0];
      EXPECT_TRUE(fine || outcome.err.starts_with("-: " + ForTerminal(window.sentence) + "\n"))
          << row[0] << outcome.err << core::ToUtf8(window.sentence);
      if (fine) {
        ExpectDrawnWhole(box);
        EXPECT_EQ(app::MelodyDrawing(repaired[0].text), app::MelodyDrawing(box)) << row[0];
      }
    }
    for (const phones::RepairedMelody& melody : repaired) {
      EXPECT_EQ(app::RtttlCheck(melody.text).verdict, phones::Verdict::kGood) << melody.text;
      ExpectDrawnWhole(melody.text);
    }
  }
  EXPECT_GT(good, 8u);
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
             {"tecla":"*","veces":1,"mantener":false}]},
          {"grupo":"0","nota":2,"palabras":"silencio, redonda","pantalla":"1-",
           "teclas":[{"tecla":"0","veces":1,"mantener":false}]}])";
  const std::string melody = "x:d=1,o=5,b=125:d#.6,p";
  for (const std::string_view way : {"--lineas", "--json"}) {
    const auto nokia =
        RunCli({"convertir", "-t", "nokia pulsaciones", "--pasos", std::string(way)}, melody);
    EXPECT_EQ(nlohmann::json::parse(nokia.out)["pasos"], nlohmann::json::parse(steps));
  }
  const auto odd = RunCli({"convertir", "-t", "motorola imelody", "--pasos", "--lineas"},
                          "x:d=4,o=5,b=125:\"\nx:y\n");
  const std::size_t end = odd.out.find('\n') + 1;
  const auto step = nlohmann::json::parse(odd.out.substr(0, end))["pasos"][0];
  EXPECT_EQ(step["teclas"][2]["tecla"], "\"");
  EXPECT_FALSE(step.contains("pantalla"));
  EXPECT_EQ(nlohmann::json::parse(odd.out.substr(end))["pasos"].size(), 0u);
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

// What anybody may hand in as a melody file, and the title and the result that it gives.
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

}  // namespace
}  // namespace tonadex::cli
