#include <cstdint>
#include <optional>
#include <system_error>

#include "files/read.h"
#include "files/write.h"
#include "platform/sound/fluid_engine.h"
#include "platform/sound/render_to_wav.h"

namespace tonadex::platform {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaxMidiBytes = std::size_t{16} << 20;
constexpr int kBlockFrames = 64;
constexpr std::uintmax_t kFrameBytes = 4;

constexpr std::uintmax_t Blocks(double seconds) {
  return static_cast<std::uintmax_t>(seconds * kSampleRate) / kBlockFrames;
}

// One hour: at a slow tempo a melody can last for days.
constexpr std::uintmax_t kMaxBlocks = Blocks(3600);
// Five seconds: some instruments never fade out completely.
constexpr std::uintmax_t kMaxTailBlocks = Blocks(5);

// Valid after the first block, which loads the file and its number of ticks.
bool HasEnded(const FluidEngine& engine) {
  return fluid_player_get_current_tick(engine.player.get()) >=
         fluid_player_get_total_ticks(engine.player.get());
}

// Renders to the end of the file, then until all voices are silent. Returns the number of blocks
// written, nullopt when writing failed.
std::optional<std::uintmax_t> Render(const FluidEngine& engine, fluid_file_renderer_t* renderer) {
  std::uintmax_t blocks = 0;
  std::uintmax_t tail = 0;
  while (blocks < kMaxBlocks && tail < kMaxTailBlocks) {
    if (fluid_file_renderer_process_block(renderer) != FLUID_OK) {
      return std::nullopt;
    }
    ++blocks;
    if (HasEnded(engine)) {
      if (fluid_synth_get_active_voice_count(engine.synth.get()) == 0) {
        break;
      }
      ++tail;
    }
  }
  return blocks;
}

bool RenderInto(const FluidEngine& engine, const fs::path& file) {
  fluid_settings_t* settings = engine.settings.get();
  fluid_settings_setint(settings, "audio.period-size", kBlockFrames);
  fluid_settings_setstr(settings, "audio.file.name", file.c_str());
  fluid_settings_setstr(settings, "audio.file.type", "wav");
  fluid_settings_setstr(settings, "audio.file.format", "s16");
  FluidRenderer renderer(new_fluid_file_renderer(engine.synth.get()));
  if (!renderer || fluid_player_play(engine.player.get()) != FLUID_OK) {
    return false;
  }
  const auto blocks = Render(engine, renderer.get());
  renderer.reset();  // flushes, but does not report an error
  std::error_code failure;
  const std::uintmax_t size = fs::file_size(file, failure);
  return blocks && !failure && size >= *blocks * kBlockFrames * kFrameBytes;
}

}  // namespace

RenderResult RenderToWav(const fs::path& midiFile, const fs::path& wavFile,
                         const SoundOptions& options) {
  const auto midi = files::ReadWhole(midiFile, kMaxMidiBytes);
  if (!midi || !midi->starts_with("MThd")) {
    return RenderResult::kNoMidiFile;
  }
  const FluidEngine engine = MakeEngine(options.soundFonts, *midi);
  if (!engine.IsReady()) {
    return RenderResult::kNoSoundFont;
  }
  files::TemporaryFile wav(wavFile);
  const bool written =
      !wav.Failure() && RenderInto(engine, wav.Path()) && wav.Replace(files::Durability::kDisk);
  return written ? RenderResult::kDone : RenderResult::kWriteFailed;
}

}  // namespace tonadex::platform
