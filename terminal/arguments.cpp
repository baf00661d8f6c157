#include "terminal/arguments.h"

// The only source that includes CLI11, which takes seconds to compile.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <string_view>

namespace tonadex::terminal {
namespace {

struct ErrorWords {
  int code;
  std::string_view words;
};

// Spanish messages for CLI11's errors. Its English detail is left out where it adds nothing.
constexpr std::array kErrorWords = std::to_array<ErrorWords>({
    {static_cast<int>(CLI::ExitCodes::RequiredError), "falta un argumento o una orden"},
    {static_cast<int>(CLI::ExitCodes::ExtrasError), "hay un argumento que no se entiende"},
    {static_cast<int>(CLI::ExitCodes::ArgumentMismatch),
     "a una opción le falta o le sobra un valor"},
    {static_cast<int>(CLI::ExitCodes::ConversionError), "el valor de una opción no es válido"},
    {static_cast<int>(CLI::ExitCodes::ValidationError), "el valor de una opción no es válido"},
    {static_cast<int>(CLI::ExitCodes::ExcludesError), "hay dos opciones que no van juntas"},
    {static_cast<int>(CLI::ExitCodes::RequiresError), "una opción necesita otra"},
});

// The option or argument that caused an error, as in CLI11's message.
std::string Culprit(const CLI::ParseError& error) {
  const auto is = [&error](CLI::ExitCodes code) {
    return error.get_exit_code() == static_cast<int>(code);
  };
  std::string detail = error.what();
  const std::size_t colon = detail.find(": ");
  if (colon != std::string::npos &&
      (is(CLI::ExitCodes::ExtrasError) || is(CLI::ExitCodes::ConversionError))) {
    detail.erase(0, colon + 2);  // "Could not convert: --puerto = mucho"
  }
  if (is(CLI::ExitCodes::ExtrasError)) {
    return detail;
  }
  const std::string first = detail.substr(0, detail.find_first_of(": "));
  return first == "A" || first == "The" ? "" : first;
}

// The error and its cause: "hay un argumento que no se entiende: --x".
std::string UseError(const CLI::ParseError& error, const std::string& culprit) {
  std::string words = "uso incorrecto";
  for (const ErrorWords& known : kErrorWords) {
    if (known.code == error.get_exit_code()) {
      words = known.words;
    }
  }
  return words + (culprit.empty() ? "" : ": " + culprit);
}

// The option, or the environment variable that its value came from.
std::string Source(const std::string& option, const CLI::App& app,
                   const std::vector<std::string>& given) {
  const CLI::Option* known = app.get_option_no_throw(option);
  const bool typed = std::ranges::any_of(
      given, [&option](const std::string& argument) { return argument.starts_with(option); });
  return known == nullptr || typed || known->get_envname().empty() ? option : known->get_envname();
}

std::string UseError(const CLI::ParseError& error, const CLI::App& app,
                     const std::vector<std::string>& given) {
  // CLI11 reports a missing command before unknown arguments; the unknown argument is the better
  // message.
  const std::vector<std::string> unknown = app.remaining();
  const bool noCommand = app.get_subcommands().empty() && !unknown.empty();
  return noCommand ? UseError(CLI::ExtrasError({unknown[0]}), unknown[0])
                   : UseError(error, Source(Culprit(error), app, given));
}

CLI::Option* AddOption(CLI::App& app, const Option& option, bool* value) {
  return app.add_flag(option.names, *value, option.help);
}

CLI::Option* AddOption(CLI::App& app, const Option& option, std::optional<std::string>* value) {
  // CLI11 itself would read an empty value into an optional as nullopt.
  return app.add_option_function<std::string>(
      option.names, [value](const std::string& text) { *value = text; }, option.help);
}

CLI::Option* AddOption(CLI::App& app, const Option& option, std::vector<std::string>* value) {
  return app.add_option(option.names, *value, option.help);
}

template <typename Value>
CLI::Option* AddOption(CLI::App& app, const Option& option, Value* value) {
  CLI::Option* added = app.add_option(option.names, *value, option.help);
  return *value == Value{} ? added : added->capture_default_str();  // 0 and "" are no defaults
}

std::shared_ptr<CLI::Formatter> SpanishHelp() {
  auto formatter = std::make_shared<CLI::Formatter>();
  formatter->label("Usage", "Uso");
  formatter->label("OPTIONS", "OPCIONES");
  formatter->label("SUBCOMMAND", "ORDEN");
  formatter->label("REQUIRED", "(obligatorio)");
  formatter->label("Env", "variable");
  formatter->label("Positionals", "Argumentos");
  formatter->column_width(34);
  return formatter;
}

std::string Variable(const std::string& prefix, const std::string& option) {
  std::string name = prefix;
  for (const char c : option.substr(option.rfind("--") + 2)) {
    name += c == '-' ? '_' : static_cast<char>(c & ~0x20);  // option names are in small letters
  }
  return name;
}

void Describe(CLI::App& app, const Command& command) {
  for (const Option& option : command.options) {
    CLI::Option* added =
        std::visit([&](auto* value) { return AddOption(app, option, value); }, option.value);
    added->required(option.required);
    if (option.least > 0) {
      const int most = std::numeric_limits<std::uint16_t>::max();
      added->check(CLI::Range(int{option.least}, most).description(""));
    }
    if (!command.variables.empty()) {
      added->envname(Variable(command.variables, option.names));
    }
    if (!option.valueName.empty()) {
      added->type_name(option.valueName);
    }
  }
  if (!command.footer.empty()) {
    app.footer(command.footer);
  }
  app.set_help_flag("-h,--help", "Muestra esta ayuda");
  for (CLI::Option* option : app.get_options()) {
    if (!option->get_positional()) {
      option->group("Opciones");
    }
  }
}

}  // namespace

int Run(const Program& program, const std::vector<std::string>& arguments, std::ostream& out,
        std::ostream& err) {
  const std::string& name = program.self.name;
  CLI::App app(program.self.help, name);
  app.formatter(SpanishHelp());  // the commands inherit it
  app.set_version_flag("--version", name + " " TONADEX_VERSION, "Muestra la versión");
  Describe(app, program.self);
  app.require_subcommand(program.commands.empty() ? 0 : 1);
  const Command* chosen = &program.self;
  for (const Command& command : program.commands) {
    CLI::App& added = *app.add_subcommand(command.name, command.help);
    added.group("Órdenes");
    added.callback([&chosen, &command] { chosen = &command; });
    Describe(added, command);
  }
  try {
    std::vector<std::string> backwards(arguments.rbegin(), arguments.rend());  // as CLI11 expects
    app.parse(std::move(backwards));
  } catch (const CLI::Success& success) {  // --help, --version
    return app.exit(success, out, err);
  } catch (const CLI::ParseError& error) {
    err << name << ": " << UseError(error, app, arguments) << "\nPrueba «" << name << " --help»."
        << std::endl;
    return kWrongArguments;
  }
  return chosen->run();
}

}  // namespace tonadex::terminal
