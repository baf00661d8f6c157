#include "app/inicio.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "app/settings.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/read.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr std::string_view kDesignVersion = "Beta 0.8";
constexpr std::string_view kFirstRunNote =
    u8"Esta es la primera vez que ejecutas Tonadex. Antes de buscar ninguna canción, ves al "
    u8"apartado de Opciones y elige tu modelo de móvil."_w;
constexpr std::uint32_t kSplashIntervalMs = 2000;
constexpr std::size_t kMaxVersionBytes = 4096;

// The first item of a list: up to the quotation mark that closes it, else up to "," or the line's
// end, less the blanks around it.
std::string ListItem(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.starts_with('"')) {
    text.remove_prefix(1);
    return std::string(text.substr(0, text.find('"')));
  }
  return std::string(core::Trim(text.substr(0, text.find_first_of(",\r\n"))));
}

// None when the file cannot be read or holds nothing.
std::optional<std::string> ReadVersion(const std::filesystem::path& file) {
  const std::string text = files::ReadHead(file, kMaxVersionBytes).value_or("");
  if (text.empty()) {
    return std::nullopt;
  }
  return ListItem(core::FromOutside(text));
}

}  // namespace

inicio::inicio(Program& program) : program_(program) {
  Label1.caption = kDesignVersion;
  Frame1.caption = kFirstRunNote;
  Frame1.visible = false;
  Timer1.enabled = false;
  Timer1.interval = kSplashIntervalMs;
}

void inicio::Form_Load(std::intptr_t window) {
  if (const auto version = ReadVersion(program_.ProgramFolder() / "ver.dat")) {
    Label1.caption = *version;
    program_.gVersion = *version;
  }
  program_.services.shell.SetTopMost(window);
  program_.gPhoneModel = RegReadString(program_.services.registry, platform::kHkeyClassesRoot,
                                       kSettingKey, kModelSetting, 0);
  // Never true, a missing model reads "0": the note has always stayed hidden, and the result page
  // asks for a model instead.
  if (program_.gPhoneModel.empty()) {
    Frame1.visible = true;
  }
  counter_ = 1;
  Timer1.enabled = true;
}

void inicio::Timer1_Timer() {
  if (++counter_ == 2) {
    finished = true;
    Timer1.enabled = false;
  }
}

}  // namespace tonadex::app
