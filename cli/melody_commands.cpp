// modelos, comprobar, arreglar and midi.

#include "cli/commands.h"
#include "cli/json.h"
#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/write.h"
#include "midi/mMidiLibOut.h"
#include "phones/catalogue.h"
#include "phones/rtttl_check.h"
#include "phones/rtttl_repair.h"

namespace tonadex::cli {
namespace {

constexpr std::size_t kLongestPaste = std::size_t{16} << 20;
constexpr std::string_view kNoMelody = ": no hay ninguna melodía\n";

}  // namespace

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
    const phones::MelodyCheck check = phones::CheckRtttl(core::UndoSharpEscape(input.line));
    if (check.verdict == phones::Verdict::kGood) {
      context.out << input.name << ": correcto, " << core::ToUtf8(check.sentence) << '\n';
      return;
    }
    Fail(context, ExitCode::kNotConverted);
    if (check.verdict == phones::Verdict::kNothing) {
      context.err << input.name << kNoMelody;
    }
    for (const phones::RtttlFault& fault : check.faults) {
      context.err << input.name << ": " << ForTerminal(fault.sentence) << '\n';
    }
  });
}

namespace {

// {"fichero":…,"nombre":…,"rtttl":…,"cambios":[…]}
std::string RepairJson(const std::string& file, const phones::RepairedMelody& melody) {
  std::string json = "{" + JsonMembers({{"fichero", file},
                                        {"nombre", core::ToUtf8(melody.name)},
                                        {"rtttl", core::ToUtf8(melody.text)}});
  json += R"(,"cambios":[)";
  for (const std::string& change : melody.changes) {
    AppendJson(json += json.ends_with('[') ? "" : ",", change);
  }
  return json + "]}\n";
}

}  // namespace

void Repair(Context& context, const Arguments& arguments) {
  for (const std::string& file : FilesOrInput(arguments.words)) {
    Attempt(context, [&] {
      const auto melodies =
          phones::RepairRtttl(phones::FromPasted(ReadAll(context, file, kLongestPaste)));
      for (const phones::RepairedMelody& melody : melodies) {
        if (arguments.json) {
          context.out << RepairJson(file, melody);
          continue;
        }
        context.out << ForTerminal(melody.text) << '\n';
        for (const std::string& change : melody.changes) {
          context.err << file << ": " << ForTerminal(melody.name + ": " + change) << '\n';
        }
      }
      if (melodies.empty()) {
        context.err << file << kNoMelody;
        Fail(context, ExitCode::kNotConverted);
      }
    });
  }
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
