#pragma once

// Only for the sources of this folder: FluidSynth as playing and rendering use it.
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

// Keeps FluidSynth and ALSA from printing. Call before any other FluidSynth function.
void SilenceLibraries();

// Members in order of creation, so that they are destroyed in the reverse order.
struct FluidEngine {
  FluidSettings settings;
  FluidSynth synth;
  FluidPlayer player;
  bool soundFontLoaded = false;

  // Everything was created and a soundfont loaded. Otherwise the engine must not be used.
  bool IsReady() const { return player != nullptr && soundFontLoaded; }
};

// The synthesizer with the first of the soundfonts that loads, ready to play `midiBytes`.
FluidEngine MakeEngine(const std::vector<std::filesystem::path>& soundFonts,
                       const std::string& midiBytes);

}  // namespace tonadex::platform
