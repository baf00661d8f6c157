#include <CLI/CLI.hpp>
#include <fstream>
#include <memory>

#include "cli/context.h"
#include "cli/convert_line.h"
#include "cli/line_stream.h"
#include "cli/shared_options.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/write.h"
#include "phones/catalogue.h"
#include "phones/formats.h"

namespace tonadex::cli {
namespace {

struct ConvertOptions {
  PhoneChoice phone;
  std::string row, saveFile;
  bool allModels = false, json = false, lines = false, resultOnly = false;
  std::vector<std::string> files;
  const CLI::Option* saveOption = nullptr;
};

std::vector<std::string> ChosenModels(Context& context, const ConvertOptions& options) {
  if (options.allModels) {
    std::vector<std::string> models;
    for (const phones::CatalogueRow& row : phones::CatalogueRows()) {
      models.emplace_back(row.model);
    }
    return models;
  }
  const auto model = ChosenModel(context, options.phone);
  return model ? std::vector{*model} : std::vector<std::string>();
}

void PrintPage(Context& context, const phones::ConversionPage& page, bool resultOnly) {
  if (resultOnly) {
    context.out << ForTerminal(page.result) << '\n';
    return;
  }
  if (!page.title.empty()) {
    context.out << ForTerminal(page.title) << "\n\n" << ForTerminal(page.result) << "\n\n";
  }
  context.out << ForTerminal(page.notices);
  context.out << (page.notices.ends_with('\n') ? "" : "\n");
  if (!page.tempo.empty()) {
    context.out << "Tempo: " << ForTerminal(page.tempo) << '\n';
  }
}

// A text result goes to --salida too; the writers of files have used it already. Where there is
// none, the file keeps what it holds.
void SaveResult(Context& context, const ConvertOptions& options, const std::string& model,
                const phones::ConversionPage& page) {
  if (options.saveFile.empty() || page.result.empty() || phones::SavesFile(model)) {
    return;
  }
  try {
    files::WriteBytes(ArgumentPath(options.saveFile), core::ToUtf8(page.result));
  } catch (const core::RunTimeError& error) {
    Fail(context, ExitCode::kSystemFailed, core::ToUtf8(error.what()));
  }
}

// The exit code of a conversion; a phone that asks for a file is passed over among all of them.
ExitCode CodeOf(phones::Outcome outcome, bool allModels) {
  switch (outcome) {
    case phones::Outcome::kConverted:
      return ExitCode::kDone;
    case phones::Outcome::kCancelled:
      return allModels ? ExitCode::kDone : ExitCode::kNotConverted;
    case phones::Outcome::kDiskFailure:
      return ExitCode::kSystemFailed;
    default:
      return ExitCode::kNotConverted;
  }
}

void ConvertOne(Context& context, const ConvertOptions& options, const MelodyInput& input,
                const std::string& model) {
  using phones::Outcome;
  core::RTTTLMelody melody;
  std::optional<std::string> file;
  if (!options.saveFile.empty()) {
    file = core::FromUtf8(options.saveFile);
  }
  const std::string row = options.row.empty() ? input.row : core::FromUtf8(options.row);
  const auto conversion = ConvertLine(melody, input.line, model, row, file);
  Fail(context, CodeOf(conversion.outcome, options.allModels));
  if (options.json) {
    context.out << ConversionJson(conversion, input.name, model);
  } else {
    ShowMessages(context, conversion.messages);
    if (conversion.page) {
      PrintPage(context, *conversion.page, options.resultOnly);
    }
  }
  if (conversion.outcome == Outcome::kNoModel) {
    Fail(context, ExitCode::kNotConverted,
         "«" + core::ToUtf8(model) + "» no es un modelo del catálogo; mira «tonadex-cli modelos»");
  } else if (conversion.outcome == Outcome::kCancelled) {
    context.err << "tonadex-cli: \"" << core::ToUtf8(model)
                << "\" graba un fichero: indica dónde con --salida FICHERO\n";
  } else if (conversion.page) {
    SaveResult(context, options, model, *conversion.page);
  }
}

void ConvertFiles(Context& context, const ConvertOptions& options,
                  const std::vector<std::string>& models) {
  const std::vector<std::string> files = FilesOrInput(options.files);
  if (options.saveOption->count() > 0 && files.size() * models.size() > 1) {
    Fail(context, ExitCode::kWrongUse, "--salida sirve para una sola melodía y un solo modelo");
    return;
  }
  bool first = true;
  for (const std::string& file : files) {
    MelodyInput input;
    if (!ReadMelody(context, file, input)) {
      continue;
    }
    for (const std::string& model : models) {
      if (!first && !options.json && !options.resultOnly) {
        context.out << "\n----\n\n";
      }
      first = false;
      ConvertOne(context, options, input, model);
    }
  }
}

void ConvertLineFiles(Context& context, const ConvertOptions& options,
                      const std::vector<std::string>& models) {
  if (models.size() != 1 || options.saveOption->count() > 0) {
    Fail(context, ExitCode::kWrongUse, "--lineas pide un solo modelo y no admite --salida");
    return;
  }
  const std::string row = core::FromUtf8(options.row);
  for (const std::string& file : FilesOrInput(options.files)) {
    std::ifstream opened;
    if (file != "-") {
      opened = OpenArgument(context, file);
      if (!opened) {
        continue;
      }
    }
    if (!ConvertLines(file == "-" ? context.in : opened, context.out, models.front(), row)) {
      Fail(context, ExitCode::kSystemFailed, "no se puede escribir el resultado");
      return;
    }
  }
}

void Convert(Context& context, const ConvertOptions& options) {
  if (options.allModels ? options.phone.IsGiven() : !options.phone.IsOne()) {
    Fail(context, ExitCode::kWrongUse, "elige el móvil con --telefono, --modelo o --todos");
    return;
  }
  const std::vector<std::string> models = ChosenModels(context, options);
  if (models.empty()) {
    return;
  }
  if (options.lines) {
    ConvertLineFiles(context, options, models);
  } else {
    ConvertFiles(context, options, models);
  }
}

}  // namespace

void AddConvertir(CLI::App& app, Context& context) {
  auto options = std::make_shared<ConvertOptions>();
  CLI::App& command = *app.add_subcommand(
      "convertir", "Convierte melodías en lo que acepta un móvil (título, resultado y avisos)");
  AddPhone(command, options->phone);
  command.add_flag("--todos", options->allModels, "Convierte para todos los modelos del catálogo");
  command.add_option("--fila", options->row, "Nombre de la melodía en el título")
      ->type_name("TEXTO");
  options->saveOption =
      command.add_option("-o,--salida", options->saveFile, "Fichero en el que grabar el resultado")
          ->type_name("FICHERO");
  command.add_flag("--json", options->json, "Un objeto JSON por melodía y modelo");
  command.add_flag("--solo-resultado", options->resultOnly, "Muestra solo el resultado");
  command.add_flag("--lineas", options->lines,
                   "Cada línea es una melodía: un objeto JSON por línea, en orden");
  AddMelodies(command, options->files);
  command.callback([&context, options] { Convert(context, *options); });
}

}  // namespace tonadex::cli
