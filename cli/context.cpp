#include "cli/context.h"

#include <algorithm>

#include "core/error_words.h"
#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"

namespace tonadex::cli {
namespace {

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

bool ReadBytes(Context& context, const std::string& file, std::string& bytes) {
  if (file == "-") {
    bytes = files::ReadFirstLine(context.in, core::kMaxLineBytes);
    return true;
  }
  std::ifstream input = OpenArgument(context, file);
  bytes = input ? files::ReadFirstLine(input, core::kMaxLineBytes) : "";
  return static_cast<bool>(input);
}

}  // namespace

void Fail(Context& context, ExitCode code) {
  context.exitCode = std::max(context.exitCode, code);
}

void Fail(Context& context, ExitCode code, std::string_view utf8Message) {
  context.err << "tonadex-cli: " << utf8Message << '\n';
  Fail(context, code);
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

std::ifstream OpenArgument(Context& context, const std::string& utf8) {
  std::ifstream opened(ArgumentPath(utf8), std::ios::binary);
  std::error_code ignored;
  if (!opened || std::filesystem::is_directory(ArgumentPath(utf8), ignored)) {
    opened.setstate(std::ios::failbit);
    Fail(context, ExitCode::kSystemFailed, "no se puede abrir el fichero «" + utf8 + "»");
  }
  return opened;
}

bool ReadMelody(Context& context, const std::string& file, MelodyInput& input) {
  std::string bytes;
  if (!ReadBytes(context, file, bytes)) {
    return false;
  }
  if (bytes.size() > core::kMaxLineBytes) {
    Fail(context, ExitCode::kNotConverted,
         file + ": la primera línea pasa de 1 MiB y no puede ser una melodía");
    return false;
  }
  input.name = file;
  input.line = core::FromOutside(bytes);
  input.row = RowOf(ArgumentPath(file), input.line);
  return true;
}

void LoadMelody(core::RTTTLMelody& melody, std::string_view line) {
  core::InitMelody(melody, "");
  melody.Text = core::UndoSharpEscape(line);
}

bool ParseMelody(Context& context, const MelodyInput& input, core::RTTTLMelody& melody) {
  platform::RecordingMessages messages;
  const platform::ScopedMessageSink scope(messages);
  LoadMelody(melody, input.line);
  bool parsed = false;
  try {
    parsed = core::ParseOrReport(melody);
  } catch (const core::RunTimeError& error) {
    messages.messages.push_back({error.what()});
  }
  ShowMessages(context, messages.messages, input.name + ": ");
  if (!parsed) {
    Fail(context, ExitCode::kNotConverted);
  }
  return parsed;
}

void ShowMessages(Context& context, const std::vector<platform::Message>& messages,
                  std::string_view before) {
  for (const platform::Message& message : messages) {
    context.err << before << ForTerminal(message.text) << '\n';
  }
}

std::vector<std::string> FilesOrInput(const std::vector<std::string>& files) {
  return files.empty() ? std::vector<std::string>{"-"} : files;
}

}  // namespace tonadex::cli
