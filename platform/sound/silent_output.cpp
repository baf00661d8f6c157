// The output of a build without sound.
#include <chrono>

#include "platform/sound/playback.h"
#include "platform/sound/render_to_wav.h"

namespace tonadex::platform {
namespace {

using Clock = std::chrono::steady_clock;

class SilentPlayback : public Playback {
 public:
  void Stop() override {}
  double PositionMs() override {
    return std::chrono::duration<double, std::milli>(Clock::now() - begun_).count();
  }
  bool IsSilent() override { return true; }

 private:
  Clock::time_point begun_ = Clock::now();
};

class SilentPlayer : public Player {
 public:
  std::shared_ptr<Playback> Start(std::string /*midiBytes*/) override {
    return std::make_shared<SilentPlayback>();
  }
};

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the version with sound stores them
std::unique_ptr<Player> MakePlayer(SoundOptions /*options*/) {
  return std::make_unique<SilentPlayer>();
}

RenderResult RenderToWav(const std::filesystem::path& /*midiFile*/,
                         const std::filesystem::path& /*wavFile*/,
                         const SoundOptions& /*options*/) {
  return RenderResult::kNoSound;
}

}  // namespace tonadex::platform
