#include "app/help_book.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"
#include "rtf/rtf_escape.h"
#include "rtf/rtf_reader.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr double kZoomFactor = 1.15;
constexpr int kLeastZoom = -3, kMostZoom = 6;

constexpr std::array<HelpButton, 7> kButtons = {{
    {HelpCommand::kBack, "helpBack", u"←", u8"Atrás"_w, "Alt+Left"},
    {HelpCommand::kForward, "helpForward", u"→", "Adelante", "Alt+Right"},
    {HelpCommand::kPrevious, "helpPrevious", u"↑", "Anterior", "Shift+F3"},
    {HelpCommand::kNext, "helpNext", u"↓", "Siguiente", "F3"},
    {HelpCommand::kSmaller, "helpZoomOut", u"−", "Reducir el texto", "Ctrl+-"},
    {HelpCommand::kNormal, "helpZoomReset", u"", u8"Tamaño normal"_w, "Ctrl+0"},
    {HelpCommand::kLarger, "helpZoomIn", u"+", "Ampliar el texto", "Ctrl++"},
}};

// What toolkits put between two lines: paragraph ends and the edges of frames.
bool EndsLine(char16_t c) {
  return c == u'\n' || c == u'\r' || c == u'\u2029' || c == u'\uFDD0' || c == u'\uFDD1';
}

// A character as it is compared in a search: a small letter without accents, any blank a blank. A
// character that Windows-1252 lacks stays as it is.
char16_t Fold(char16_t c) {
  if (c <= u' ' || c == u'\u00A0' || c == u'\u2028' || EndsLine(c)) {
    return u' ';
  }
  const char byte = core::FromUnicode(c);
  const std::string folded = core::Fold({&byte, 1});
  return byte == '?' ? c : static_cast<char16_t>(core::ToUnicode(core::Code(folded[0])));
}

std::u16string Folded(std::u16string_view text) {
  std::u16string folded(text);
  std::ranges::transform(folded, folded.begin(), Fold);
  return folded;
}

std::u16string TextOf(const rtf::Paragraph& paragraph) {
  std::u16string text;
  for (const rtf::Run& run : paragraph.runs) {
    text += run.text;
  }
  return text;
}

std::u16string Trimmed(std::u16string text) {
  std::ranges::replace_if(
      text, [](char16_t c) { return Fold(c) == u' '; }, u' ');
  const std::size_t from = text.find_first_not_of(u' ');
  return from == text.npos ? std::u16string()
                           : text.substr(from, text.find_last_not_of(u' ') + 1 - from);
}

std::string FailurePage(std::string_view why, std::string_view file) {
  std::string page = "{\\rtf1\\ansi\\ansicpg1252\\sa160\\b\\fs36 ";
  page += rtf::Escaped("No se puede mostrar la ayuda") + "\\par\\b0\\fs24 ";
  page += rtf::Escaped(why) + "\\par " + rtf::Escaped(file) + "\\par ";
  return page + "Vuelve a instalar Tonadex para recuperarlo.}";
}

}  // namespace

std::span<const HelpButton> HelpButtons() {
  return kButtons;
}

void HelpBook::Read(const std::filesystem::path& file) {
  const bool readable = core::SkipErrors([&] { source_ = files::ReadBytes(file); });
  found_ = readable && rtf::LooksLikeRtf(source_);
  if (!found_) {
    source_ = FailurePage(readable ? "El fichero no es una ayuda de Tonadex:"
                                   : "No se encuentra el fichero de la ayuda, o no se puede leer:",
                          files::TextFromPath(file));
  }
}

void HelpBook::Open(const std::filesystem::path& file) {
  if (found_ && file == file_) {
    return;
  }
  Read(file);
  file_ = file;
  manual_ = rtf::ReadRtf(source_);
  visited_ = {0};
  visit_ = 0;
  Draw();
  ScrollTo(0);
}

void HelpBook::Redraw() {
  if (!drawing_ && !file_.empty()) {
    const std::size_t top = page_.Top();
    Draw();
    ScrollTo(top);
  }
}

void HelpBook::Draw() {
  drawing_ = true;
  const std::u16string drawn = page_.DrawManual();
  folded_ = Folded(drawn);
  FindHeadings(drawn);
  FindHits();
  hit_ = std::min(hit_, hits_.empty() ? 0 : hits_.size() - 1);
  page_.DrawContents();
  page_.DrawHits();
  page_.DrawButtons();
  drawing_ = false;
}

// A heading is a whole line; the same words may also occur in a sentence.
void HelpBook::FindHeadings(std::u16string_view drawn) {
  headings_.clear();
  std::size_t at = 0;
  for (const rtf::Paragraph& paragraph : manual_.paragraphs) {
    const std::u16string text = TextOf(paragraph), title = Trimmed(text);
    if (paragraph.format.heading == 0 || title.empty()) {
      continue;
    }
    const std::u16string line = Folded(text);
    std::size_t found = folded_.find(line, at);
    const auto whole = [&](std::size_t end) {
      return (found == 0 || EndsLine(drawn[found - 1])) &&
             (end == drawn.size() || EndsLine(drawn[end]));
    };
    while (found != folded_.npos && !whole(found + line.size())) {
      found = folded_.find(line, found + 1);
    }
    if (found != folded_.npos) {
      headings_.push_back({found, paragraph.format.heading, title});
      at = found + line.size();
    }
  }
}

void HelpBook::FindHits() {
  hits_.clear();
  for (std::size_t at = wanted_.empty() ? folded_.npos : folded_.find(wanted_); at != folded_.npos;
       at = folded_.find(wanted_, at + wanted_.size())) {
    hits_.push_back(at);
  }
}

void HelpBook::Search(std::u16string_view wanted) {
  wanted_ = Folded(wanted);
  FindHits();
  const auto from = std::ranges::lower_bound(hits_, page_.Top());
  hit_ = from == hits_.end() ? 0 : static_cast<std::size_t>(from - hits_.begin());
  page_.DrawHits();
  if (!hits_.empty()) {
    page_.DrawHit();
  }
  page_.DrawButtons();
}

std::optional<std::size_t> HelpBook::Hit() const {
  return hits_.empty() ? std::nullopt : std::optional(hits_[hit_]);
}

std::string HelpBook::HitsInWords() const {
  return wanted_.empty() ? ""
         : hits_.empty() ? "No aparece"
                         : std::to_string(hit_ + 1) + " de " + std::to_string(hits_.size());
}

void HelpBook::GoTo(std::size_t heading) {
  const std::size_t position = headings_[heading].position;
  if (position != visited_[visit_]) {
    visited_.resize(visit_ + 1);
    visited_[visit_] = page_.Top();
    visited_.push_back(position);
    ++visit_;
  }
  ScrollTo(position);
  page_.DrawButtons();
}

void HelpBook::ScrollTo(std::size_t position) {
  page_.ScrollTo(position);
  Scrolled();
}

void HelpBook::Scrolled() {
  if (!drawing_) {
    const auto after = std::ranges::upper_bound(headings_, page_.Top(), {}, &Heading::position);
    const int section = std::max(0, static_cast<int>(after - headings_.begin()) - 1);
    page_.DrawSection(headings_.empty() ? -1 : section);
  }
}

bool HelpBook::Can(HelpCommand command) const {
  switch (command) {
    case HelpCommand::kBack:
      return visit_ > 0;
    case HelpCommand::kForward:
      return visit_ + 1 < visited_.size();
    case HelpCommand::kSmaller:
      return zoomStep_ > kLeastZoom;
    case HelpCommand::kNormal:
      return true;
    case HelpCommand::kLarger:
      return zoomStep_ < kMostZoom;
    default:
      return !hits_.empty();
  }
}

void HelpBook::Run(HelpCommand command) {
  if (!Can(command)) {
    return;
  }
  const int zoomBefore = zoomStep_;
  switch (command) {
    case HelpCommand::kBack:
    case HelpCommand::kForward:
      visited_[visit_] = page_.Top();
      visit_ = command == HelpCommand::kBack ? visit_ - 1 : visit_ + 1;
      ScrollTo(visited_[visit_]);
      break;
    case HelpCommand::kPrevious:
    case HelpCommand::kNext:
      hit_ = (hit_ + (command == HelpCommand::kNext ? 1 : hits_.size() - 1)) % hits_.size();
      page_.DrawHit();
      break;
    case HelpCommand::kSmaller:
      --zoomStep_;
      break;
    case HelpCommand::kNormal:
      zoomStep_ = 0;
      break;
    case HelpCommand::kLarger:
      ++zoomStep_;
      break;
  }
  if (zoomStep_ != zoomBefore) {
    Redraw();
  }
  page_.DrawButtons();
}

double HelpBook::Zoom() const {
  return std::pow(kZoomFactor, zoomStep_);
}

std::u16string HelpBook::Caption(const HelpButton& button) const {
  if (button.command != HelpCommand::kNormal) {
    return std::u16string(button.sign);
  }
  const std::string zoom = std::to_string(std::lround(100 * Zoom())) + " %";
  return {zoom.begin(), zoom.end()};
}

}  // namespace tonadex::app
