#include "app/inicio.h"

#include <algorithm>
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

// The first item of a list: up to the closing quotation mark, else up to "," or the end of the
// line, trimmed.
std::string ListItem(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.starts_with('"')) {
    text.remove_prefix(1);
    return std::string(text.substr(0, text.find('"')));
  }
  return std::string(core::Trim(text.substr(0, text.find_first_of(",\r\n"))));
}

}  // namespace

std::span<const inicio::Line> inicio::Lines() {
  static constexpr Line kLines[] = {
      {"Label1", &inicio::Label1, {36, 104, 350, 24}, Font::kBody},
      {"Frame1", &inicio::Frame1, {36, 178, 350, 56}, Font::kSmall},
  };
  return kLines;
}

inicio::inicio(Program& program) : program_(program) {
  Label1.caption = kDesignVersion;
  Frame1.caption = kFirstRunNote;
  Frame1.visible = false;
  Timer1.enabled = false;
  Timer1.interval = kSplashIntervalMs;
}

void inicio::Form_Load(std::intptr_t window) {
  const auto text = files::ReadHead(program_.ProgramFolder() / "ver.dat", kMaxVersionBytes);
  if (!text.value_or("").empty()) {
    Label1.caption = program_.gVersion = ListItem(core::FromOutside(*text));
  }
  program_.services.shell.SetTopMost(window);
  program_.gPhoneModel =
      RegReadString(program_.services.registry, kHkeyClassesRoot, kSettingKey, kModelSetting, 0);
  // Never true, because a missing model is read as "0": the note has always stayed hidden, and the
  // result page asks for a model instead.
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
