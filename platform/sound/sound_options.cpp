#include "platform/sound/sound_options.h"

#include <cstdlib>
#include <string_view>

namespace tonadex::platform {
namespace {

constexpr const char* kDrivers[] = {"pipewire", "pulseaudio", "alsa"};

constexpr const char* kSoundFonts[] = {
    "/usr/share/sounds/sf2/TimGM6mb.sf2",      "/usr/share/sounds/sf2/default-GM.sf2",
    "/usr/share/sounds/sf3/default-GM.sf3",    "/usr/share/sounds/sf2/FluidR3_GM.sf2",
    "/usr/share/soundfonts/default.sf2",       "/usr/share/soundfonts/FluidR3_GM.sf2",
    "/usr/local/share/soundfonts/default.sf2", "/usr/share/sounds/sf2/FluidR3_GS.sf2"};

std::string_view Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

SoundOptions SoundOptionsFromEnvironment() {
  SoundOptions options;
  if (Variable("TONADEX_SOUND") != "ninguno") {
    options.drivers.assign(std::begin(kDrivers), std::end(kDrivers));
  }
  if (const std::string_view chosen = Variable("TONADEX_SOUNDFONT"); !chosen.empty()) {
    options.soundFonts.emplace_back(chosen);
  }
  options.soundFonts.insert(options.soundFonts.end(), std::begin(kSoundFonts),
                            std::end(kSoundFonts));
  return options;
}

}  // namespace tonadex::platform
