#include "platform/sound/fluid_engine.h"

#include <dlfcn.h>

#include <cstdint>
#include <mutex>
#include <string>
#include <system_error>

#include "files/read.h"

namespace tonadex::platform {
namespace {

// Louder than FluidSynth's default, which leaves headroom for many voices; a melody has one.
constexpr double kGain = 0.8;

using AlsaErrorHandler = void (*)(const char*, int, const char*, int, const char*, ...);

void IgnoreAlsaError(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                     const char* /*format*/, ...) {}

// Whether the file is a complete soundfont (versions 2 and 3). FluidSynth checks too, but then one
// of its libraries prints errors.
bool IsSoundFont(const std::filesystem::path& file) {
  constexpr std::size_t kHeadBytes = 12;
  const std::string head = files::ReadHead(file, kHeadBytes).value_or("");
  if (head.size() < kHeadBytes || !head.starts_with("RIFF") || !head.ends_with("sfbk")) {
    return false;
  }
  std::uintmax_t length = 8;  // the header states the length (little-endian) minus these 8 bytes
  for (unsigned i = 0; i < 4; ++i) {
    length += static_cast<std::uintmax_t>(static_cast<unsigned char>(head[4 + i])) << (8 * i);
  }
  std::error_code failure;
  return length <= std::filesystem::file_size(file, failure);
}

}  // namespace

void SilenceLibraries() {
  static std::once_flag once;
  std::call_once(once, [] {
    for (int level = FLUID_PANIC; level < LAST_LOG_LEVEL; ++level) {
      fluid_set_log_function(level, nullptr, nullptr);
    }
    // ALSA prints errors itself; it is loaded only if FluidSynth was built with it.
    if (void* found = ::dlsym(RTLD_DEFAULT, "snd_lib_error_set_handler")) {
      reinterpret_cast<int (*)(AlsaErrorHandler)>(found)(IgnoreAlsaError);
    }
  });
}

FluidEngine MakeEngine(const std::vector<std::filesystem::path>& soundFonts,
                       const std::string& midiBytes) {
  SilenceLibraries();
  FluidEngine engine;
  engine.settings.reset(new_fluid_settings());
  if (!engine.settings) {
    return engine;
  }
  fluid_settings_t* settings = engine.settings.get();
  fluid_settings_setnum(settings, "synth.gain", kGain);
  fluid_settings_setnum(settings, "synth.sample-rate", kSampleRate);
  // Time by samples, not by the clock. Without reverb and chorus, silent voices mean the end of the
  // sound.
  fluid_settings_setstr(settings, "player.timing-source", "sample");
  fluid_settings_setint(settings, "synth.reverb.active", 0);
  fluid_settings_setint(settings, "synth.chorus.active", 0);
  engine.synth.reset(new_fluid_synth(settings));
  if (!engine.synth) {
    return engine;
  }
  for (const std::filesystem::path& file : soundFonts) {
    if (IsSoundFont(file) &&
        fluid_synth_sfload(engine.synth.get(), file.c_str(), 1) != FLUID_FAILED) {
      engine.soundFontLoaded = true;
      break;
    }
  }
  engine.player.reset(new_fluid_player(engine.synth.get()));
  if (engine.player &&
      fluid_player_add_mem(engine.player.get(), midiBytes.data(), midiBytes.size()) != FLUID_OK) {
    engine.player.reset();
  }
  return engine;
}

}  // namespace tonadex::platform
