#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "app/file_dialog.h"
#include "app/registry.h"
#include "app/rich_text.h"
#include "app/shell_services.h"
#include "app/web_view.h"
#include "core/rtttl.h"
#include "midi/playback.h"
#include "midi/sequencer.h"
#include "net/file_name.h"
#include "net/http.h"
#include "phones/catalogue.h"

// The state of one running program, which outlives both windows.
namespace tonadex::app {

// Interfaces to the system. The shell owns them; they outlive the program.
// Message boxes go to the calling thread's core::MessageSink.
struct Services {
  Registry& registry;
  FileDialogs& fileDialogs;
  midi::Sequencer& sequencer;
  net::HttpGet& Inet1;
  net::BackgroundGet& newest;  // the server's newest melodies
  WebViews& webViews;
  RichTextBox& RichTextBox1;
  ShellServices& shell;
};

// Several programs in one process share nothing. Use it from the window's thread only.
struct Program {
  // `serverBase`: base address of the melody server, Windows-1252, without a trailing "/"
  // ("http://127.0.0.1:8080"). It may be set later, as long as no handler has run.
  explicit Program(Services platformServices, std::string serverBase = {});
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  std::filesystem::path ProgramFolder() const { return services.shell.ProgramFolder(); }
  std::filesystem::path MelodyFolder() const { return ProgramFolder() / "melodias"; }

  // Keeps what is deleted or replaced in the melody folder.
  std::filesystem::path BinFolder() const { return ProgramFolder() / net::kBinFolder; }

  Services services;
  std::string serverBase;
  std::intptr_t window = 0;  // the main window's handle, owner of the file dialogs; 0 for none

  core::RTTTLMelody gMelody;
  std::string gPhoneModel;  // a model text of the catalogue, or any other text, "0" at first
  midi::Voice voice = midi::Voice::kInstrument;  // what melodies are played with
  std::string gVersion;                          // what ver.dat says
  phones::PhoneCatalogue PhoneCatalogue;

  // True while a request runs, when only painting goes on. `busyChanged` (may be empty) is called
  // after each change, so that the shell can draw it before the request blocks.
  bool busy = false;
  std::function<void()> busyChanged;
  // The user has cancelled the running request (Esc, ✕).
  bool givenUp = false;
  // Close the window when the handler that waits for a request has returned (✕).
  bool closing = false;

  int exitCode = 0;  // 1 after an unhandled error
};

// Thrown by Request when the user has cancelled it. Not a RunTimeError: handlers that skip errors
// do not skip it, so that what they showed and stored before stays as it is.
class RequestGivenUp : public std::runtime_error {
 public:
  RequestGivenUp();
};

// A GET request; sets `program.busy` while it runs. `path` begins with "/" and is appended to the
// server's base address unescaped. Errors: core::RunTimeError (kTransfer) when no reply came,
// RequestGivenUp.
std::string Request(Program& program, std::string_view path);

// Cancels the running request (Esc) at the transport's next pause; does nothing without a request.
void GiveUpRequest(Program& program);

// Call it in the transport's pauses: throws net::TransferError, which ends the transfer, once the
// user has cancelled the request.
void CheckGivenUp(const Program& program);

// Reports an error that no handler caught, in a message box (exclamation): "Se ha producido un
// error inesperado y el programa debe cerrarse:" CR LF and what it is. Then sets exitCode to 1 and
// calls ShellServices::End.
void ReportUnhandled(Program& program, const std::exception& error);

// Shells call every handler through this function. Reports an exception through ReportUnhandled and
// returns false; a cancelled request ends the handler silently. While a request runs (`busy`) the
// event is dropped. Ends the program after the handler when the window was closed meanwhile
// (`closing`).
bool RunHandler(Program& program, const std::function<void()>& handler);

}  // namespace tonadex::app
