#pragma once

#include <string>
#include <string_view>

// What the parts of the composer notation converter share: its defaults, its error log and the
// tables between RTTTL and the keys of the phone.
namespace tonadex::nokia3210 {

// Duration and octave of a melody built from converted notes, as its header gives them: notes that
// equal them are written without. A note typed without duration takes this one.
struct Defaults {
  std::string Duration = "4";
  std::string Octave = "5";
};

inline constexpr std::string_view kConvertSource = "CNokia.Convert";
inline constexpr std::string_view kGetOctaveSource = "modNok.GetOctave";

// What a conversion could not do, Windows-1252.
class ErrorLog {
 public:
  // Adds "[source] message"; entries are parted by a bare CR.
  void AddError(std::string_view source, std::string_view message);
  void Clear() { text_.clear(); }
  // "" when nothing was logged.
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

// The composer's octave mark of an RTTTL octave ("5" gives "1") and back ("1" gives "5"). "4" and
// "8", which the phone lacks, give "0" and "4" and are logged. "" for anything else.
std::string_view GetOctave(std::string_view octave, ErrorLog& log);

// The phone's key of a note: "c" gives "1", "b" gives "7", the pause "-" gives "0". Lower case
// only; "" for anything else.
std::string_view GetKey(std::string_view note);

}  // namespace tonadex::nokia3210
