#pragma once

#include <string>
#include <string_view>
#include <vector>

// The drawing of a melody as plain data for the shells.
namespace tonadex::app {

struct DrawnNote {
  double start = 0;   // ms from the melody's beginning
  double length = 0;  // ms
  double sounds = 0;  // ms from the start of the playback; the sequencer's steps are coarse
  int pitch = 0;      // as in the MIDI file, 60 is c of octave 5; 0 for a pause
  std::string name;   // "do#" to "si"; "" for a pause
  bool pause = false;
  bool dotted = false;
  bool outside = false;  // in an octave that does not fit the chosen phone; see MelodyDrawing
  int number = 0;        // index in the melody, whose unreadable notes are not drawn

  friend bool operator==(const DrawnNote&, const DrawnNote&) = default;
};

struct Drawing {
  std::vector<DrawnNote> notes;  // back to back, in time order; empty when nothing can be drawn
  double length = 0;             // ms
  double soundLength = 0;        // ms of playback; pauses at the end are not played
  double barLength = 0;          // ms between bar lines: four quarter notes
  int lowest = 0, highest = 0;   // of the sounding notes' pitches; 0 when none sounds
  int written = 0;               // notes and pauses of the melody, drawn or not
  int shown = -1;                // index of the note to bring into view and mark, -1 for none

  friend bool operator==(const Drawing&, const Drawing&) = default;
};

// The drawing of an RTTTL text whose sharps are "#", as it is played. Notes that cannot
// be read are left out; a text that is no melody gives an empty drawing. `model` is a model text of
// the catalogue: `outside` are the notes and pauses that the notices of its conversion name for
// their octave and, where its format names none, the notes that it writes in another octave.
// Nothing is outside for "" and unknown models. Never throws, shows nothing.
Drawing MelodyDrawing(std::string_view rtttl, std::string_view model = {});

// Index of the note or pause that is played `ms` after the start of the playback, -1 before the
// start and after the end.
int NoteAt(const Drawing& drawing, double ms);

// A description for screen readers: "24 notas y pausas, 12 segundos, de do 5 a la 6".
std::string DrawingInWords(const Drawing& drawing);

// "do#, 300 ms", followed by a remark for a note that is `outside`.
std::string NoteInWords(const DrawnNote& note);

}  // namespace tonadex::app
