#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/rtf_document.h"

// The help window without its drawing: the manual's contents, the hits of a search, the places
// visited and the zoom.
namespace tonadex::app {

enum class HelpCommand {
  kBack,
  kForward,
  kPrevious,  // hit
  kNext,
  kSmaller,
  kNormal,
  kLarger
};

// The buttons of the window's bar; the search field follows the first two, the number of hits
// the next two. The sign of kNormal is the zoom itself.
struct HelpButton {
  HelpCommand command;
  std::string_view name;  // of the part, for tests and aids
  std::u16string_view sign;
  std::string_view meaning, keys;  // Windows-1252
};
std::span<const HelpButton> HelpButtons();

// The shell's window, which draws what the book holds. Positions count the characters of the text
// as the toolkit draws it.
class HelpPage {
 public:
  virtual ~HelpPage() = default;
  // Lays out the book's manual at its zoom and returns the text as drawn.
  virtual std::u16string DrawManual() = 0;
  virtual void DrawContents() = 0;                  // the headings
  virtual void DrawSection(int section) = 0;        // marks one of them, -1 for none
  virtual void DrawHits() = 0;                      // marks the hits
  virtual void DrawHit() = 0;                       // marks the current one and brings it into view
  virtual void DrawButtons() = 0;                   // and the number of hits
  virtual std::size_t Top() const = 0;              // position of the first text in view
  virtual void ScrollTo(std::size_t position) = 0;  // puts its line at the top
};

// The state of the help window and what its commands do.
class HelpBook {
 public:
  struct Heading {
    std::size_t position;
    int level;            // 1 for a chapter
    std::u16string text;  // without blanks around it
  };

  explicit HelpBook(HelpPage& page) : page_(page) {}

  // Shows the file; one that is shown already keeps its place, one that could not be read is tried
  // again.
  void Open(const std::filesystem::path& file);
  // Draws again in the same place: zoom, colours or type have changed.
  void Redraw();
  // Searches without regard to case, accents and kinds of blanks, on from the top of the page.
  void Search(std::u16string_view wanted);
  void GoTo(std::size_t heading);
  void Run(HelpCommand command);
  // The page was scrolled.
  void Scrolled();

  // Rich text, in Windows-1252.
  const std::string& source() const { return source_; }
  const rtf::Document& manual() const { return manual_; }
  const std::vector<Heading>& headings() const { return headings_; }

  const std::vector<std::size_t>& hits() const { return hits_; }  // positions, rising
  std::size_t HitLength() const { return wanted_.size(); }
  std::optional<std::size_t> Hit() const;  // position of the current one
  std::string HitsInWords() const;         // "2 de 5", "No aparece" or nothing

  bool Can(HelpCommand command) const;
  std::u16string Caption(const HelpButton& button) const;
  double Zoom() const;  // 1 for the normal size

 private:
  void Read(const std::filesystem::path& file);
  void Draw();
  void FindHeadings(std::u16string_view drawn);
  void FindHits();
  void ScrollTo(std::size_t position);

  HelpPage& page_;
  std::string source_;  // of the file, or of a page that says why it cannot be shown
  bool found_ = false;
  std::filesystem::path file_;
  rtf::Document manual_;
  std::u16string folded_, wanted_;
  std::vector<Heading> headings_;
  std::vector<std::size_t> hits_;
  std::size_t hit_ = 0;
  std::vector<std::size_t> visited_ = {0};
  std::size_t visit_ = 0;
  int zoomStep_ = 0;
  bool drawing_ = false;  // what the page reports meanwhile is not the user's doing
};

}  // namespace tonadex::app
