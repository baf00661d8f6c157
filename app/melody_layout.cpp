#include "app/melody_layout.h"

#include <algorithm>
#include <cmath>

#include "core/rtttl.h"

namespace tonadex::app {
namespace {

constexpr double kSide = 12, kAbove = 20, kBelow = 12;  // around the staff
constexpr int kStaffLines = 5;
constexpr double kNoteHeight = 12, kLeastNoteWidth = 3, kNoteGap = 2;
constexpr int kLeastSemitones = 12;  // a few neighbouring notes do not fill the height
constexpr double kMostPixelsPerMs = 0.2;
constexpr double kBarAbove = 8, kBarBelow = 4;
constexpr double kNameRise = 3;      // a name's base line above its note
constexpr double kNameOverhang = 4;  // a name may be that much wider than its note
constexpr double kDotRadius = 2.2, kDotRise = 4;
constexpr double kStaffOpacity = 0.7, kEmptyStaffOpacity = 0.35, kNoteOpacity = 0.62;
constexpr double kAhead = 16;  // a sounding note that near to the right end scrolls

double ShortestNote(const Drawing& drawing) {
  double shortest = drawing.length;
  for (const DrawnNote& note : drawing.notes) {
    shortest = note.length > 0 ? std::min(shortest, note.length) : shortest;
  }
  return shortest;
}

void AddNote(std::vector<PictureMark>& marks, const DrawnNote& note, const Box& box, bool sounds) {
  using Shape = PictureMark::Shape;
  const double opacity = sounds ? 1 : kNoteOpacity;
  marks.push_back({note.outside ? Shape::kHatched : Shape::kNote, box, opacity, sounds});
  if (note.dotted) {
    constexpr double kAcross = 2 * kDotRadius;
    const double right = box.right() - kDotRadius, middle = box.y - kDotRise;
    marks.push_back(
        {Shape::kDot, {right - kAcross, middle - kDotRadius, kAcross, kAcross}, 1, sounds});
  }
  const Box name{box.x, 0, box.width + kNameOverhang, box.y - kNameRise};
  marks.push_back({Shape::kNoteName, name, 1, sounds, note.name});
}

}  // namespace

void MelodyPicture::SetDrawing(const Drawing& drawing) {
  drawing_ = drawing;
  sounding_ = shown_ = -1;
  scrolled_ = 0;
  pixelsPerMs_ = PixelsPerMs();
}

void MelodyPicture::SetSize(const PictureSize& size) {
  size_ = size;
  pixelsPerMs_ = PixelsPerMs();
  ScrollTo(scrolled_);
}

Box MelodyPicture::Staff() const {
  return {kSide, kAbove, size_.width - 2 * kSide, size_.height - kAbove - kBelow};
}

double MelodyPicture::PixelsPerMs() const {
  if (drawing_.length <= 0) {
    return 0;
  }
  const double legible = std::min(size_.name / ShortestNote(drawing_), kMostPixelsPerMs);
  return std::max(Staff().width / drawing_.length, legible);
}

double MelodyPicture::XOf(double ms) const {
  return kSide + ms * pixelsPerMs_ - scrolled_;
}

double MelodyPicture::Page() const {
  return std::max(1.0, Staff().width);
}

double MelodyPicture::Overflow() const {
  const double hidden = std::ceil(pixelsPerMs_ * drawing_.length) - std::floor(Page());
  return hidden > 1 ? hidden : 0;
}

void MelodyPicture::ScrollTo(double position) {
  scrolled_ = std::clamp(position, 0.0, Overflow());
}

bool MelodyPicture::Follow(double ms) {
  return Mark(ms < 0 ? -1 : NoteAt(drawing_, ms));
}

bool MelodyPicture::Mark(int note) {
  const int sounding = note < std::ssize(drawing_.notes) ? note : -1;
  if (sounding == sounding_) {
    return false;
  }
  sounding_ = sounding;
  Reveal(sounding);
  return true;
}

bool MelodyPicture::Show(int index) {
  if (index == shown_) {
    return false;
  }
  shown_ = index;
  Reveal(index);
  return true;
}

void MelodyPicture::Reveal(int index) {
  if (index >= 0) {
    const Box box = NoteBox(static_cast<std::size_t>(index));
    if (box.right() > Staff().right() - kAhead || box.x < kSide) {
      ScrollTo(scrolled_ + box.x - kSide - kScrollStep);
    }
  }
}

std::vector<PictureMark> MelodyPicture::Marks() const {
  using Shape = PictureMark::Shape;
  std::vector<PictureMark> marks;
  const Box staff = Staff();
  const double faint = drawing_.notes.empty() ? kEmptyStaffOpacity : kStaffOpacity;
  for (int line = 0; line < kStaffLines; ++line) {
    const double y = staff.y + (line + 0.5) * staff.height / kStaffLines;
    marks.push_back({Shape::kLine, {0, y, size_.width, 0}, faint});
  }
  for (int bar = 0; drawing_.barLength > 0 && bar * drawing_.barLength < drawing_.length; ++bar) {
    const double x = XOf(bar * drawing_.barLength) - 1;
    if (x >= 0 && x < size_.width) {
      marks.push_back(
          {Shape::kLine, {x, staff.y - kBarAbove, 0, staff.height + kBarAbove + kBarBelow}});
    }
  }
  for (std::size_t i = 0; i < drawing_.notes.size(); ++i) {
    const Box box = NoteBox(i);
    const DrawnNote& note = drawing_.notes[i];
    const bool marked = static_cast<int>(i) == (sounding_ < 0 ? shown_ : sounding_);
    const bool drawn = !note.pause || note.outside || (marked && sounding_ < 0);
    if (drawn && box.right() >= 0 && box.x <= size_.width) {
      AddNote(marks, note, box, marked);
    }
  }
  return marks;
}

Box MelodyPicture::NoteBox(std::size_t index) const {
  const DrawnNote& note = drawing_.notes[index];
  const Box staff = Staff();
  const int spread = std::max(kLeastSemitones, drawing_.highest - drawing_.lowest);
  const double step = (staff.height - kNoteHeight) / spread;
  const double middle = (drawing_.highest + drawing_.lowest) / 2.0;
  const double above = note.pause ? 0 : (note.pitch - middle) * step;
  const double centre = staff.y + staff.height / 2 - above;
  return {XOf(note.start), centre - kNoteHeight / 2,
          std::max(kLeastNoteWidth, note.length * pixelsPerMs_ - kNoteGap), kNoteHeight};
}

int MelodyPicture::NoteUnder(double x) const {
  const double ms = pixelsPerMs_ > 0 ? (x - XOf(0)) / pixelsPerMs_ : -1;
  if (ms < 0 || ms >= drawing_.length) {
    return -1;
  }
  const auto next = std::ranges::upper_bound(drawing_.notes, ms, {}, &DrawnNote::start);
  return static_cast<int>(next - drawing_.notes.begin()) - 1;
}

std::vector<Box> SplashBars() {
  constexpr double kLeft = 36, kFoot = 216, kHeight = 72, kThickness = 7;
  constexpr double kPixelsPerMs = 0.05, kLeastWidth = 4, kGap = 3;
  core::RTTTLMelody melody;
  core::InitMelody(melody, {});
  const Drawing drawing = MelodyDrawing(melody.Text);
  const double step = kHeight / std::max(1, drawing.highest - drawing.lowest);
  std::vector<Box> bars;
  for (const DrawnNote& note : drawing.notes) {
    if (!note.pause) {
      bars.push_back({kLeft + note.start * kPixelsPerMs,
                      kFoot - (note.pitch - drawing.lowest) * step,
                      std::max(kLeastWidth, note.length * kPixelsPerMs - kGap), kThickness});
    }
  }
  return bars;
}

}  // namespace tonadex::app
