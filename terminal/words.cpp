#include "terminal/words.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

namespace tonadex::terminal {
namespace {

void NameOptionGroup(CLI::App& app) {
  for (CLI::Option* option : app.get_options()) {
    if (!option->get_positional()) {
      option->group("Opciones");
    }
  }
}

struct ErrorWords {
  int code;
  std::string_view words;
};

// What is said of CLI11's errors; its own English detail is left out where it adds nothing.
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

// The option or argument that an error is about, as its message names it.
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

}  // namespace

void TranslateHelp(CLI::App& app) {
  const auto formatter = std::make_shared<CLI::Formatter>();
  formatter->label("Usage", "Uso");
  formatter->label("OPTIONS", "OPCIONES");
  formatter->label("SUBCOMMAND", "ORDEN");
  formatter->label("REQUIRED", "(obligatorio)");
  formatter->label("Positionals", "Argumentos");
  formatter->label("TEXT", "TEXTO");
  formatter->column_width(34);
  app.formatter(formatter);
  app.set_help_flag("-h,--help", "Muestra esta ayuda");
  NameOptionGroup(app);
  for (CLI::App* command : app.get_subcommands([](CLI::App*) { return true; })) {
    command->formatter(formatter);
    command->set_help_flag("-h,--help", "Muestra esta ayuda");
    command->group("Órdenes");
    NameOptionGroup(*command);
  }
}

std::string UseError(const CLI::ParseError& error) {
  std::string words = "uso incorrecto";
  for (const ErrorWords& known : kErrorWords) {
    if (known.code == error.get_exit_code()) {
      words = known.words;
    }
  }
  const std::string culprit = Culprit(error);
  return words + (culprit.empty() ? "" : ": " + culprit);
}

}  // namespace tonadex::terminal
