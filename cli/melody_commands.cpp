// modelos, comprobar, arreglar, transportar and midi.

#include <algorithm>

#include "cli/commands.h"
#include "core/melody_file.h"
#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/write.h"
#include "json/melody.h"
#include "json/text.h"
#include "midi/mMidiLibOut.h"
#include "phones/catalogue.h"
#include "phones/paste_signs.h"
#include "phones/rtttl_check.h"
#include "phones/rtttl_repair.h"
#include "phones/transpose.h"

namespace tonadex::cli {
namespace {

constexpr std::size_t kLongestPaste = std::size_t{16} << 20;
constexpr std::string_view kNoMelody = ": no hay ninguna melodía\n";

}  // namespace

void ListModels(Context& context, const Arguments& arguments) {
  json::JsonList list(context.out);
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

namespace {

// The first line and those that continue it: up to a blank line or another melody.
std::string_view FirstMelody(std::string_view text) {
  std::ptrdiff_t colons = 0;
  std::size_t melodyEnd = 0;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find_first_of(core::kCrLf, start), text.size());
    const std::string_view line = text.substr(start, end - start);
    const std::ptrdiff_t more = std::ranges::count(line, ':');
    if (start > 0 && (core::Trim(line).empty() || (colons > 1 && more > 0))) {
      break;
    }
    colons += more;
    melodyEnd = end;
    start = end + (text.substr(end).starts_with(core::kCrLf) ? 2 : 1);
  }
  return text.substr(0, melodyEnd);
}

}  // namespace

void Check(Context& context, const Arguments& arguments) {
  for (const std::string& file : FilesOrInput(arguments.words)) {
    Attempt(context, [&] {
      const std::string text = core::FromOutside(ReadText(context, file, kLongestPaste));
      const phones::MelodyCheck check =
          phones::CheckRtttl(core::UndoSharpEscape(FirstMelody(text)));
      if (check.verdict == phones::Verdict::kGood) {
        context.out << file << ": correcto, " << core::ToUtf8(check.sentence) << '\n';
        return;
      }
      Fail(context, ExitCode::kNotConverted);
      if (check.verdict == phones::Verdict::kNothing) {
        context.err << file << kNoMelody;
      }
      for (const phones::RtttlFault& fault : check.faults) {
        context.err << file << ": " << ForTerminal(fault.sentence) << '\n';
      }
    });
  }
}

void Repair(Context& context, const Arguments& arguments) {
  for (const std::string& file : FilesOrInput(arguments.words)) {
    Attempt(context, [&] {
      const auto melodies =
          phones::RepairRtttl(phones::FromPasted(ReadText(context, file, kLongestPaste)));
      for (const phones::RepairedMelody& melody : melodies) {
        if (arguments.json) {
          std::string object = "{" + json::JsonMembers({{"fichero", file}}) + ",";
          json::AppendRepair(object, melody);
          context.out << object << "}\n";
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

void Transpose(Context& context, const Arguments& arguments) {
  const auto semitones = core::FindInt32(arguments.semitones);
  if (!semitones) {
    throw Failure{ExitCode::kWrongUse,
                  "«" + arguments.semitones + "» no es un número de semitonos"};
  }
  for (const std::string& file : FilesOrInput(arguments.words)) {
    Attempt(context, [&] {
      const std::string text = core::UndoSharpEscape(ReadMelody(context, file).line);
      FailOnError(ExitCode::kNotConverted, file + ": ", [&] {
        context.out << ForTerminal(phones::Transposed(text, *semitones)) << '\n';
      });
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
