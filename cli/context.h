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

// Exit codes of the program.
enum class ExitCode {
  kDone = 0,
  kNotConverted = 1,  // the melody cannot be converted or played, or the server rejects it
  kWrongUse = 2,
  kSystemFailed = 3,   // a file, the network, the printer
  kInterrupted = 130,  // Ctrl+C: 128 + SIGINT, as in shells
};

// Streams and exit code of a run. Streams are UTF-8.
struct Context {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  ExitCode exitCode = ExitCode::kDone;
};

// Thrown to end a command or its work on one file. Not derived from std::exception, so that
// handlers of system errors do not catch it.
struct Failure {
  ExitCode code;
  std::string words;  // UTF-8
};

// Raises the run's exit code to `code` if that is worse, so that one bad file of many is visible at
// the end.
void Fail(Context& context, ExitCode code);

// Writes "tonadex-cli: <words>" to the error stream and raises the exit code.
void Fail(Context& context, const Failure& failure);

// Runs `work`; a Failure that it throws is reported.
void Attempt(Context& context, const std::function<void()>& work);

// Runs `work`; a core::RunTimeError becomes a Failure with its words after `before`.
void FailOnError(ExitCode code, const std::string& before, const std::function<void()>& work);

// The error's sentence (core::ErrorWords) in UTF-8.
std::string WordsOf(const std::exception& error);

// Converts Windows-1252 text for a terminal: UTF-8, LF line ends, control characters replaced by
// "?".
std::string ForTerminal(std::string_view text);

// The path of a FICHERO argument (UTF-8 from the command line).
std::filesystem::path ArgumentPath(const std::string& utf8);

// Standard input for "-", else `opened` on the file, which may be a pipe. Throws Failure.
std::istream& OpenInput(Context& context, const std::string& file, std::ifstream& opened);

// The whole of a file, or of standard input for "-". Throws Failure, also for more than `most`
// bytes.
std::string ReadAll(Context& context, const std::string& file, std::size_t most);

// The whole of a text file, "" if it is binary. If it is of another format than RTTTL and composer
// text, names the command that reads it: as a Failure for a binary format, else on the error
// stream.
std::string ReadText(Context& context, const std::string& file, std::size_t most);

// A melody of the command line: the first line of a file, or of standard input for "-".
struct MelodyInput {
  std::string name;  // the argument, UTF-8
  std::string line;  // as stored, Windows-1252, sharps still escaped
  std::string row;   // the melody's row text: the repertoire's for a file "stem.number", else the
                     // text before the first ":"
};

// Throws Failure, also for a binary melody file and a line of more than core::kMaxLineBytes.
MelodyInput ReadMelody(Context& context, const std::string& file);

// The files, or "-" (standard input) when none is named.
std::vector<std::string> FilesOrInput(const std::vector<std::string>& files);

// Reads each file (or standard input) and calls `work`; a Failure concerns that file only.
void ForEachMelody(Context& context, const std::vector<std::string>& files,
                   const std::function<void(const MelodyInput&)>& work);

// Loads and parses the melody. On an error writes messages after the input's name, raises the exit
// code and returns false; the notes that were read are in `melody`.
bool ParseMelody(Context& context, const MelodyInput& input, core::RTTTLMelody& melody);

// Names, on the error stream, the command that reads such a melody: "importar" for the file of
// another format, "arreglar" for RTTTL with faults. Nothing for a melody without faults.
void NameCommandFor(Context& context, const MelodyInput& input);

// Writes each message on a line of the error stream, after `before`.
void ShowMessages(Context& context, const std::vector<core::Message>& messages,
                  std::string_view before = {});

struct Arguments;
using CommandFunction = void (*)(Context&, const Arguments&);

// The commands that need large libraries, run in this process or by another program.
struct HeavyCommands {
  CommandFunction play, print;
};

// The whole program except main's streams. `argv` is UTF-8 and terminated by nullptr.
int Run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err,
        const HeavyCommands& heavy);

}  // namespace tonadex::cli
