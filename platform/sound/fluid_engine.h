#pragma once

// FluidSynth as used for playing and rendering; only for the sources of this folder.
#include <fluidsynth.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace tonadex::platform {

template <auto kDelete>
struct FluidDeleter {
  template <class T>
  void operator()(T* object) const {
    kDelete(object);
  }
};

using FluidSettings = std::unique_ptr<fluid_settings_t, FluidDeleter<delete_fluid_settings>>;
using FluidSynth = std::unique_ptr<fluid_synth_t, FluidDeleter<delete_fluid_synth>>;
using FluidPlayer = std::unique_ptr<fluid_player_t, FluidDeleter<delete_fluid_player>>;
using FluidDriver = std::unique_ptr<fluid_audio_driver_t, FluidDeleter<delete_fluid_audio_driver>>;
using FluidRenderer =
    std::unique_ptr<fluid_file_renderer_t, FluidDeleter<delete_fluid_file_renderer>>;

inline constexpr double kSampleRate = 44100;

// Stops FluidSynth and ALSA from printing. Call before any other FluidSynth function.
void SilenceLibraries();

// In order of creation, because the members must be destroyed in reverse order.
struct FluidEngine {
  FluidSettings settings;
  FluidSynth synth;
  FluidPlayer player;
  bool soundFontLoaded = false;

  // True when everything was created and a soundfont was loaded; otherwise the engine must not be
  // used.
  bool IsReady() const { return player != nullptr && soundFontLoaded; }
};

// Creates a synthesizer with the first soundfont that loads, and a player for `midiBytes`.
FluidEngine MakeEngine(const std::vector<std::filesystem::path>& soundFonts,
                       const std::string& midiBytes);

}  // namespace tonadex::platform
