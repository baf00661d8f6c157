#include <CLI/CLI.hpp>
#include <array>
#include <vector>

#include "cli/context.h"

namespace tonadex::cli {
namespace {

constexpr std::string_view kFooter =
    "Códigos de salida: 0 hecho, 1 la melodía no se puede convertir, 2 uso incorrecto,\n"
    "3 ha fallado un fichero o el sistema.";

void NameOptionGroup(CLI::App& app) {
  for (CLI::Option* option : app.get_options()) {
    if (!option->get_positional()) {
      option->group("Opciones");
    }
  }
}

// The words that CLI11 puts into its help, in Spanish.
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

// The arguments as CLI11 wants them, last first; "--option=" becomes the option and an empty value,
// which CLI11 would look for in the next argument.
std::vector<std::string> Arguments(int argc, const char* const* argv) {
  std::vector<std::string> arguments;
  for (int i = argc - 1; i > 0; --i) {
    std::string argument = argv[i];
    if (argument.starts_with("--") && argument.ends_with('=')) {
      arguments.emplace_back();
      argument.pop_back();
    }
    arguments.push_back(std::move(argument));
  }
  return arguments;
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
  const std::string detail = error.what();
  const std::size_t colon = detail.find(": ");
  const std::size_t space = detail.find(' ');
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError)) {
    return colon == std::string::npos ? "" : detail.substr(colon + 2);
  }
  const std::string first = detail.substr(0, std::min(colon, space));
  return first == "A" || first == "The" ? "" : first;
}

int ReportUse(const CLI::ParseError& error, Context& context) {
  std::string words = "uso incorrecto";
  for (const ErrorWords& known : kErrorWords) {
    if (known.code == error.get_exit_code()) {
      words = known.words;
    }
  }
  const std::string culprit = Culprit(error);
  Fail(context, ExitCode::kWrongUse,
       words + (culprit.empty() ? "" : ": " + culprit) + "\nPrueba «tonadex-cli --help».");
  return static_cast<int>(context.exitCode);
}

}  // namespace

int Run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err) {
  Context context{in, out, err};
  CLI::App app("Tonadex en el terminal: melodías RTTTL para móviles de antes.", "tonadex-cli");
  app.set_version_flag("--version", "tonadex-cli " TONADEX_VERSION, "Muestra la versión");
  app.footer(std::string(kFooter));
  app.require_subcommand(1);
  AddModelos(app, context);
  AddConvertir(app, context);
  AddComprobar(app, context);
  AddMidi(app, context);
#ifdef TONADEX_CLI_PLAY
  AddReproducir(app, context);
#endif
#ifdef TONADEX_CLI_NETWORK
  AddNetwork(app, context);
#endif
#ifdef TONADEX_CLI_PRINT
  AddImprimir(app, context);
#endif
  TranslateHelp(app);
  try {
    app.parse(Arguments(argc, argv));
  } catch (const CLI::Success& success) {  // --help, --version
    app.exit(success, out, err);
    return static_cast<int>(ExitCode::kDone);
  } catch (const CLI::ParseError& error) {
    return ReportUse(error, context);
  } catch (const std::exception& error) {
    Fail(context, ExitCode::kSystemFailed, "error inesperado: " + WordsOf(error));
  }
  if (!out.flush()) {
    Fail(context, ExitCode::kSystemFailed, "no se puede escribir el resultado");
  }
  return static_cast<int>(context.exitCode);
}

}  // namespace tonadex::cli
