#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

// The command line of a terminal program as data. Strings are UTF-8.
namespace tonadex::terminal {

struct Option {
  std::string names;      // "-o,--salida"; without dashes a positional argument
  std::string valueName;  // in the help; "" for a flag
  std::string help;
  // Receives the value. The help shows the initial number or string as the default, unless it is 0
  // or "". With an optional, a missing option differs from an empty value.
  std::variant<bool*, std::uint16_t*, std::string*, std::optional<std::string>*,
               std::vector<std::string>*>
      value;
  bool required = false;
  std::uint16_t least = 0;  // minimum of a number
};

struct Command {
  std::string name, help;
  std::vector<Option> options;
  std::function<int()> run;  // returns the exit code
  std::string footer = {};   // after the help; "" for the program's footer
  // Every option that is not given is taken from the environment variable with this prefix and the
  // option's name ("TONADEX_PUERTO" for --puerto; a flag is "1" or "0"). "" for no variables.
  std::string variables = {};
};

// `self` describes the program; it is run when there are no commands.
struct Program {
  Command self;
  std::vector<Command> commands = {};
};

inline constexpr int kWrongArguments = 2;

// Parses the arguments (without the program's name), runs the chosen command and returns its exit
// code; 0 after help or version; kWrongArguments for invalid arguments, explained in Spanish on
// `err`. Exceptions of the command propagate.
int Run(const Program& program, const std::vector<std::string>& arguments, std::ostream& out,
        std::ostream& err);

}  // namespace tonadex::terminal
