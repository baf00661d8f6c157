// tonadex-server as a process: killed, stopped, started twice.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <future>
#include <regex>
#include <string>
#include <vector>

#include "core/melody_file.h"
#include "core/text.h"
#include "net/upload.h"
#include "server/embedded_server.h"
#include "tests/server/ask.h"
#include "tests/support/parsed_listing.h"
#include "tests/support/temp_folder.h"

#ifdef TONADEX_SERVER_PROGRAM

namespace tonadex::server {
namespace {

using std::string;
using test::Ask;
using test::TempFolder;

class Program {
 public:
  // The log goes to standard error, which `setError` may redirect, or to the file "log".
  explicit Program(const TempFolder& home, void (*setError)() = nullptr) : process_(::fork()) {
    if (process_ == 0) {
      ::dup2(::open((home / "said").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644), 1);
      ::dup2(1, 2);
      setError == nullptr ? void() : setError();
      ::execl(TONADEX_SERVER_PROGRAM, "tonadex-server", "--puerto", "0", "--proxy", "--carpeta",
              (home / "servidor").c_str(), "--registro",
              setError == nullptr ? (home / "log").c_str() : "", "--estanteria", "", nullptr);
      ::_exit(127);
    }
  }
  ~Program() {
    if (process_ > 0) {
      End(SIGKILL);
    }
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void Signal(int signal) const { ::kill(process_, signal); }
  // The exit code, or minus the number of the signal that ended it.
  int End(int signal) {
    ::kill(process_, signal);
    return Wait();
  }
  int Wait() {
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

 private:
  pid_t process_;
};

// The port of the started program; 0 if it does not start.
std::uint16_t WaitForPort(const TempFolder& home) {
  test::Eventually([&] { return PublishedPort(home / "servidor").has_value(); });
  return PublishedPort(home / "servidor").value_or(0);
}

string MelodyText(const string& name) {
  return name + ":d=4,o=5,b=100:" + string(3000, ' ') + "c,d,e,ajuh9hay";
}

string KeyOf(const string& name) {
  string text = MelodyText(name);
  return net::UploadKey(name, core::ReplaceAll(text, core::kSharpEscape, "#"));
}

// Uploads melodies until the server is gone; returns the acknowledged names.
std::vector<string> UploadUntilGone(std::uint16_t port, const string& prefix,
                                    std::atomic<int>& uploads) {
  std::vector<string> acknowledged;
  for (int i = 0;; ++i) {
    const string name = prefix + std::to_string(i) + "a";
    try {
      const string reply =
          Ask(port, "/uploadertonos.php?filename=" + KeyOf(name) + "&contents=" + MelodyText(name),
              "X-Forwarded-For: 2001:" + std::to_string(i) + "::1\r\n");
      if (!reply.starts_with("200 ")) {
        return acknowledged;
      }
    } catch (const std::runtime_error&) {
      return acknowledged;
    }
    acknowledged.push_back(name);
    ++uploads;
  }
}

TEST(ServerProgram, LosesNothingAcknowledgedWhenKilledAndServesNothingHalf) {
  constexpr int kUploadsBeforeKill = 12;  // per round; each waits for the disk
  const TempFolder home;
  std::vector<string> acknowledged;
  for (int round = 0; round < 4; ++round) {
    Program program(home);
    const std::uint16_t port = WaitForPort(home);
    ASSERT_NE(port, 0);
    std::atomic<int> uploads = 0;
    std::vector<std::future<std::vector<string>>> clients;
    for (int client = 0; client < 4; ++client) {
      clients.push_back(std::async(std::launch::async, [&, client] {
        return UploadUntilGone(port, "r" + std::to_string(round * 4 + client) + "n", uploads);
      }));
    }
    test::Eventually([&] { return uploads >= kUploadsBeforeKill; });
    EXPECT_EQ(program.End(SIGKILL), -SIGKILL);
    for (auto& client : clients) {
      std::ranges::copy(client.get(), std::back_inserter(acknowledged));
    }
    WithdrawPort(home / "servidor");  // so that the next round waits for its own port
  }
  ASSERT_GE(acknowledged.size(), 4u * kUploadsBeforeKill);

  Program program(home);
  const std::uint16_t port = WaitForPort(home);
  ASSERT_NE(port, 0);
  for (const string& name : acknowledged) {
    EXPECT_EQ(Ask(port, "/tonos/" + KeyOf(name)), "200 " + MelodyText(name));
  }
  for (const auto& row : net::ParseListing(Ask(port, "/todoslostonos.php").substr(4), true).rows) {
    EXPECT_EQ(Ask(port, "/tonos/" + KeyOf(row.text)), "200 " + MelodyText(row.text));
  }
}

TEST(ServerProgram, EndsCleanlyAndKeepsItsFolderToItself) {
  const TempFolder home;
  const string unfinished[] = {"servidor/.tdx-" + string(32, 'f'), "servidor/.subida-1"};
  for (const string& file : unfinished) {
    home.Write(file, "of a program that was killed");
  }
  ASSERT_EQ(::mkfifo((home / "servidor/.puerto").c_str(), 0600), 0);  // must not block
  Program program(home);
  const std::uint16_t port = WaitForPort(home);
  ASSERT_NE(port, 0);
  for (const string& file : unfinished) {
    EXPECT_FALSE(std::filesystem::exists(home / file)) << file;
  }
  EXPECT_EQ(Ask(port, "/azar.php"), "200 ");
  EXPECT_EQ(Program(home).Wait(), 1);
  EXPECT_EQ(Ask(port, "/mini.php?version=1").substr(0, 4), "200 ");
  home.Write("servidor/mano.29", "Mano:d=4");
  program.Signal(SIGHUP);
  EXPECT_TRUE(
      test::Eventually([&] { return Ask(port, "/todoslostonos.php") == "200 Mano (mano.29)498"; }));
  EXPECT_EQ(program.End(SIGTERM), 0);
  EXPECT_EQ(PublishedPort(home / "servidor"), std::nullopt);
  EXPECT_TRUE(std::regex_search(
      home.Read("log"),
      std::regex(
          R"((^|\n)\d{4}(-\d\d){2}T\d\d(:\d\d){2}\.\d{3}Z 127\.0\.0\.1 GET /azar\.php 200 0 \d+\.\d\d\n)")))
      << home.Read("log");
}

void CloseError() {
  ::close(2);
}

void LetNobodyReadError() {
  int ends[2];
  ::pipe2(ends, O_NONBLOCK);
  while (::write(ends[1], "x", 1) == 1) {
  }
  ::fcntl(ends[1], F_SETFL, 0);
  ::dup2(ends[1], 2);
}

void LetTheReaderOfErrorLeave() {
  int ends[2];
  ::pipe(ends);
  ::dup2(ends[1], 2);
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(ServerProgram, NeedsNobodyWhoReadsItsLog) {
  for (const auto setError : {CloseError, LetNobodyReadError, LetTheReaderOfErrorLeave}) {
    const TempFolder home;
    Program program(home, setError);
    const std::uint16_t port = WaitForPort(home);
    ASSERT_NE(port, 0);
    for (int i = 0; i < 10; ++i) {
      ASSERT_EQ(Ask(port, "/azar.php"), "200 ");
    }
    EXPECT_EQ(home.Read("servidor/.candado"), "");  // no file got the descriptor of a closed stream
    EXPECT_EQ(program.End(SIGTERM), 0);
  }
}

TEST(ServerProgram, SaysWhyItCannotStart) {
  const TempFolder home;
  home.Write("file", "");
  const test::RawServer other([](const test::RawSocket&) {});
  const string port = other.Base().substr(other.Base().rfind(':') + 1);
  const string folder = home.path().string();
  const struct {
    string arguments, says;
    int code;
  } cases[] = {
      {"--puerto " + port + " --carpeta " + folder + "/a",
       "no se puede escuchar en 127.0.0.1, puerto " + port + ": otro programa usa ya ese puerto",
       1},
      {"--puerto 0 --carpeta " + folder + "/file", "«" + folder + "/file»: no es una carpeta", 1},
      {"--puerto 0 --registro " + folder + " --carpeta " + folder + "/a",
       "no se puede escribir el registro «" + folder + "»", 1},
      {"--puerto mucho",
       "el valor de una opción no es válido: --puerto\nPrueba «tonadex-server --help».", 2},
  };
  for (const auto& c : cases) {
    const string command = TONADEX_SERVER_PROGRAM " --estanteria '' " + c.arguments + " 2> " +
                           folder + "/said > /dev/null";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), c.code);
    EXPECT_EQ(home.Read("said"), "tonadex-server: " + c.says + "\n");
  }
}

}  // namespace
}  // namespace tonadex::server

#endif
