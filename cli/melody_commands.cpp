// modelos, comprobar and midi.

#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/context.h"
#include "cli/shared_options.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "midi/mMidiLibOut.h"
#include "phones/catalogue.h"

namespace tonadex::cli {
namespace {

void PrintModels(Context& context, const std::string& brand, bool json) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  const std::string wanted = core::ToLower(core::FromUtf8(brand));
  std::string_view lastBrand;
  for (const phones::CatalogueRow& row : phones::CatalogueRows()) {
    if (!wanted.empty() && core::ToLower(row.brand) != wanted) {
      continue;
    }
    if (json) {
      list.push_back({{"marca", row.brand}, {"modelo", row.model}, {"formato", row.code}});
    } else {
      context.out << (row.brand == lastBrand ? "" : std::string(row.brand) + "\n") << "  \""
                  << row.model << "\"\n";
    }
    lastBrand = row.brand;
  }
  if (json) {
    context.out << list.dump(1) << '\n';
  }
  if (lastBrand.empty()) {
    Fail(context, ExitCode::kWrongUse, "el catálogo no tiene la marca «" + brand + "»");
  }
}

void Check(Context& context, const std::vector<std::string>& files) {
  for (const std::string& file : FilesOrInput(files)) {
    MelodyInput input;
    core::RTTTLMelody melody;
    if (ReadMelody(context, file, input) && ParseMelody(context, input, melody)) {
      context.out << file << ": correcto, " << melody.Notes.size() << " notas y pausas\n";
    }
  }
}

void SaveMidi(Context& context, const std::string& file, const std::string& output) {
  MelodyInput input;
  core::RTTTLMelody melody;
  if (!ReadMelody(context, file, input) || !ParseMelody(context, input, melody)) {
    return;
  }
  try {
    midi::MidiFileBytes(melody);
  } catch (const core::RunTimeError& error) {
    Fail(context, ExitCode::kNotConverted, file + ": " + core::ToUtf8(error.what()));
    return;
  }
  melody.FileName = core::FromUtf8(output);
  if (midi::WriteMidiFile(melody) != midi::kMidiWritten) {
    Fail(context, ExitCode::kSystemFailed, "no se puede escribir el fichero «" + output + "»");
  }
}

}  // namespace

void AddModelos(CLI::App& app, Context& context) {
  struct Options {
    std::string brand;
    bool json = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App& command = *app.add_subcommand("modelos", "Lista las marcas y modelos del catálogo");
  command.add_option("--marca", options->brand, "Solo los de esta marca")->type_name("MARCA");
  command.add_flag("--json", options->json, "En JSON");
  command.callback([&context, options] { PrintModels(context, options->brand, options->json); });
}

void AddComprobar(CLI::App& app, Context& context) {
  auto files = std::make_shared<std::vector<std::string>>();
  CLI::App& command = *app.add_subcommand("comprobar", "Dice qué está mal en una melodía RTTTL");
  AddMelodies(command, *files);
  command.callback([&context, files] { Check(context, *files); });
}

void AddMidi(CLI::App& app, Context& context) {
  struct Options {
    std::string file, output;
  };
  auto options = std::make_shared<Options>();
  CLI::App& command = *app.add_subcommand("midi", "Graba una melodía como fichero MIDI");
  AddMelody(command, options->file);
  command.add_option("-o,--salida", options->output, "Fichero MIDI que se escribe")
      ->type_name("SALIDA")
      ->required();
  command.callback([&context, options] { SaveMidi(context, options->file, options->output); });
}

}  // namespace tonadex::cli
