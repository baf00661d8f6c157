// modelos, comprobar and midi.

#include "cli/commands.h"
#include "cli/json.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/write.h"
#include "midi/mMidiLibOut.h"
#include "phones/catalogue.h"

namespace tonadex::cli {

void ListModels(Context& context, const Arguments& arguments) {
  JsonList list(context.out);
  const std::string wanted = core::ToLower(core::FromUtf8(arguments.brand));
  std::string_view lastBrand;
  for (const phones::CatalogueRow& row : phones::CatalogueRows()) {
    if (!wanted.empty() && core::ToLower(row.brand) != wanted) {
      continue;
    }
    if (arguments.json) {
      list.Add({{"marca", std::string(row.brand)},
                {"modelo", std::string(row.model)},
                {"formato", std::string(row.code)}});
    } else {
      context.out << (row.brand == lastBrand ? "" : std::string(row.brand) + "\n") << "  \""
                  << row.model << "\"\n";
    }
    lastBrand = row.brand;
  }
  if (arguments.json) {
    list.End();
  }
  if (lastBrand.empty()) {
    throw Failure{ExitCode::kWrongUse, "el catálogo no tiene la marca «" + arguments.brand + "»"};
  }
}

void Check(Context& context, const Arguments& arguments) {
  ForEachMelody(context, arguments.words, [&](const MelodyInput& input) {
    core::RTTTLMelody melody;
    if (ParseMelody(context, input, melody)) {
      context.out << input.name << ": correcto, " << melody.Notes.size() << " notas y pausas\n";
    }
  });
}

void SaveMidi(Context& context, const Arguments& arguments) {
  core::RTTTLMelody melody;
  if (!ParseMelody(context, ReadMelody(context, arguments.file), melody)) {
    return;
  }
  std::string bytes;
  FailOnError(ExitCode::kNotConverted, arguments.file + ": ",
              [&] { bytes = midi::MidiFileBytes(melody); });
  const std::string& output = *arguments.output;
  if (!core::SkipErrors([&] { files::WriteBytes(ArgumentPath(output), bytes); })) {
    throw Failure{ExitCode::kSystemFailed, "no se puede escribir el fichero «" + output + "»"};
  }
}

}  // namespace tonadex::cli
