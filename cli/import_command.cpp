// The command importar, and convertir with --formato.

#include <filesystem>

#include "app/melody_store.h"
#include "app/save_melody.h"
#include "cli/commands.h"
#include "cli/import_files.h"
#include "cli/import_midi.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"
#include "files/write.h"
#include "net/file_name.h"
#include "phones/file_formats.h"
#include "platform/common/program_folder.h"

namespace tonadex::cli {
namespace {

namespace fs = std::filesystem;

void ShowLines(Context& context, const std::string& before, std::string_view lines) {
  for (const std::string_view line : core::SplitText(lines, '\n')) {
    if (!core::Trim(line).empty() && line != "\r") {
      context.err << before << ForTerminal(line.substr(0, line.find('\r'))) << '\n';
    }
  }
}

std::string NameIn(std::string_view rtttl) {
  return std::string(rtttl.substr(0, rtttl.find(':')));
}

const phones::FileFormat& ChosenFormat(const std::string& name) {
  if (const phones::FileFormat* format = phones::FindFileFormat(name)) {
    return *format;
  }
  std::string words = "no hay ningún formato «" + name + "»; los que hay:";
  for (const phones::FileFormat& format : phones::FileFormats()) {
    words += "\n  " + std::string(format.name) + ": " + core::ToUtf8(format.label) + " (." +
             std::string(format.extension) + ")";
    words += format.limits.empty() ? "" : ", " + core::ToUtf8(format.limits);
  }
  throw Failure{ExitCode::kWrongUse, words};
}

// Reports the file's notices, each after the melody's name, and returns its bytes.
std::string WriteBytesOf(Context& context, const phones::FileFormat& format,
                         const std::string& rtttl) {
  const std::string before = core::ToUtf8(NameIn(rtttl)) + ": ";
  phones::MelodyFileBytes file;
  FailOnError(ExitCode::kNotConverted, before,
              [&] { file = phones::WriteMelodyFile(format, rtttl); });
  if (format.write != nullptr) {  // the notices of phone formats are instructions for the phone
    ShowLines(context, before, file.notices);
  }
  return file.bytes;
}

// Writes a file named after the melody; an existing one with the same content is kept.
fs::path WriteInto(const fs::path& folder, const phones::FileFormat& format,
                   const std::string& rtttl, const std::string& bytes) {
  const fs::path file = folder / files::PathFromText(app::FileStem(NameIn(rtttl)) + "." +
                                                     std::string(format.extension));
  const auto written = files::MakeUnderFreeName(file, [&](const fs::path& free) {
    return files::ReadWhole(free) == bytes ? files::CreateResult::kCreated
                                           : files::Create(free, bytes);
  });
  if (!written) {
    throw Failure{ExitCode::kSystemFailed, "no se puede escribir en la carpeta «" +
                                               core::ToUtf8(files::TextFromPath(folder)) + "»"};
  }
  return *written;
}

bool IsFolder(const std::string& output) {
  std::error_code ignored;
  return output.ends_with('/') || output.ends_with('\\') ||
         fs::is_directory(ArgumentPath(output), ignored);
}

std::vector<import::OpenedMelody> Open(const std::string& file, const std::string& bytes) {
  import::OpenedFile opened;
  FailOnError(ExitCode::kNotConverted, file + ": ", [&] {
    const std::string name = file == "-" ? "" : files::TextFromPath(ArgumentPath(file).filename());
    opened = import::OpenMelodyFile(bytes, name);
  });
  return std::move(opened.melodies);
}

void ShowRemarks(Context& context, const std::string& file,
                 const std::vector<import::OpenedMelody>& melodies) {
  for (const import::OpenedMelody& melody : melodies) {
    for (const std::string& remark : melody.remarks) {
      context.err << file << ": " << ForTerminal(NameIn(melody.text) + ": " + remark) << '\n';
    }
  }
}

}  // namespace

std::vector<import::OpenedMelody> OpenFile(Context& context, const std::string& file) {
  auto melodies = Open(file, ReadAll(context, file, import::kMostBytes));
  ShowRemarks(context, file, melodies);
  return melodies;
}

void Import(Context& context, const Arguments& arguments) {
  const fs::path program = arguments.intoRepertoire ? platform::PrepareProgramFolder() : fs::path();
  const app::MelodyStore store(program / "melodias", program / net::kBinFolder);
  for (const std::string& file : FilesOrInput(arguments.words)) {
    Attempt(context, [&] {
      const std::string bytes = ReadAll(context, file, import::kMostBytes);
      const bool isMidi = import::RecogniseFile(bytes) == import::FileKind::kMidi;
      const auto melodies = isMidi ? OpenMidi(context, arguments, file, bytes) : Open(file, bytes);
      ShowRemarks(context, file, melodies);
      for (const import::OpenedMelody& melody : melodies) {
        std::string shown = melody.text;
        if (arguments.intoRepertoire) {
          FailOnError(ExitCode::kSystemFailed, file + ": ",
                      [&] { shown = store.Save(app::StorableMelody(melody.text)); });
        }
        context.out << ForTerminal(shown) << '\n';
      }
    });
  }
}

void ConvertToFiles(Context& context, const Arguments& arguments) {
  const phones::FileFormat& format = ChosenFormat(*arguments.format);
  const std::string output = arguments.output.value_or("");
  const std::vector<std::string> files = FilesOrInput(arguments.words);
  if (output.empty()) {
    throw Failure{ExitCode::kWrongUse, "indica con --salida el fichero o la carpeta"};
  }
  const bool folder = files.size() > 1 || IsFolder(output);
  const fs::path path = ArgumentPath(output);
  std::error_code failed;
  if (folder && !fs::create_directories(path, failed) && failed) {
    throw Failure{ExitCode::kSystemFailed, "no se puede crear la carpeta «" + output + "»"};
  }
  if (!format.limits.empty()) {
    context.err << core::ToUtf8(format.label) << ": " << core::ToUtf8(format.limits) << '\n';
  }
  std::size_t done = 0;
  for (const std::string& file : files) {
    ++done;
    Attempt(context, [&] {
      const auto melodies = OpenFile(context, file);
      if (!folder && melodies.size() > 1) {
        throw Failure{ExitCode::kWrongUse, file + ": tiene " + std::to_string(melodies.size()) +
                                               " melodías; indica una carpeta con --salida"};
      }
      for (const import::OpenedMelody& melody : melodies) {
        const std::string bytes = WriteBytesOf(context, format, melody.text);
        if (!folder) {
          FailOnError(ExitCode::kSystemFailed, "", [&] { files::WriteBytes(path, bytes); });
          continue;
        }
        const fs::path written = WriteInto(path, format, melody.text, bytes);
        context.err << done << " de " << files.size() << ": "
                    << core::ToUtf8(files::TextFromPath(written.filename())) << '\n';
      }
    });
  }
}

}  // namespace tonadex::cli
