#include "app/melody_layout.h"

#include <gtest/gtest.h>

#include "tests/core/test_melody.h"

namespace tonadex::app::melody_layout_test {

constexpr PictureSize kSizes[] = {{200, 80, 20}, {500, 150, 20}, {1200, 220, 33}};

MelodyPicture Picture(const std::string& notes, const PictureSize& size) {
  MelodyPicture picture;
  picture.SetSize(size);
  picture.SetDrawing(MelodyDrawing("x:d=4,o=5,b=100:" + notes));
  return picture;
}

std::vector<Box> BoxesOf(const MelodyPicture& picture, PictureMark::Shape shape) {
  std::vector<Box> boxes;
  for (const PictureMark& mark : picture.Marks()) {
    if (mark.shape == shape) {
      boxes.push_back(mark.box);
    }
  }
  return boxes;
}

std::vector<Box> NotesInView(const MelodyPicture& picture) {
  return BoxesOf(picture, PictureMark::Shape::kNote);
}

std::string ManyNotes() {
  return "c" + test::Repeated(",16c,p,2a#.6", 100);
}

TEST(MelodyPicture, NotesStandInOrderHigherOnesHigherAndNoneOutside) {
  for (const PictureSize& size : kSizes) {
    const MelodyPicture picture = Picture("8c.3,c#3,16b3,c,1a8", size);
    const std::vector<Box> dots = BoxesOf(picture, PictureMark::Shape::kDot);
    ASSERT_EQ(dots.size(), 1U);
    EXPECT_LE(dots[0].right(), picture.NoteBox(0).right()) << "it is no part of the next name";
    for (std::size_t i = 0; i < 5; ++i) {
      const Box box = picture.NoteBox(i);
      EXPECT_TRUE(box.y >= 0 && box.bottom() <= size.height && box.x >= 0);
      if (i > 0) {
        EXPECT_LT(box.y, picture.NoteBox(i - 1).y);
        EXPECT_GE(box.x, picture.NoteBox(i - 1).right());
      }
    }
  }
}

// A short melody fills the picture; in a longer one the shortest note is as wide as its name.
TEST(MelodyPicture, IsAsLongAsItsShortestNoteNeeds) {
  for (const PictureSize& size : kSizes) {
    const MelodyPicture fitting = Picture("c,d,e", size);
    EXPECT_EQ(fitting.Overflow(), 0);
    EXPECT_NEAR(fitting.NoteBox(2).right(), size.width - 12, 3);
    const MelodyPicture scrolling = Picture(ManyNotes(), size);
    EXPECT_GT(scrolling.Overflow(), size.width);
    EXPECT_NEAR(scrolling.NoteBox(1).width, size.name, 5);
    EXPECT_LT(NotesInView(scrolling).size(), 25U);
    EXPECT_EQ(NotesInView(scrolling).front(), scrolling.NoteBox(0));
  }
}

TEST(MelodyPicture, KeepsTheSoundingNoteInViewAndFindsWhatIsUnderThePointer) {
  for (const PictureSize& size : kSizes) {
    MelodyPicture picture = Picture(ManyNotes(), size);
    const auto notes = picture.drawing().notes;
    for (std::size_t i = 0; i < notes.size(); i += 7) {
      EXPECT_TRUE(picture.Follow(notes[i].sounds + 1));
      EXPECT_FALSE(picture.Follow(notes[i].sounds + 2));
      EXPECT_EQ(picture.sounding(), static_cast<int>(i));
      const Box box = picture.NoteBox(i);
      EXPECT_TRUE(box.x >= 0 && box.x < size.width) << i;
      EXPECT_EQ(picture.NoteUnder(box.x + 1), static_cast<int>(i));
    }
    EXPECT_TRUE(picture.Follow(-1));
    EXPECT_EQ(picture.sounding(), -1);
    picture.ScrollTo(1e9);
    EXPECT_EQ(picture.scrolled(), picture.Overflow());
    EXPECT_EQ(picture.NoteUnder(size.width - 1), -1);
    EXPECT_EQ(NotesInView(picture).back(), picture.NoteBox(notes.size() - 1));
    picture.SetDrawing(MelodyDrawing("x:c"));
    EXPECT_EQ(picture.scrolled(), 0);
  }
}

TEST(MelodyPicture, ABarLineStandsBeforeEachFourthQuarter) {
  const MelodyPicture picture = Picture("c,d,e,f,2g,2a,c", {600, 100, 20});
  const auto lines = BoxesOf(picture, PictureMark::Shape::kLine);
  constexpr std::size_t kStaffLines = 5;
  ASSERT_EQ(lines.size(), kStaffLines + 3);
  const std::size_t first[] = {0, 4, 6};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(lines[kStaffLines + i].x, picture.NoteBox(first[i]).x - 1, 0.01);
  }
  EXPECT_EQ(MelodyPicture().Marks().size(), kStaffLines);
}

}  // namespace tonadex::app::melody_layout_test
