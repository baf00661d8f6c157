#pragma once

#include <cstddef>
#include <vector>

#include "app/melody_notes.h"

// Where the parts of a melody's drawing lie in a rectangle: shells only paint them. All distances
// are device-independent pixels from the picture's upper left corner.
namespace tonadex::app {

struct Box {
  double x = 0, y = 0, width = 0, height = 0;

  double right() const { return x + width; }
  double bottom() const { return y + height; }
  friend bool operator==(const Box&, const Box&) = default;
};

struct PictureSize {
  double width = 0, height = 0;  // what is there for the picture, without a scroll bar
  double name = 0;               // a note's name as the shell writes it

  friend bool operator==(const PictureSize&, const PictureSize&) = default;
};

inline constexpr double kNoteRadius = 4;    // of a note's corners
inline constexpr double kNameRise = 3;      // a name's base line above its note
inline constexpr double kNameOverhang = 4;  // a name may be that much wider than its note
inline constexpr double kDotRadius = 1.8;   // of the dot of a dotted note, which stands
inline constexpr double kDotRise = 4;       // that much above the note's right end

// Time runs to the right and pitch upward. The whole melody is in view where its shortest note has
// room for its name, else it is longer than the picture and scrolls.
class MelodyPicture {
 public:
  // Another melody: scrolled to its beginning, with no sounding note.
  void SetDrawing(const Drawing& drawing);
  const Drawing& drawing() const { return drawing_; }
  void SetSize(const PictureSize& size);

  // How far the picture can be scrolled, 0 when all is in view; how far it is; one view's length.
  double Overflow() const;
  double scrolled() const { return scrolled_; }
  double Page() const;
  static constexpr double kScrollStep = 48;
  void ScrollTo(double position);

  // Marks the note that sounds `ms` after the playback began and scrolls it into view; a negative
  // time marks none. False when nothing changed.
  bool Follow(double ms);
  int sounding() const { return sounding_; }  // index, -1 for none

  // The five lines' heights.
  std::vector<double> StaffLines() const;
  // Bar lines in view: a Box without width each.
  std::vector<Box> BarLines() const;
  // Where a note lies, in view or not; of a pause, its time.
  Box NoteBox(std::size_t index) const;
  // Indexes of the notes in view, pauses left out.
  std::vector<std::size_t> NotesInView() const;
  // Index of the note or pause at a place, -1 for none.
  int NoteUnder(double x) const;

 private:
  Box Staff() const;
  double PixelsPerMs() const;
  double XOf(double ms) const;

  Drawing drawing_;
  PictureSize size_;
  double pixelsPerMs_ = 0;  // of this drawing in this size
  double scrolled_ = 0;
  int sounding_ = -1;
};

// The built-in melody's notes along the foot of the splash.
std::vector<Box> SplashBars();

}  // namespace tonadex::app
