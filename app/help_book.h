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
// that were visited and the zoom.
namespace tonadex::app {

// A rich text's source: the file's, or else a page that says why it cannot be shown.
struct HelpSource {
  std::string rtf;
  bool found = false;
};
HelpSource ReadHelp(const std::filesystem::path& file);

enum class HelpCommand {
  kBack,
  kForward,
  kPrevious,  // hit
  kNext,
  kSmaller,
  kNormal,
  kLarger
};

// The buttons of the window's bar; the search field stands behind the first two, the number of
// hits behind the next two. The sign of kNormal is the zoom itself.
struct HelpButton {
  HelpCommand command;
  std::string_view name;  // of the part, for tests and aids
  std::u16string_view sign;
  std::string_view meaning, keys;  // Windows-1252
};
std::span<const HelpButton> HelpButtons();

// What a command changed on the page.
enum class HelpChange { kNothing, kPlace, kHit, kZoom };

// Positions count the characters of the text as the toolkit draws it.
class HelpBook {
 public:
  struct Heading {
    std::size_t position;
    int level;            // 1 for a chapter
    std::u16string text;  // without blanks around it
  };

  // Another manual: nothing visited, no hits.
  void Open();
  // The text as it is drawn. Its headings are the manual's paragraphs found in it as whole lines;
  // the search is done again.
  void SetText(const rtf::Document& manual, std::u16string_view drawn);

  const std::vector<Heading>& headings() const { return headings_; }
  // The section that a position belongs to, 0 before the first one; -1 without headings.
  int SectionAt(std::size_t position) const;

  // Searches without regard to case, accents and kinds of blanks, on from `here`.
  void Search(std::u16string_view wanted, std::size_t here);
  const std::vector<std::size_t>& hits() const { return hits_; }  // rising
  std::size_t HitLength() const { return wanted_.size(); }
  std::optional<std::size_t> Hit() const;  // the position of the one that is marked
  std::string HitsInWords() const;         // "2 de 5", "No aparece" or nothing

  // Goes to a chosen place from `here`, the position at the top of the page, which is noted.
  void GoTo(std::size_t here, std::size_t position);
  std::size_t Place() const { return visited_[visit_]; }

  bool Can(HelpCommand command) const;
  HelpChange Run(HelpCommand command, std::size_t here);
  double Zoom() const;              // 1 for the normal size
  std::string ZoomInWords() const;  // "115 %"

 private:
  std::u16string folded_, wanted_;
  std::vector<Heading> headings_;
  std::vector<std::size_t> hits_;
  std::size_t hit_ = 0;
  std::vector<std::size_t> visited_ = {0};
  std::size_t visit_ = 0;
  int zoomStep_ = 0;
};

}  // namespace tonadex::app
