#pragma once

#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "app/layout.h"

// What survives the end of the program, whatever ended it: the drafts of the start page, the size
// of the result's type, and where the window stood.
namespace tonadex::app {

class Form1;

// The main window in its toolkit's pixels; while it is maximised, the place that it returns to.
struct WindowPlace {
  Rect rect;  // empty as long as none is known
  bool maximised = false;

  friend bool operator==(const WindowPlace&, const WindowPlace&) = default;
};

// The place moved, and shrunk where it is too large, onto the screen that shows most of it.
// `screens`: what windows may cover, the main screen first; none leaves the place as it is.
Rect OnScreen(Rect place, std::span<const Rect> screens);

// Windows-1252 values by name, in the file's UTF-8 with a line "name=value" each, in which "\r",
// "\n" and "\\" stand for line ends and the backslash. A file or line that is damaged is left out.
using StateValues = std::map<std::string, std::string, std::less<>>;
StateValues ReadState(std::string_view bytes);
std::string StateBytes(const StateValues& values);

inline constexpr std::string_view kStateFile = "estado.ini";  // in the program's folder

// Whether melodies are played with the beep, as the options page left it.
bool BeepIsChosen(const std::filesystem::path& stateFile);

// A file that cannot be read or written is passed over in silence.
class SessionState {
 public:
  explicit SessionState(std::filesystem::path file);
  // Copies what was kept into the window. Values of other versions stay in the file.
  void Restore(Form1& form);
  // Takes over what the window holds now; true while the file does not hold it yet.
  bool Note(const Form1& form);
  // Replaces the file when something new was noted.
  void Save();

 private:
  std::filesystem::path file_;
  StateValues values_;
  bool changed_ = false;
};

}  // namespace tonadex::app
