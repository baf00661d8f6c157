#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

// The command line of a terminal program, described as data. Texts are UTF-8.
namespace tonadex::terminal {

struct Option {
  std::string names;      // "-o,--salida"; without dashes an argument that is known by its place
  std::string valueName;  // in the help; empty for a flag
  std::string help;
  // Receives what was typed. Help shows the number or text that it holds before as the default; an
  // optional tells a missing option from an empty value.
  std::variant<bool*, std::uint16_t*, std::string*, std::optional<std::string>*,
               std::vector<std::string>*>
      value;
  bool required = false;
};

struct Command {
  std::string name, help;
  std::vector<Option> options;
  std::function<int()> run;  // gives the exit code
  std::string footer = {};   // below the help; without one a command has the program's
};

// `self` is the program as a whole; it is run when there are no commands to choose from.
struct Program {
  Command self;
  std::vector<Command> commands = {};
};

inline constexpr int kWrongArguments = 2;

// Reads the arguments (without the program's name) and runs the command that they choose. Gives its
// exit code; 0 after help or version; kWrongArguments when they make no sense, which `err` explains
// in Spanish. What the command throws is passed on.
int Run(const Program& program, std::vector<std::string> arguments, std::ostream& out,
        std::ostream& err);

}  // namespace tonadex::terminal
