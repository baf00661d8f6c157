#include <CLI/CLI.hpp>
#include <fstream>
#include <memory>

#include "cli/context.h"
#include "cli/conversion_record.h"
#include "cli/line_stream.h"
#include "cli/shared_options.h"
#include "core/phone_catalogue.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/write.h"
#include "midi/mMidiLibOut.h"

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
    for (const core::CatalogueRow& row : core::CatalogueRows()) {
      models.emplace_back(row.model);
    }
    return models;
  }
  const auto model = ChosenModel(context, options.phone);
  return model ? std::vector{*model} : std::vector<std::string>();
}

void PrintPage(Context& context, const core::ConversionPage& page, bool resultOnly) {
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
                const core::ConversionPage& page) {
  if (options.saveFile.empty() || page.result.empty() || core::SavesFile(model)) {
    return;
  }
  try {
    files::WriteBytes(ArgumentPath(options.saveFile), core::ToUtf8(page.result));
  } catch (const core::RunTimeError& error) {
    Fail(context, ExitCode::kSystemFailed, core::ToUtf8(error.what()));
  }
}

void PrintJson(Context& context, const MelodyInput& input, const std::string& model,
               const ConversionRecord& record) {
  nlohmann::ordered_json json = {{"fichero", input.name}, {"modelo", core::ToUtf8(model)}};
  json.update(ToJson(record));
  context.out << json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

// Whether the file could not be written, unlike a melody that gives no bytes to write.
bool FileFailed(const ConversionRecord& record, const core::RTTTLMelody& melody) {
  return !record.page && !record.messages.empty() &&
         record.messages.back().text.starts_with("Ocurrio un error al") &&
         core::SkipErrors([&melody] { midi::MidiFileBytes(melody); });
}

void ConvertOne(Context& context, const ConvertOptions& options, const MelodyInput& input,
                const std::string& model) {
  core::RTTTLMelody melody;
  std::optional<std::string> file;
  if (!options.saveFile.empty()) {
    file = core::FromUtf8(options.saveFile);
  }
  const std::string row = options.row.empty() ? input.row : core::FromUtf8(options.row);
  const ConversionRecord record = ConvertLine(melody, input.line, model, row, file);
  const bool cancelled = core::SavesFile(model) && !file;
  if (HasErrors(record) && !(cancelled && options.allModels)) {
    Fail(context, FileFailed(record, melody) ? ExitCode::kSystemFailed : ExitCode::kNotConverted);
  }
  if (options.json) {
    PrintJson(context, input, model, record);
  } else {
    ShowMessages(context, record.messages);
    if (record.page) {
      PrintPage(context, *record.page, options.resultOnly);
    }
  }
  if (record.page && record.page->title.empty()) {
    Fail(context, ExitCode::kNotConverted,
         "«" + core::ToUtf8(model) + "» no es un modelo del catálogo; mira «tonadex-cli modelos»");
  }
  if (cancelled) {
    context.err << "tonadex-cli: \"" << core::ToUtf8(model)
                << "\" graba un fichero: indica dónde con --salida FICHERO\n";
  }
  if (record.page) {
    SaveResult(context, options, model, *record.page);
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
