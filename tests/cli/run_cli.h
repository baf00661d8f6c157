#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "core/text.h"
#include "tests/core/table.h"

// Runs tonadex-cli in this process.
namespace tonadex::test {

// The commands that need large libraries run here too.
#ifdef _WIN32
constexpr cli::HeavyCommands kHeavyCommands = {nullptr, cli::Print};
#else
constexpr cli::HeavyCommands kHeavyCommands = {cli::PlayFile, cli::Print};
#endif

struct Outcome {
  int code = 0;
  std::string out, err;
};

inline Outcome RunCli(const std::vector<std::string>& arguments, std::string_view input = "") {
  std::vector<const char*> argv = {"tonadex-cli"};
  for (const std::string& argument : arguments) {
    argv.push_back(argument.c_str());
  }
  std::istringstream in{std::string(input)};
  std::ostringstream out, err;
  const int code =
      cli::Run(static_cast<int>(argv.size()), argv.data(), in, out, err, kHeavyCommands);
  return {code, out.str(), err.str()};
}

// Runs each row of the table: arguments, standard input, exit code, output, errors. "~" is a blank
// within an argument, "@" the folder with a slash, "*" any text that is not empty.
inline void ExpectRuns(std::string_view section, const std::string& folder) {
  for (Row row : Table(section)) {
    SCOPED_TRACE(row[0]);
    row.fields.resize(5);
    for (std::string& field : row.fields) {
      core::ReplaceAll(field, "@", folder);
    }
    std::vector<std::string> arguments;
    for (const std::string_view argument : core::SplitText(row[0], ' ')) {
      arguments.emplace_back(argument);
      core::ReplaceAll(arguments.back(), "~", " ");
    }
    const Outcome outcome = RunCli(arguments, row[1]);
    EXPECT_EQ(std::to_string(outcome.code), row[2]) << outcome.err;
    EXPECT_EQ(outcome.out.empty() || row[3] != "*" ? outcome.out : "*", row[3]);
    EXPECT_EQ(outcome.err.empty() || row[4] != "*" ? outcome.err : "*", row[4]);
  }
}

}  // namespace tonadex::test
