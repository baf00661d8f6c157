#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "core/rtttl.h"
#include "phones/catalogue.h"
#include "platform/file_dialog.h"
#include "platform/http.h"
#include "platform/registry.h"
#include "platform/rich_text.h"
#include "platform/sequencer.h"
#include "platform/shell_services.h"
#include "platform/web_view.h"

// What outlives both windows of one running program.
namespace tonadex::app {

// What the program asks of the system. The shell owns them; they outlive the program.
// Message boxes go to the calling thread's platform::MessageSink.
struct Services {
  platform::Registry& registry;
  platform::FileDialogs& fileDialogs;
  platform::Sequencer& sequencer;
  platform::HttpGet& Inet1;
  platform::WebViews& webViews;
  platform::RichTextBox& RichTextBox1;
  platform::ShellServices& shell;
};

// Two programs in one process share nothing. Used from one thread, that of the windows.
struct Program {
  // `serverBase`: base address of the melody server, Windows-1252, without a trailing "/"
  // ("http://127.0.0.1:8080"). It may be set later, as long as no handler has run.
  explicit Program(Services platformServices, std::string serverBase = {});
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  std::filesystem::path ProgramFolder() const { return services.shell.ProgramFolder(); }
  std::filesystem::path MelodyFolder() const { return ProgramFolder() / "melodias"; }

  Services services;
  std::string serverBase;
  std::intptr_t window = 0;  // the main window's handle, owner of the file dialogs; 0 for none

  core::RTTTLMelody gMelody;
  std::string gPhoneModel;  // a model text of the catalogue, or any other text, "0" at first
  std::string gVersion;     // what ver.dat says
  phones::PhoneCatalogue PhoneCatalogue;

  // A request runs: only painting goes on. `busyChanged` (may be empty) is called after each
  // change, so that the shell can draw it before the request blocks.
  bool busy = false;
  std::function<void()> busyChanged;
  // The user has given up the request that runs (Esc, ✕).
  bool givenUp = false;
  // The window is to close as soon as the handler that waits for a request has ended (✕).
  bool closing = false;

  int exitCode = 0;  // 1 after an unhandled error
};

// Leaves Request when the user has given the request up. No failure of the system's rules: handlers
// that skip errors do not skip it, so what they showed and stored before stays as it is.
class RequestGivenUp : public std::runtime_error {
 public:
  RequestGivenUp();
};

// A GET request with `program.busy` set meanwhile; `path` begins with "/" and goes behind the
// server's base address as typed. Errors: core::RunTimeError (kTransfer) when no reply came,
// RequestGivenUp.
std::string Request(Program& program, std::string_view path);

// Esc while a request runs: it ends at the transport's next pause. Without request it does nothing.
void GiveUpRequest(Program& program);

// For the transport's pause, in which the window is painted: throws platform::TransferError, which
// ends the transfer, once the user has given the request up.
void CheckGivenUp(const Program& program);

// Reports an error that no handler caught, in a message box (exclamation): "Se ha producido un
// error inesperado y el programa debe cerrarse:" CR LF and what it is. Then sets exitCode to 1 and
// calls ShellServices::End.
void ReportUnhandled(Program& program, const std::exception& error);

// The one place where a shell calls handlers: runs `handler`, reports what escapes it through
// ReportUnhandled and gives false in that case; a request given up ends it silently. While a
// request runs (`busy`) events are dropped: the handler is not run and true is given. A window that
// was closed meanwhile (`closing`) ends the program when the handler has ended.
bool RunHandler(Program& program, const std::function<void()>& handler);

}  // namespace tonadex::app
