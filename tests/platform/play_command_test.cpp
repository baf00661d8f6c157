#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <future>
#include <mutex>
#include <sstream>
#include <thread>
#include <vector>

#include "tests/cli/run_cli.h"
#include "tests/platform/environment.h"
#include "tests/support/temp_folder.h"

namespace tonadex::cli::play_command_test {

constexpr const char* kSilentNote =
    "tonadex-cli: no hay dispositivo de sonido: la melodía avanza en silencio\n";

struct ReproducirTest : testing::Test {
  static std::string Play(const std::string& melody, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), {"reproducir", "-"});
    const test::Outcome outcome = test::RunCli(arguments, melody);
    return std::to_string(outcome.code) + " " + outcome.out + "! " + outcome.err;
  }

  const test::TempFolder folder;
  const test::ScopedVariable runtime{"XDG_RUNTIME_DIR", folder.path().string()};
  const test::ScopedVariable sound{"TONADEX_SOUND", "ninguno"};
  const test::ScopedVariable home{"TONADEX_HOME", folder.path().string()};
};

TEST_F(ReproducirTest, PlaysToTheEndAndTellsWhatIsWrong) {
  EXPECT_EQ(Play("Vals:d=16,o=5,b=225:c,cjuh9hay,e"),
            std::string("0 Reproduciendo Vals\n! ") + kSilentNote);
  EXPECT_EQ(Play("Vals:d=16,o=5,b=225:c,4,e"),
            std::string("1 Reproduciendo Vals\n! "
                        "-: Error encontrado al separar la nota #2\n"
                        "Comprueba que el RTTL sea correcto\n\n"
                        "Asegurate también de que no hay dos\ncomas (,,) consecutivas\n"
                        "-: no es RTTTL correcto; prueba con «tonadex-cli arreglar»\n") +
                kSilentNote);
  EXPECT_TRUE(Play("Vals:d=16,o=5,b=0:c").starts_with("1 ! "));
  EXPECT_TRUE(std::filesystem::is_empty(folder / "tonadex"));  // no MIDI file is left
}

// Reports when the melody is announced: an earlier signal would end the test.
class Announcement : public std::stringbuf {
 public:
  int sync() override {
    std::call_once(once_, [this] { made_.set_value(); });
    return 0;
  }
  void Wait() { made_.get_future().wait(); }

 private:
  std::once_flag once_;
  std::promise<void> made_;
};

TEST_F(ReproducirTest, InterruptEndsIt) {
  for (const int signal : {SIGINT, SIGTERM}) {
    const auto begun = std::chrono::steady_clock::now();
    Announcement announcement;
    std::ostream out(&announcement);
    std::ostringstream err;
    const std::jthread user([&announcement, signal] {
      announcement.Wait();
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
      ::kill(::getpid(), signal);
    });
    std::istringstream in("Largo:d=1,o=5,b=60:c,c,c,c,c,c");
    EXPECT_EQ(cli::Run(3, std::array{"tonadex-cli", "reproducir", "-"}.data(), in, out, err,
                       test::kHeavyCommands),
              130);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(10));  // of 24 s
  }
}

TEST_F(ReproducirTest, WritesASoundFileOnlyForAWholeMelody) {
  const std::string good = (folder / "bien.wav").string(), bad = (folder / "mal.wav").string();
  const std::string nowhere = (folder / "no/m.wav").string();
  EXPECT_EQ(Play("Vals:d=4,o=5,b=225:c", {"--wav", good}), "0 ! ");
  EXPECT_GT(std::filesystem::file_size(good), 10'000u);
  const std::string beep = (folder / "pitido.wav").string();
  EXPECT_EQ(Play("Vals:d=4,o=5,b=225:c", {"--pitido", "--wav", beep}), "0 ! ");
  EXPECT_NE(folder.Read("pitido.wav"), folder.Read("bien.wav"));
  // The instrument chosen in the window, unless an option overrides it.
  folder.Write("estado.ini", "sonido.pitido=1\n");
  const std::string chosen = (folder / "elegido.wav").string();
  EXPECT_EQ(Play("Vals:d=4,o=5,b=225:c", {"--wav", chosen}), "0 ! ");
  EXPECT_EQ(folder.Read("elegido.wav"), folder.Read("pitido.wav"));
  EXPECT_EQ(Play("Vals:d=4,o=5,b=225:c", {"--instrumento", "--wav", chosen}), "0 ! ");
  EXPECT_EQ(folder.Read("elegido.wav"), folder.Read("bien.wav"));
  EXPECT_EQ(Play("Vals:d=4,o=5,b=225:c,4", {"--wav", bad}).front(), '1');
  EXPECT_FALSE(std::filesystem::exists(bad));
  EXPECT_EQ(Play("Vals:d=4,o=5,b=225:c", {"--wav", nowhere}),
            "3 ! tonadex-cli: " + nowhere + ": no se puede escribir el fichero de sonido\n");
}

}  // namespace tonadex::cli::play_command_test
