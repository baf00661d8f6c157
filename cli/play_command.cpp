// reproducir: plays a melody, or renders it to a sound file.

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <iostream>

#include "app/session_state.h"
#include "cli/commands.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/write.h"
#include "formats/pitch.h"
#include "midi/mMidiLibOut.h"
#include "midi/note_times.h"
#include "midi/playback.h"
#include "platform/common/program_folder.h"
#include "platform/posix/user_folders.h"
#include "platform/sound/fluid_sequencer.h"
#include "platform/sound/render_to_wav.h"

namespace tonadex::cli {
namespace {

using platform::RenderResult;

constexpr int kLookMs = 50;        // interval of checking the position
constexpr double kFadingMs = 600;  // time for the last note to fade

struct RenderFailure {
  RenderResult result;
  const char* message;
};

constexpr RenderFailure kRenderFailures[] = {
    {RenderResult::kNoMidiFile, "no se puede leer el fichero MIDI temporal"},
    {RenderResult::kNoSoundFont,
     "no hay sonidos de instrumentos: instala el paquete timgm6mb-soundfont o pon en "
     "TONADEX_SOUNDFONT un fichero .sf2"},
    {RenderResult::kWriteFailed, "no se puede escribir el fichero de sonido"},
    {RenderResult::kNoSound, "este programa se ha compilado sin sonido"},
};

volatile sig_atomic_t interrupted = 0;

// Until the end of the scope, SIGINT and SIGTERM end the melody instead of the program.
class ScopedInterrupt {
 public:
  ScopedInterrupt() {
    interrupted = 0;
    struct sigaction action = {};
    action.sa_handler = [](int number) { interrupted = number; };
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
      ::sigaction(kSignals[i], &action, &before_[i]);
    }
  }
  ~ScopedInterrupt() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
      ::sigaction(kSignals[i], &before_[i], nullptr);
    }
  }
  ScopedInterrupt(const ScopedInterrupt&) = delete;
  ScopedInterrupt& operator=(const ScopedInterrupt&) = delete;

 private:
  static constexpr std::array kSignals = {SIGINT, SIGTERM};
  std::array<struct sigaction, kSignals.size()> before_ = {};
};

std::string Seconds(double ms) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f", ms / 1000);
  return text.data();
}

std::string NoteName(std::int16_t number) {
  if (number == midi::kPauseNumber) {
    return "pausa";
  }
  const int octave = static_cast<int>(std::floor(number / 12.0));
  return std::string(formats::kSpanishPitches[static_cast<std::size_t>(number - 12 * octave)]) +
         " " + std::to_string(octave);
}

// A progress line that is overwritten; nothing when the output is not a terminal.
class ProgressLine {
 public:
  ProgressLine(Context& context, const std::vector<midi::NoteTime>& times)
      : out_(context.out),
        times_(times),
        visible_(&context.out == &std::cout && ::isatty(STDOUT_FILENO) == 1) {}
  ~ProgressLine() {
    if (visible_) {
      out_ << '\n' << std::flush;
    }
  }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  void Show(double ms) {
    while (next_ < times_.size() && times_[next_].end <= ms) {
      ++next_;
    }
    if (!visible_) {
      return;
    }
    const double end = times_.back().end;
    const std::string text = Seconds(std::min(ms, end)) + " / " + Seconds(end) + " s  " +
                             (next_ < times_.size() ? NoteName(times_[next_].number) : "");
    if (text != shown_) {
      out_ << '\r' << text << "\x1b[K" << std::flush;
      shown_ = text;
    }
  }

 private:
  std::ostream& out_;
  const std::vector<midi::NoteTime>& times_;
  bool visible_;
  std::size_t next_ = 0;  // index of the first note that has not ended
  std::string shown_;
};

void Follow(Context& context, platform::FluidSequencer& sequencer,
            const std::vector<midi::NoteTime>& times) {
  ProgressLine progress(context, times);
  bool told = false;
  while (interrupted == 0) {
    const double ms = sequencer.PositionMs().value_or(0);
    if (sequencer.IsSilent() && !told) {
      context.err << "tonadex-cli: no hay dispositivo de sonido: la melodía avanza en silencio\n";
      told = true;
    }
    progress.Show(ms);
    if (ms >= times.back().end + kFadingMs) {
      return;
    }
    ::poll(nullptr, 0, kLookMs);  // Ctrl+C ends the wait
  }
}

void Play(Context& context, const core::RTTTLMelody& melody,
          const std::vector<midi::NoteTime>& times) {
  const ScopedInterrupt scope;
  platform::FluidSequencer sequencer;
  context.out << "Reproduciendo " << ForTerminal(melody.Name) << '\n' << std::flush;
  midi::MciOpenAndPlay(melody, sequencer);
  Follow(context, sequencer, times);
  midi::MciClose(sequencer);
  if (interrupted != 0) {
    Fail(context, ExitCode::kInterrupted);
  }
}

void Render(const std::filesystem::path& midiFile, const std::string& output) {
  const RenderResult result = platform::RenderToWav(midiFile, ArgumentPath(output));
  for (const RenderFailure& failure : kRenderFailures) {
    if (failure.result == result) {
      throw Failure{ExitCode::kSystemFailed, output + ": " + failure.message};
    }
  }
}

midi::Voice VoiceOf(const Arguments& arguments) {
  if (arguments.beep && arguments.instrument) {
    throw Failure{ExitCode::kWrongUse, "elige --pitido o --instrumento"};
  }
  const bool beep =
      arguments.beep ||
      (!arguments.instrument && app::BeepIsChosen(platform::ProgramFolderPath() / app::kStateFile));
  return beep ? midi::Voice::kBeep : midi::Voice::kInstrument;
}

}  // namespace

void PlayFile(Context& context, const Arguments& arguments) {
  const bool plays = arguments.wav.empty();
  const midi::Voice voice = VoiceOf(arguments);
  core::RTTTLMelody melody;
  if (!ParseMelody(context, ReadMelody(context, arguments.file), melody) && !plays) {
    return;
  }
  std::vector<midi::NoteTime> times;
  std::string bytes;
  FailOnError(ExitCode::kNotConverted, arguments.file + ": ", [&] {
    times = midi::NoteTimes(melody);
    bytes = midi::PlayedBytes(melody, voice);
  });
  if (times.empty()) {
    return;
  }
  const std::string target =
      platform::PrivateTempFolder() + "tonadex-cli-" + std::to_string(::getpid()) + ".mid";
  const files::TemporaryFile midiFile(files::PathFromText(target), files::Access::kOwnerOnly);
  if (midiFile.Failure() || !midiFile.Write(bytes)) {
    throw Failure{ExitCode::kSystemFailed,
                  "no se puede escribir el fichero «" + core::ToUtf8(target) + "»"};
  }
  if (plays) {
    melody.FileName = files::TextFromPath(midiFile.Path());
    Play(context, melody, times);
  } else {
    Render(midiFile.Path(), arguments.wav);
  }
}

}  // namespace tonadex::cli
