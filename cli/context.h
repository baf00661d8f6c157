#pragma once

#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <istream>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "core/message_box.h"
#include "core/rtttl.h"

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

// Why a command, or its work on one file, ends early. Not an std::exception: what catches those of
// the system lets it pass.
struct Failure {
  ExitCode code;
  std::string words;  // UTF-8
};

// Keeps the worse of the run's exit code and `code`: one bad file of many is told at the end.
void Fail(Context& context, ExitCode code);

// Writes "tonadex-cli: <words>" to the error stream and keeps the exit code.
void Fail(Context& context, const Failure& failure);

// Does the work; a Failure that it throws is reported.
void Attempt(Context& context, const std::function<void()>& work);

// Does the work; a core::RunTimeError becomes a Failure, its words behind `before`.
void FailOnError(ExitCode code, const std::string& before, const std::function<void()>& work);

// What an error says (core::ErrorWords), in UTF-8.
std::string WordsOf(const std::exception& error);

// A Windows-1252 text for a terminal: UTF-8, lines ended by LF, control characters as "?".
std::string ForTerminal(std::string_view text);

// The path of a FICHERO argument (UTF-8 from the command line).
std::filesystem::path ArgumentPath(const std::string& utf8);

// The input that it names: standard input for "-", else `opened` on that file; a pipe will do.
// Throws Failure.
std::istream& OpenInput(Context& context, const std::string& file, std::ifstream& opened);

// A melody of the command line: the first line of a file, or of standard input for "-".
struct MelodyInput {
  std::string name;  // as given, UTF-8
  std::string line;  // as stored, Windows-1252, sharps still escaped
  std::string row;   // the melody's row text: the repertoire's for a file "stem.number", else the
                     // text before the first ":"
};

// Throws Failure, also for a line of more than core::kMaxLineBytes.
MelodyInput ReadMelody(Context& context, const std::string& file);

// "-" for standard input when no file is named.
std::vector<std::string> FilesOrInput(const std::vector<std::string>& files);

// Reads each file (or standard input) and does the work; a Failure concerns that file alone.
void ForEachMelody(Context& context, const std::vector<std::string>& files,
                   const std::function<void(const MelodyInput&)>& work);

// A record fresh from its defaults with the line's text, sharps restored.
void LoadMelody(core::RTTTLMelody& melody, std::string_view line);

// Loads and parses it; what is wrong is shown behind the input's name, the exit code is kept and
// false given. What was understood stays in `melody`.
bool ParseMelody(Context& context, const MelodyInput& input, core::RTTTLMelody& melody);

// Messages of the program on the error stream, one a line, each behind `before`.
void ShowMessages(Context& context, const std::vector<core::Message>& messages,
                  std::string_view before = {});

struct Arguments;
using CommandFunction = void (*)(Context&, const Arguments&);

// The commands that need large libraries: done here or left to another program.
struct HeavyCommands {
  CommandFunction play, print;
};

// The whole program but for main's streams. `argv` is UTF-8 and ended by nullptr.
int Run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err,
        const HeavyCommands& heavy);

}  // namespace tonadex::cli
