#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "app/controls.h"
#include "app/program.h"

namespace tonadex::app {

struct ControlInfo;
class Form1;
struct Part;

// Page numbers; the gaps are part of the numbering.
inline constexpr std::int16_t kNoPage = 0;
inline constexpr std::int16_t kSearchPage = 1;
inline constexpr std::int16_t kStartUpPage = 2;  // the server's start page in WebBrowser1
inline constexpr std::int16_t kRepertoirePage = 3;
inline constexpr std::int16_t kInternetPage = 5;  // also WebBrowser1
inline constexpr std::int16_t kOptionsPage = 6;
inline constexpr std::int16_t kStartPage = 8;   // composer and RTTTL box
inline constexpr std::int16_t kTypingPage = 9;  // reached from the repertoire page alone
inline constexpr std::int16_t kMidiPage = 10;   // reached by opening a MIDI file

// The melody that is playing, while PlayMelody shows its message box: one that has a drawing, or
// one without (kTrial).
enum class Sounding { kNothing, kRepertoire, kComposer, kRtttl, kMidi, kTrial };

// State shared by the pages.
class SharedState {
 public:
  explicit SharedState(Program& theProgram) : program(theProgram) {}

  // Plays the melody and sets `sounding` and `soundLength` meanwhile.
  void Play(Sounding what, core::RTTTLMelody& melody);
  // The requests of a download or an upload.
  std::function<std::string(std::string_view path)> Fetch() {
    return [this](std::string_view path) { return Request(program, path); };
  }

  Program& program;
  std::int16_t paginaactual = kNoPage;
  Sounding sounding = Sounding::kNothing;
  double soundLength = 0;  // ms
  // Gets the focus when what changed is drawn; the shell then resets it. nullptr leaves it.
  Control Form1::*focusNext = nullptr;
  Control List1;                // of the search and the repertoire page
  Control Text1, Text2, Text3;  // raw reply, current record, its number; never shown
};

}  // namespace tonadex::app
