#include <CLI/CLI.hpp>
#include <vector>

#include "cli/context.h"
#include "terminal/words.h"

namespace tonadex::cli {
namespace {

constexpr std::string_view kFooter =
    "Códigos de salida: 0 hecho, 1 la melodía no se puede convertir, 2 uso incorrecto,\n"
    "3 ha fallado un fichero o el sistema.";

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

int ReportUse(const CLI::ParseError& error, const CLI::App& app, Context& context) {
  // Before it looks at words that it does not know, CLI11 misses a command.
  const std::vector<std::string> unknown = app.remaining();
  const bool noCommand = app.get_subcommands().empty() && !unknown.empty();
  const std::string words =
      noCommand ? terminal::UseError(CLI::ExtrasError({unknown[0]})) : terminal::UseError(error);
  Fail(context, ExitCode::kWrongUse, words + "\nPrueba «tonadex-cli --help».");
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
  terminal::TranslateHelp(app);
  try {
    app.parse(Arguments(argc, argv));
  } catch (const CLI::Success& success) {  // --help, --version
    app.exit(success, out, err);
    return static_cast<int>(ExitCode::kDone);
  } catch (const CLI::ParseError& error) {
    return ReportUse(error, app, context);
  } catch (const std::exception& error) {
    Fail(context, ExitCode::kSystemFailed, "error inesperado: " + WordsOf(error));
  }
  if (!out.flush()) {
    Fail(context, ExitCode::kSystemFailed, "no se puede escribir el resultado");
  }
  return static_cast<int>(context.exitCode);
}

}  // namespace tonadex::cli
