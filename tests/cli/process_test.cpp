// The program as a process, with real pipes.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <tuple>
#include <vector>

#include "tests/support/temp_folder.h"

namespace tonadex::cli {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr long kMoreKiB = 400 * 1024;  // the sanitizer keeps freed memory and shadow memory
#else
constexpr long kMoreKiB = 11 * 1024;
#endif

struct Ended {
  int code = -1;
  long peakKiB = 0;
};

// Runs the program with the file as standard input; its output is discarded.
Ended RunOn(const std::string& file, std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), TONADEX_CLI);
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    dup2(open(file.c_str(), O_RDONLY), 0);
    dup2(open("/dev/null", O_WRONLY), 1);
    dup2(1, 2);
    execv(TONADEX_CLI, const_cast<char* const*>(arguments.data()));
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, usage.ru_maxrss};
}

TEST(CliProcess, HugeInputTakesLittleMemory) {
  const test::TempFolder folder;
  folder.Write("huge", "x");
  std::filesystem::resize_file(folder / "huge", 100'000'000);  // NULs, and no line end
  const std::string huge = (folder / "huge").string();
  const std::string many = (folder / "many").string();
  ASSERT_EQ(std::system(("yes x:d=4,o=5,b=9:c | head -c 1600000 > " + many).c_str()), 0);
  const long libraries = RunOn("/dev/null", {"--version"}).peakKiB;
  for (const auto& [input, arguments, code] :
       {std::tuple{huge, std::vector{"convertir", "-t", "3310"}, 1},
        {huge, {"convertir", "-t", "3310", "--lineas"}, 0},
        {many, {"convertir", "-t", "3310", "--lineas"}, 0}}) {
    const Ended ended = RunOn(input, arguments);
    EXPECT_EQ(ended.code, code);
    EXPECT_LT(ended.peakKiB, libraries + kMoreKiB);
  }
}

TEST(CliProcess, AnswersThroughAPipeThatStaysOpen) {
  const test::TempFolder folder;
  const std::string answer = (folder / "answer").string();
  // The input stays open until the answer has arrived, 20 s at most.
  const std::string command = "{ echo x:d=4,o=5,b=9:c; for i in $(seq 200); do test -s " + answer +
                              " && break; sleep 0.1; done; test -s " + answer + " || touch " +
                              answer + ".late; } | " TONADEX_CLI " convertir -t 3310 --lineas > " +
                              answer;
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_FALSE(std::filesystem::exists(answer + ".late"));
}

TEST(CliProcess, EndsWhenItsReaderLeaves) {
  const test::TempFolder folder;
  const std::string code = (folder / "code").string();
  EXPECT_EQ(std::system(("yes x:d=4,o=5,b=9:c | { timeout 60 " TONADEX_CLI
                         " convertir -t 3310 --lineas; echo $? > " +
                         code + "; } | head -n 1 > /dev/null")
                            .c_str()),
            0);
  const std::string ended = folder.Read("code");
  EXPECT_TRUE(ended == "3\n" || ended == "141\n") << ended << " (141: the broken pipe's signal)";
  EXPECT_EQ(std::system(TONADEX_CLI " modelos > /dev/full 2> /dev/null; test $? -eq 3"), 0);
  EXPECT_EQ(std::system("yes x:d=4,o=5,b=9:c | timeout 60 " TONADEX_CLI " convertir -t 3310 "
                        "--lineas > /dev/full 2> /dev/null; test $? -eq 3"),
            0);
}

TEST(CliProcess, KeepsTheOldFileWhenItCannotWriteTheNewOne) {
  const test::TempFolder folder;
  folder.Write("m", "x:d=4,o=5,b=100:c");
  const std::string base = folder.path().string() + "/";
  const std::tuple<const char*, const char*, int> cases[] = {
      {"ulimit -f 0", "convertir -t 3310", 3},
      {"ulimit -f 0", "convertir -m ' KWS'", 3},
      {"ulimit -f 0", "midi", 3},
      {"true", "convertir -m 'no such model'", 1},
  };
  for (const auto& [disk, command, code] : cases) {
    folder.Write("old", "old");
    const std::string line = "trap '' XFSZ; " + std::string(disk) + "; " TONADEX_CLI " " + command +
                             " -o " + base + "old " + base + "m > /dev/null 2>&1";
    EXPECT_EQ(WEXITSTATUS(std::system(line.c_str())), code) << command;
    EXPECT_EQ(folder.Read("old"), "old") << command;
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
}

}  // namespace
}  // namespace tonadex::cli
