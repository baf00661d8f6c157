#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "app/melody_notes.h"

// The layout of a melody's drawing in a rectangle, which the shells paint. All distances are in
// device-independent pixels from the upper left corner.
namespace tonadex::app {

struct Box {
  double x = 0, y = 0, width = 0, height = 0;

  double right() const { return x + width; }
  double bottom() const { return y + height; }
  friend bool operator==(const Box&, const Box&) = default;
};

struct PictureSize {
  double width = 0, height = 0;  // of the picture, without a scroll bar
  double name = 0;               // width of a note's name in the shell's font

  friend bool operator==(const PictureSize&, const PictureSize&) = default;
};

inline constexpr double kNoteRadius = 4;  // of a note's corners

// One thing to paint.
struct PictureMark {
  enum class Shape {
    kLine,      // from the box's upper left to its lower right corner; in the border's colour
    kNote,      // a filled box with round corners
    kHatched,   // a note that the chosen phone does not play
    kDot,       // a filled ellipse
    kNoteName,  // its base line is the box's lower edge; left out where it is wider than the box
  };
  Shape shape;
  Box box;
  double opacity = 1;
  bool sounds = false;         // in the accent, its name heavier; else in the text's colour
  std::string_view name = {};  // valid as long as the picture has its drawing
};

// Time runs to the right and pitch upward. The whole melody is in view if its shortest note is wide
// enough for its name; else the picture scrolls.
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
  // Marks a note by its index, -1 for none, in the same way.
  bool Mark(int note);
  int sounding() const { return sounding_; }  // index, -1 for none

  // Marks a note while none sounds and scrolls it into view; -1 for none. False when nothing
  // changed.
  bool Show(int index);

  // All that is in view, in the order of painting.
  std::vector<PictureMark> Marks() const;
  // Where a note lies, in view or not; a pause lies in the middle.
  Box NoteBox(std::size_t index) const;
  // Index of the note or pause at a place, -1 for none.
  int NoteUnder(double x) const;

 private:
  Box Staff() const;
  double PixelsPerMs() const;
  double XOf(double ms) const;
  void Reveal(int index);

  Drawing drawing_;
  PictureSize size_;
  double pixelsPerMs_ = 0;  // of this drawing in this size
  double scrolled_ = 0;
  int sounding_ = -1;
  int shown_ = -1;
};

// The built-in melody's notes along the foot of the splash.
std::vector<Box> SplashBars();

}  // namespace tonadex::app
