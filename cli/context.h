#pragma once

#include <exception>
#include <filesystem>
#include <fstream>
#include <istream>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "core/rtttl.h"
#include "platform/message_box.h"

namespace CLI {
class App;
}

namespace tonadex::cli {

// What the shell sees of a run.
enum class ExitCode {
  kDone = 0,
  kNotConverted = 1,  // the melody cannot be converted, played or taken
  kWrongUse = 2,
  kSystemFailed = 3,   // a file, the network, the printer
  kInterrupted = 130,  // Ctrl+C, as shells number it
};

// What every command works on. Streams carry UTF-8.
struct Context {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  ExitCode exitCode = ExitCode::kDone;
};

// Keeps the worse of the run's exit code and `code`: one bad file of many is told at the end.
void Fail(Context& context, ExitCode code);

// Writes "tonadex-cli: <message>" to the error stream and keeps the exit code.
void Fail(Context& context, ExitCode code, std::string_view utf8Message);

// What an error says (core::ErrorWords), in UTF-8.
std::string WordsOf(const std::exception& error);

// A Windows-1252 text for a terminal: UTF-8, lines ended by LF, control characters as "?".
std::string ForTerminal(std::string_view text);

// The path of a FICHERO argument (UTF-8 from the command line).
std::filesystem::path ArgumentPath(const std::string& utf8);

// Opens such a file for reading; a pipe will do. Reports a failure, and the stream has failed then.
std::ifstream OpenArgument(Context& context, const std::string& utf8);

// A melody of the command line: the first line of a file, or of standard input for "-".
struct MelodyInput {
  std::string name;  // as given, UTF-8
  std::string line;  // as stored, Windows-1252, sharps still escaped
  std::string row;   // the melody's row text: the repertoire's for a file "stem.number", else the
                     // text before the first ":"
};

// Reads it, or reports why not and gives false. A line of more than core::kMaxLineBytes is refused.
bool ReadMelody(Context& context, const std::string& file, MelodyInput& input);

// A record fresh from its defaults with the line's text, sharps restored.
void LoadMelody(core::RTTTLMelody& melody, std::string_view line);

// Loads and parses it; what is wrong is shown behind the input's name, the exit code is kept and
// false given. What was understood stays in `melody`.
bool ParseMelody(Context& context, const MelodyInput& input, core::RTTTLMelody& melody);

// Messages of the program on the error stream, one a line, each behind `before`.
void ShowMessages(Context& context, const std::vector<platform::Message>& messages,
                  std::string_view before = {});

// "-" for standard input when no file is named.
std::vector<std::string> FilesOrInput(const std::vector<std::string>& files);

// Each command adds itself; its callback does the work and keeps the exit code.
void AddModelos(CLI::App& app, Context& context);
void AddConvertir(CLI::App& app, Context& context);
void AddComprobar(CLI::App& app, Context& context);
void AddMidi(CLI::App& app, Context& context);
void AddReproducir(CLI::App& app, Context& context);
void AddNetwork(CLI::App& app, Context& context);  // buscar, azar, descargar, subir
void AddImprimir(CLI::App& app, Context& context);

// The whole program but for main's streams. `argv` is UTF-8.
int Run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err);

}  // namespace tonadex::cli
