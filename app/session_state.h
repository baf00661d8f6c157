#pragma once

#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "app/layout.h"

// State that survives the end of the program, even a killed one: what the rows of
// app/control_table.h keep, such as the drafts of the start page, and the window's place.
namespace tonadex::app {

class Form1;

// The main window's place in the toolkit's pixels; for a maximised one its restored place.
struct WindowPlace {
  Rect rect;  // empty when unknown
  bool maximised = false;

  friend bool operator==(const WindowPlace&, const WindowPlace&) = default;
};

// Moves the place, and shrinks it if needed, to fit the screen that shows most of it. `screens` are
// the areas that windows may cover, the main screen's first; without any the place is unchanged.
Rect OnScreen(Rect place, std::span<const Rect> screens);

// Values by name in Windows-1252. The file has one line "name=value" each, in UTF-8; "\r", "\n" and
// "\\" in a value stand for CR, LF and the backslash. Damaged files and lines are ignored.
using StateValues = std::map<std::string, std::string, std::less<>>;
StateValues ReadState(std::string_view bytes);
std::string StateBytes(const StateValues& values);

inline constexpr std::string_view kStateFile = "estado.ini";  // in the program's folder
inline constexpr std::string_view kBeepState = "sonido.pitido";

// Whether melodies are played with the beep, as the options page left it.
bool BeepIsChosen(const std::filesystem::path& stateFile);

// A file that cannot be read or written is silently ignored.
class SessionState {
 public:
  explicit SessionState(std::filesystem::path file);
  // Copies the stored values into the window. Unknown values stay in the file.
  void Restore(Form1& form);
  // Copies the window's values; true if they have not been saved yet.
  bool Note(const Form1& form);
  // Replaces the file if Note found changes.
  void Save();

 private:
  std::filesystem::path file_;
  StateValues values_;
  bool changed_ = false;
};

}  // namespace tonadex::app
