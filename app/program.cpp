#include "app/program.h"

#include <utility>

#include "core/error_words.h"
#include "core/message_box.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "net/client.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr std::string_view kUnhandledMessage =
    u8"Se ha producido un error inesperado y el programa debe cerrarse:"_w;
constexpr int kUnhandledExitCode = 1;
constexpr const char* kGivenUp = "Has dejado de esperar al servidor";

// Sets `busy` for the length of a request.
class BusyScope {
 public:
  explicit BusyScope(Program& program) : program_(program) { Set(true); }
  ~BusyScope() { Set(false); }
  BusyScope(const BusyScope&) = delete;
  BusyScope& operator=(const BusyScope&) = delete;

 private:
  void Set(bool busy) {
    program_.busy = busy;
    if (program_.busyChanged) {
      program_.busyChanged();
    }
  }
  Program& program_;
};

}  // namespace

Program::Program(Services platformServices, std::string server)
    : services(platformServices), serverBase(std::move(server)) {}

RequestGivenUp::RequestGivenUp() : std::runtime_error(kGivenUp) {}

std::string Request(Program& program, std::string_view path) {
  if (program.closing) {
    throw RequestGivenUp();
  }
  program.givenUp = false;  // Esc at the end of the last one came too late
  const BusyScope busy(program);
  try {
    return net::FetchFrom(program.services.Inet1, program.serverBase)(path);
  } catch (const core::RunTimeError&) {
    if (std::exchange(program.givenUp, false)) {
      throw RequestGivenUp();
    }
    throw;
  }
}

void GiveUpRequest(Program& program) {
  program.givenUp = program.givenUp || program.busy;
}

void CheckGivenUp(const Program& program) {
  if (program.givenUp) {
    throw net::TransferError(kGivenUp);
  }
}

void ReportUnhandled(Program& program, const std::exception& error) {
  core::MsgBox(std::string(kUnhandledMessage) + std::string(core::kCrLf) + core::ErrorWords(error),
               core::Icon::kExclamation);
  program.exitCode = kUnhandledExitCode;
  program.services.shell.End();
}

bool RunHandler(Program& program, const std::function<void()>& handler) {
  if (program.busy) {
    return true;
  }
  try {
    handler();
  } catch (const RequestGivenUp&) {
    // The user cancelled it.
  } catch (const std::exception& error) {
    ReportUnhandled(program, error);
    return false;
  }
  if (std::exchange(program.closing, false)) {
    program.services.shell.End();
  }
  return true;
}

}  // namespace tonadex::app
