#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/sound/fluid_engine.h"
#include "platform/sound/playback.h"

namespace tonadex::platform {
namespace {

using Clock = std::chrono::steady_clock;

// A device that takes longer to start is not used, because the melody would start too late.
constexpr std::chrono::milliseconds kStartLimit{1500};
// Maximum time that the program waits on exit for a device that does not respond.
constexpr std::chrono::milliseconds kEndLimit{1000};

// The driver's buffer. Each period wakes a sound server and its client about ten times; closing the
// device waits for one period (70 ms), so it cannot be much longer.
constexpr int kPeriodFrames = 3072;
constexpr int kPeriods = 2;
// Latency from starting the player: on average half a period passes before the driver requests more
// samples.
constexpr std::chrono::duration<double> kBuffered{kPeriodFrames * (kPeriods + 0.5) / kSampleRate};

// State shared by a playback and its worker thread. The worker creates and destroys all FluidSynth
// objects; other threads only stop the player, while holding the lock.
class Sounding : public Playback {
 public:
  // Stops a melody, or prevents one that is starting from sounding.
  void Stop() override {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
    if (engine_ != nullptr) {
      fluid_player_stop(engine_->player.get());
      fluid_synth_all_sounds_off(engine_->synth.get(), -1);
    }
    changed_.notify_all();
  }

  bool IsStopped() {
    const std::lock_guard lock(mutex_);
    return stopped_;
  }

  bool IsSilent() override {
    const std::lock_guard lock(mutex_);
    return silent_;
  }

  double PositionMs() override {
    const std::lock_guard lock(mutex_);
    const Clock::time_point now = Clock::now();
    if (!begin_ && now >= made_ + kStartLimit) {
      begin_ = made_ + kStartLimit;
      silent_ = true;
    }
    return begin_ ? std::max(0.0, std::chrono::duration<double, std::milli>(now - *begin_).count())
                  : 0.0;
  }

  // Called when the worker has released everything.
  void End() {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
  }

  bool WaitForEnd(std::chrono::milliseconds limit) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [this] { return ended_; });
  }

  // Runs without sound; the position follows the clock.
  void RunSilent() {
    const std::lock_guard lock(mutex_);
    silent_ = true;
    if (!begin_) {
      begin_ = Clock::now();
    }
  }

  // Plays until Stop; the engine's driver must be running. Does nothing after kStartLimit.
  void Run(const FluidEngine& engine) {
    std::unique_lock lock(mutex_);
    if (stopped_ || begin_) {
      return;
    }
    fluid_player_play(engine.player.get());
    begin_ = Clock::now() + std::chrono::duration_cast<Clock::duration>(kBuffered);
    engine_ = &engine;
    changed_.wait(lock, [this] { return stopped_; });
    engine_ = nullptr;
  }

 private:
  const Clock::time_point made_ = Clock::now();
  std::mutex mutex_;
  std::condition_variable changed_;
  bool stopped_ = false;
  bool silent_ = false;
  bool ended_ = false;
  std::optional<Clock::time_point> begin_;  // position 0
  const FluidEngine* engine_ = nullptr;     // while playing
};

void PrepareDriver(fluid_settings_t* settings) {
  fluid_settings_setint(settings, "audio.period-size", kPeriodFrames);
  fluid_settings_setint(settings, "audio.periods", kPeriods);
  fluid_settings_setint(settings, "audio.realtime-prio", 0);  // requesting a priority takes time
  fluid_settings_setstr(settings, "audio.file.type", "raw");
}

// False when FluidSynth was built without the driver.
bool ChooseDriver(fluid_settings_t* settings, const std::string& driver) {
  const std::size_t colon = driver.find(':');
  const std::string file = colon == std::string::npos ? "/dev/null" : driver.substr(colon + 1);
  fluid_settings_setstr(settings, "audio.file.name", file.c_str());
  return fluid_settings_setstr(settings, "audio.driver", driver.substr(0, colon).c_str()) ==
         FLUID_OK;
}

FluidDriver OpenDriver(const FluidEngine& engine, const std::vector<std::string>& drivers,
                       Sounding& sounding) {
  PrepareDriver(engine.settings.get());
  for (const std::string& name : drivers) {
    if (sounding.IsStopped()) {
      break;
    }
    if (!ChooseDriver(engine.settings.get(), name)) {
      continue;
    }
    if (FluidDriver driver{new_fluid_audio_driver(engine.settings.get(), engine.synth.get())}) {
      return driver;
    }
  }
  return nullptr;
}

void Sound(const SoundOptions& options, const std::string& midiBytes, Sounding& sounding) {
  if (!options.drivers.empty() && !sounding.IsStopped()) {
    const FluidEngine engine = MakeEngine(options.soundFonts, midiBytes);
    if (engine.IsReady()) {
      if (const FluidDriver driver = OpenDriver(engine, options.drivers, sounding)) {
        sounding.Run(engine);
        return;
      }
    }
  }
  sounding.RunSilent();
}

class FluidSoundPlayer : public Player {
 public:
  explicit FluidSoundPlayer(SoundOptions options) : options_(std::move(options)) {}

  ~FluidSoundPlayer() override {
    // A hanging driver must not prevent the program from ending.
    if (latest_ && !latest_->WaitForEnd(kEndLimit)) {
      worker_.detach();
    }
  }

  std::shared_ptr<Playback> Start(std::string midiBytes) override {
    latest_ = std::make_shared<Sounding>();
    try {
      worker_ = std::jthread([options = options_, midi = std::move(midiBytes), sounding = latest_,
                              before = std::move(worker_)]() mutable {
        if (before.joinable()) {
          before.join();
        }
        Sound(options, midi, *sounding);
        sounding->End();
      });
    } catch (const std::system_error&) {
      latest_->RunSilent();
      latest_->End();
    }
    return latest_;
  }

 private:
  SoundOptions options_;
  std::shared_ptr<Sounding> latest_;
  std::jthread worker_;  // the latest; it waits for the previous one
};

}  // namespace

std::unique_ptr<Player> MakePlayer(SoundOptions options) {
  return std::make_unique<FluidSoundPlayer>(std::move(options));
}

}  // namespace tonadex::platform
