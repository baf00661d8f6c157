#include "cli/context.h"

#include <algorithm>

#include "core/error_words.h"
#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"
#include "import/recognise.h"
#include "json/conversion.h"
#include "phones/rtttl_check.h"

namespace tonadex::cli {
namespace {

using import::FileKind;

// A repertoire file's number has at most five digits.
bool IsRepertoireName(std::string_view fileName) {
  const std::size_t stop = fileName.find('.');
  if (stop == 0 || stop == std::string_view::npos) {
    return false;
  }
  const std::string_view number = fileName.substr(stop + 1);
  return !number.empty() && number.size() <= 5 &&
         number.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string ReadByImport(const std::string& file, FileKind kind) {
  return file + ": parece " + core::ToUtf8(import::KindName(kind)) +
         "; lo lee «tonadex-cli importar»";
}

// The converters read something into any bytes.
void RefuseBinary(const std::string& file, FileKind kind) {
  if (import::IsBinary(kind)) {
    throw Failure{ExitCode::kNotConverted, ReadByImport(file, kind)};
  }
}

std::string RowOf(const std::filesystem::path& file, std::string_view line) {
  const std::string fileName = files::TextFromPath(file.filename());
  if (IsRepertoireName(fileName)) {
    std::string row;  // stays empty for a nameless melody in "a.1", as in the list
    core::SkipErrors([&] { row = core::RepertoireRow(line, fileName).text; });
    return row;
  }
  const std::string text = core::UndoSharpEscape(line);
  return text.substr(0, text.find(':'));
}

}  // namespace

void Fail(Context& context, ExitCode code) {
  context.exitCode = std::max(context.exitCode, code);
}

void Fail(Context& context, const Failure& failure) {
  context.err << "tonadex-cli: " << failure.words << '\n';
  Fail(context, failure.code);
}

void Attempt(Context& context, const std::function<void()>& work) {
  try {
    work();
  } catch (const Failure& failure) {
    Fail(context, failure);
  }
}

void FailOnError(ExitCode code, const std::string& before, const std::function<void()>& work) {
  try {
    work();
  } catch (const core::RunTimeError& error) {
    throw Failure{code, before + WordsOf(error)};
  }
}

std::string WordsOf(const std::exception& error) {
  return core::ToUtf8(core::ErrorWords(error));
}

std::string ForTerminal(std::string_view text) {
  std::string plain(text);
  core::ReplaceAll(plain, core::kCrLf, "\n");
  for (char& c : plain) {
    c = c == '\r' ? '\n' : (core::Code(c) < 0x20 && c != '\n' && c != '\t') || c == 0x7F ? '?' : c;
  }
  return core::ToUtf8(plain);
}

std::filesystem::path ArgumentPath(const std::string& utf8) {
  return std::u8string(utf8.begin(), utf8.end());
}

std::istream& OpenInput(Context& context, const std::string& file, std::ifstream& opened) {
  if (file == "-") {
    return context.in;
  }
  const std::filesystem::path path = ArgumentPath(file);
  opened.open(path, std::ios::binary);
  std::error_code ignored;
  if (!opened || std::filesystem::is_directory(path, ignored)) {
    throw Failure{ExitCode::kSystemFailed, "no se puede abrir el fichero «" + file + "»"};
  }
  return opened;
}

std::string ReadAll(Context& context, const std::string& file, std::size_t most) {
  std::ifstream opened;
  std::istream& input = OpenInput(context, file, opened);
  std::string bytes(most + 1, '\0');
  input.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(input.gcount()));
  if (bytes.size() > most) {
    throw Failure{ExitCode::kNotConverted,
                  file + ": pasa de " + std::to_string(most >> 20) + " MiB"};
  }
  return bytes;
}

std::string ReadText(Context& context, const std::string& file, std::size_t most) {
  std::string bytes = ReadAll(context, file, most);
  const FileKind kind = import::RecogniseFile(bytes);
  RefuseBinary(file, kind);
  if (kind == FileKind::kUnknown) {
    return "";
  }
  // Text of another format may also hold RTTTL: a page that shows a melody for several phones.
  if (kind != FileKind::kRtttl && kind != FileKind::kComposer) {
    context.err << ReadByImport(file, kind) << '\n';
  }
  return bytes;
}

MelodyInput ReadMelody(Context& context, const std::string& file) {
  std::ifstream opened;
  const std::string bytes =
      files::ReadFirstLine(OpenInput(context, file, opened), core::kMaxLineBytes);
  if (bytes.size() > core::kMaxLineBytes) {
    throw Failure{ExitCode::kNotConverted,
                  file + ": la primera línea pasa de 1 MiB y no puede ser una melodía"};
  }
  RefuseBinary(file, import::RecogniseFile(bytes));
  const std::string line = core::FromOutside(bytes);
  return {file, line, RowOf(ArgumentPath(file), line)};
}

std::vector<std::string> FilesOrInput(const std::vector<std::string>& files) {
  return files.empty() ? std::vector<std::string>{"-"} : files;
}

void ForEachMelody(Context& context, const std::vector<std::string>& files,
                   const std::function<void(const MelodyInput&)>& work) {
  for (const std::string& file : FilesOrInput(files)) {
    Attempt(context, [&] { work(ReadMelody(context, file)); });
  }
}

bool ParseMelody(Context& context, const MelodyInput& input, core::RTTTLMelody& melody) {
  core::RecordingMessages messages;
  const core::ScopedMessageSink scope(messages);
  json::LoadMelody(melody, input.line);
  bool parsed = false;
  try {
    parsed = core::ParseOrReport(melody);
  } catch (const core::RunTimeError& error) {
    messages.messages.push_back({error.what()});
  }
  ShowMessages(context, messages.messages, input.name + ": ");
  if (!parsed) {
    NameCommandFor(context, input);
    Fail(context, ExitCode::kNotConverted);
  }
  return parsed;
}

void NameCommandFor(Context& context, const MelodyInput& input) {
  const FileKind kind = import::RecogniseFile(input.line);
  if (kind != FileKind::kRtttl && kind != FileKind::kUnknown) {
    context.err << ReadByImport(input.name, kind) << '\n';
  } else if (phones::CheckRtttl(core::UndoSharpEscape(input.line)).verdict !=
             phones::Verdict::kGood) {
    context.err << input.name << ": no es RTTTL correcto; prueba con «tonadex-cli arreglar»\n";
  }
}

void ShowMessages(Context& context, const std::vector<core::Message>& messages,
                  std::string_view before) {
  for (const core::Message& message : messages) {
    context.err << before << ForTerminal(message.text) << '\n';
  }
}

}  // namespace tonadex::cli
