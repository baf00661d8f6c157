#include "app/pages/typing_page.h"

#include <algorithm>
#include <array>
#include <utility>

#include "app/form1.h"
#include "app/layout.h"
#include "app/pdf.h"
#include "app/save_melody.h"
#include "app/typing_sheet.h"
#include "app/words.h"
#include "core/message_box.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/write.h"
#include "midi/playback.h"
#include "phones/conversion.h"
#include "phones/phone_description.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using F = Form1;
using Align = Shape::Align;

constexpr int kLowestStep = 250, kLeastKeypad = 260, kMostKeypad = 460, kPaceWidth = 72;
constexpr int kWidestGuide = 2 * look::kMeasure - 8 * look::kGrid;
constexpr std::uint32_t kTickMs = 50;
constexpr int kLeastSeconds = 1, kMostSeconds = 10;
constexpr std::string_view kGoOn = u8"Avan&zar solo"_w, kStop = "Parar (&Z)";
constexpr double kLeastWord = 12, kMostWord = 18;  // font size of the words on a key
constexpr std::size_t kShortPress = 3;             // "×12"
constexpr std::size_t kLongWord = 11;              // longer words on a key take two lines
constexpr std::string_view kNoKeys = "ninguna tecla";
constexpr std::string_view kSeen = "En la pantalla debe verse: ";
constexpr std::string_view kPdfFilter = "PDF (*.pdf)";
constexpr std::string_view kLast = u8"Es lo último: después, guarda la melodía en el móvil."_w;
constexpr std::string_view kBefore = "Antes", kAfter = u8"Después"_w;

constexpr ControlInfo Step(std::string_view name, Control F::*member, std::string_view caption,
                           Look look, Handler click, std::string_view shortcut) {
  return WithKeys(Button(look, name, member, caption, "", "", click), shortcut);
}

constexpr auto kRows = std::to_array<ControlInfo>({
    Words("guideTitle", &F::guideTitle, "", Font::kHeading),
    Shapes("stepView", &F::stepView, &F::StepPicture, &F::nextGroup_Click),
    Shapes("keypadView", &F::keypadView, &F::KeypadPicture, &F::nextGroup_Click),
    View("guideView", &F::guideView, &F::guideDrawing, Sounding::kNothing),
    Step("firstGroup", &F::firstGroup, "Al &principio", Look::kButton, &F::firstGroup_Click,
         "Home"),
    Step("previousGroup", &F::previousGroup, "&Anterior", Look::kButton, &F::previousGroup_Click,
         "Left Backspace"),
    Step("nextGroup", &F::nextGroup, "&Siguiente", Look::kPrimary, &F::nextGroup_Click,
         "Right Space Return"),
    Step("lastGroup", &F::lastGroup, "Al fina&l", Look::kButton, &F::lastGroup_Click, "End"),
    Kept(WithKeys(Button(Look::kChoice, "soundNotes", &F::soundNotes, u8"Oír las no&tas"_w, "",
                         u8"Que suene cada nota al llegar a ella (F6)"_w, &F::soundNotes_Click),
                  "F6"),
         {"guia.sonido", 0, 1}),
    Button(Look::kButton, "goOnButton", &F::goOnButton, kGoOn, "",
           u8"Pasar al grupo siguiente sin pulsar nada"_w, &F::goOnButton_Click),
    Button(Look::kButton, "fasterButton", &F::fasterButton, u8"–"_w, "", "Menos tiempo por grupo",
           &F::fasterButton_Click, "Menos tiempo por grupo"),
    Words("pace", &F::pace, ""),
    Button(Look::kButton, "slowerButton", &F::slowerButton, "+", "", u8"Más tiempo por grupo"_w,
           &F::slowerButton_Click, u8"Más tiempo por grupo"_w),
    Button(Look::kButton, "saveSheet", &F::saveSheet, u8"&Guardar hoja en PDF…"_w, "guardar",
           u8"Guardar los grupos numerados y el teclado en una hoja"_w, &F::saveSheet_Click),
    Button(Look::kButton, "printSheet", &F::printSheet, "I&mprimir hoja", "imprimir",
           u8"Imprimir los grupos numerados y el teclado"_w, &F::printSheet_Click),
    Button(Look::kButton, "openSheet", &F::openSheet, "Abrir", "", "Abrir la hoja guardada",
           &F::openSheet_Click),
    Button(Look::kButton, "showSheet", &F::showSheet, u8"Mostrar en la &carpeta"_w, "",
           "Abrir la carpeta de la hoja guardada", &F::showSheet_Click),
    Step("leaveGuide", &F::leaveGuide, "&Volver", Look::kButton, &F::leaveGuide_Click, "Esc"),
    Row(Look::kTimer, "keyTimer", &F::keyTimer, "", {Event::kTick, &F::keyTimer_Timer}),
});

Shape Bold(Shape text) {
  return text.bold = true, text;
}
Shape Mono(Shape text) {
  return text.mono = true, text;
}

std::string GroupWords(const phones::TypingStep& step) {
  return step.group.empty() ? std::string(kNoKeys) : step.group;
}

// Adds the presses of a group as a row of small keys; `lit` is in the accent colour.
void AddPresses(Picture& picture, const phones::TypingStep& step, const phones::KeyPress* lit,
                const Box& place) {
  constexpr double kKey = 0.9, kWords = 0.24, kGap = 0.4;  // as fractions of the row's height
  const auto width = [](const phones::KeyPress& press) {
    const auto letters = static_cast<double>(phones::PressWords(press).size());
    return kKey + (letters > 0 ? kWords * (letters + 1) : 0);
  };
  double all = -kGap;
  for (const phones::KeyPress& press : step.keys) {
    all += width(press) + kGap;
  }
  const double unit = std::min(place.height, place.width / std::max(all, 1.0));
  const double top = place.y + (place.height - unit) / 2;
  double x = place.x + (place.width - all * unit) / 2;
  for (const phones::KeyPress& press : step.keys) {
    const bool now = &press == lit;
    const Box key = {x, top, kKey * unit, unit};
    picture.push_back(Filled(key, now ? Ink::kAccent : Ink::kAccentWash, unit / 6));
    picture.push_back(Bold(
        Text(std::string(1, press.key), key, unit * 0.55, now ? Ink::kAccentText : Ink::kText)));
    picture.push_back(Bold(Text(phones::PressWords(press),
                                {key.right() + kWords * unit / 2, top, width(press) * unit, unit},
                                unit * 0.42, now ? Ink::kAccent : Ink::kText, Align::kLeft)));
    x += (width(press) + kGap) * unit;
  }
}

// Adds "Antes" or "Después" and the neighbouring groups in small type.
void AddNeighbours(Picture& picture, std::string_view words, const TypingGuide& guide, int first,
                   int last, const Box& row, double unit) {
  const double label = 76 * unit, gap = 8 * unit;
  const double cell = (row.width - label) / kGroupsAhead - gap;
  if (guide.Group(first) == nullptr) {
    return;
  }
  picture.push_back(Text(std::string(words), {row.x, row.y, label, row.height}, 14 * unit,
                         Ink::kMuted, Align::kLeft));
  for (int offset = first; offset <= last; ++offset) {
    if (const phones::TypingStep* step = guide.Group(offset)) {
      const Box box = {row.x + label + (offset - first) * (cell + gap), row.y, cell, row.height};
      picture.push_back(Filled(box, Ink::kWindow, 6));
      picture.push_back(
          Mono(Text(GroupWords(*step), {box.x + gap, box.y, box.width - 2 * gap, box.height},
                    18 * unit, Ink::kMuted)));
    }
  }
}

struct KeyFace {
  Ink ground, edge, ink, faint;
};

// Adds a key of the keypad: its signs, its function and how to press it now. How to press a held
// key is long: it takes the line of the function, which moves up to the label.
void AddKey(Picture& picture, const phones::KeypadKey& key, const Box& box, const KeyFace& face,
            std::string_view press) {
  const double pad = box.height * 0.1, radius = box.height * 0.16;
  picture.push_back(Filled(box, face.ground, radius));
  picture.push_back(Frame(box, face.edge, face.edge == Ink::kBorder ? 1 : 2, radius));
  // A long function takes two lines, split at its first comma: "corchea" / "re, mi, fa".
  const bool held = press.size() > kShortPress;
  const std::size_t comma = key.word.size() > kLongWord ? key.word.find(", ") : key.word.npos;
  const std::string_view word = key.word.substr(0, comma);
  const std::string_view second = comma == key.word.npos || held ? "" : key.word.substr(comma + 2);
  const double size = std::clamp(box.height * (second.empty() ? 0.24 : 0.2), kLeastWord, kMostWord);
  const double line = size * 1.2;
  double y = box.bottom() - (second.empty() ? pad : pad / 2) - line * (second.empty() ? 1 : 2);
  const Box upper = {box.x + pad, box.y + pad / 4, box.width - 2 * pad, y - box.y - pad / 4};
  const double label = std::min(box.height * 0.42, upper.height);
  const Box beside = {upper.x + label * 0.8, upper.y, upper.width - label * 0.8, upper.height};
  picture.push_back(Bold(Text(std::string(1, key.label), {upper.x, upper.y, label, upper.height},
                              label, key.word.empty() ? face.faint : face.ink, Align::kLeft)));
  if (press.empty() || held) {
    picture.push_back(Text(std::string(held ? word : key.signs.substr(1)), beside, size, face.faint,
                           Align::kRight));
  } else {
    picture.push_back(Bold(Text(std::string(press), beside, std::max(kLeastWord, box.height * 0.3),
                                face.ink, Align::kRight)));
  }
  for (const std::string_view words : {held ? press : word, second}) {
    picture.push_back(Text(std::string(words), {upper.x, y, upper.width, line}, size, face.ink,
                           Align::kLeft, held));
    y += line;
  }
}

}  // namespace

std::span<const ControlInfo> TypingPage::Rows() {
  return kRows;
}

Part TypingPage::Layout(bool wide) {
  Part step = The(&F::stepView).Weight(7).Heights(kLowestStep);
  Part keypad = The(&F::keypadView)
                    .Weight(wide ? 6 : 4)
                    .Widths(kLeastKeypad, wide ? look::kMeasure : kMostKeypad)
                    .Heights(kLowestStep);
  return Centred(Column({
                     The(&F::guideTitle),
                     Row({std::move(step), std::move(keypad)}).Gap(look::kPageMargin).Weight(5),
                     The(&F::guideView).Weight(1).Heights(look::kLowestView, look::kTallestView),
                     Row({The(&F::nextGroup), The(&F::previousGroup), The(&F::firstGroup),
                          The(&F::lastGroup), Stretch(), The(&F::soundNotes), The(&F::goOnButton),
                          The(&F::fasterButton), The(&F::pace).Widths(kPaceWidth, kPaceWidth),
                          The(&F::slowerButton)})
                         .Wraps(),
                     Row({The(&F::saveSheet), The(&F::printSheet), The(&F::openSheet),
                          The(&F::showSheet), Stretch(), The(&F::leaveGuide)})
                         .Wraps(),
                 }),
                 kWidestGuide)
      .Margins(look::kPageMargin, look::kGrid, look::kPageMargin)
      .Scrolls();
}

TypingPage::TypingPage(SharedState& state) : state_(state) {
  keyTimer.enabled = false;
  keyTimer.interval = kTickMs;
}

bool TypingPage::OpenGuide(const ShownResult& result) {
  const std::string_view typed = phones::TypedModel(result.model);
  const auto page = phones::ConvertQuietly(melody_, result.line, typed);
  if (!page || !guide_.Open(typed, page->result, melody_)) {
    return false;
  }
  row_ = result.row;
  guideTitle.caption = SheetTitle(result.line, phones::PhoneName(result.model), melody_.Beats);
  guideDrawing = MelodyDrawing(melody_.Text, typed);
  shownMs_ = 0;
  keyTimer.enabled = true;
  SoundNote();
  return true;
}

void TypingPage::CloseGuide() {
  guide_.Close();
  HushNote();
  guideDrawing = {};
  keyTimer.enabled = goesOn_ = false;
  saved_.clear();
}

void TypingPage::RefreshTyping() {
  const phones::TypingStep* step = guide_.Group();
  const std::size_t last = guide_.steps().empty() ? 0 : guide_.steps().size() - 1;
  firstGroup.enabled = previousGroup.enabled = guide_.at() > 0;
  nextGroup.enabled = lastGroup.enabled = guide_.at() < last;
  goOnButton.caption = goesOn_ ? kStop : kGoOn;
  goOnButton.enabled = goesOn_ || nextGroup.enabled;
  soundNotes.checked = soundNotes.value != 0;
  pace.caption = "cada " + std::to_string(seconds_) + " s";
  fasterButton.enabled = seconds_ > kLeastSeconds;
  slowerButton.enabled = seconds_ < kMostSeconds;
  openSheet.visible = showSheet.visible = step != nullptr && !saved_.empty();
  guideView.listIndex = guide_.DrawnNote(guideDrawing);
  stepView.text = step == nullptr
                      ? ""
                      : guide_.Position() + ": " + KeysInWords(*step) + ". " + step->words +
                            (step->display.empty() ? "" : ". ") +
                            (step->display.empty() ? "" : std::string(kSeen)) + step->display;
  if (step != nullptr && guide_.at() == last) {
    stepView.text.append(". ").append(kLast);
  }
  keypadView.text = u8"Teclado del móvil"_w;
}

void TypingPage::Go(GuideMove move) {
  if (guide_.Move(move)) {
    shownMs_ = 0;
    SoundNote();
  }
}

// The group's note alone, at the melody's tempo; it replaces one that still sounds. A dot that is
// typed as a rest of its own belongs to the note before it.
void TypingPage::SoundNote() {
  HushNote();
  const phones::TypingStep* step = guide_.Group();
  const phones::TypingStep* before = guide_.Group(-1);
  if (soundNotes.value == 0 || step == nullptr || step->note < 0 ||
      (before != nullptr && before->note == step->note)) {
    return;
  }
  const core::RTTTLNote note = melody_.Notes[static_cast<std::size_t>(step->note)];
  if (!core::IsPause(note)) {
    core::RTTTLMelody alone;
    core::InitMelody(alone, state_.program.services.shell.TempPath());
    alone.Text = "x:d=4,o=5,b=" + melody_.Beats + ":";
    alone.Text.append(note.Duration).append(note.Note).append(note.Dotted ? "." : "");
    alone.Text.append(note.Octave);
    sounds_ = core::ParseRTTTL(alone) == core::kParsed &&
              midi::StartMelody(alone, state_.program.services.sequencer, state_.program.voice);
  }
}

void TypingPage::HushNote() {
  if (std::exchange(sounds_, false)) {
    midi::MciClose(state_.program.services.sequencer);
  }
}

void TypingPage::soundNotes_Click() {
  soundNotes.value = soundNotes.value == 0 ? 1 : 0;
  SoundNote();
}

void TypingPage::keyTimer_Timer() {
  shownMs_ += kTickMs;
  if (goesOn_ && shownMs_ >= static_cast<std::uint32_t>(seconds_) * 1000) {
    Go(GuideMove::kNext);
    goesOn_ = guide_.Group(1) != nullptr;
  }
}

void TypingPage::goOnButton_Click() {
  goesOn_ = !goesOn_;
  shownMs_ = 0;
}

void TypingPage::ChangePace(int seconds) {
  seconds_ = std::clamp(seconds_ + seconds, kLeastSeconds, kMostSeconds);
}

// ---- The sheet ----------------------------------------------------------------------------------

void TypingPage::saveSheet_Click() {
  auto choice = state_.program.services.fileDialogs.AskSaveAs(
      words::kSaveAs, FileStem(row_) + ".pdf", std::array{std::string(kPdfFilter)});
  if (!choice) {
    return;
  }
  choice->file += ExtensionOf(choice->file).empty() ? ".pdf" : "";
  if (core::SkipErrors([&] { files::WriteBytes(choice->file, PdfFile(Sheet())); })) {
    saved_ = choice->file;
  } else {
    core::MsgBox(words::kNotSaved, core::Icon::kExclamation);
  }
}

void TypingPage::printSheet_Click() {
  state_.program.services.RichTextBox1.PrintPages(Sheet(), FileStem(row_));
}

void TypingPage::openSheet_Click() {
  state_.program.services.shell.OpenFile(saved_);
}

void TypingPage::showSheet_Click() {
  state_.program.services.shell.ShowInFolder(saved_);
}

Paper TypingPage::Sheet() const {
  return LayOutTypingSheet({guideTitle.caption, guide_.keypad(), guide_.steps(), guideDrawing});
}

// ---- The pictures -------------------------------------------------------------------------------

Picture TypingPage::StepPicture(double width, double height) const {
  const phones::TypingStep* step = guide_.Group();
  Picture picture;
  if (step == nullptr) {
    return picture;
  }
  constexpr double kRowsHigh = 330;  // sum of the rows and gaps below
  const double unit = std::clamp(height / kRowsHigh, 0.75, 2.0);
  const double pad = 16 * unit, inner = width - 2 * pad;
  double y = std::max(0.0, (height - kRowsHigh * unit) / 2) + 14 * unit;
  const auto row = [&](double rowHeight, double gap) {
    const Box box = {pad, y, inner, rowHeight * unit};
    y += (rowHeight + gap) * unit;
    return box;
  };
  const Box head = row(28, 4);
  AddNeighbours(picture, kBefore, guide_, -1, -1, head, unit);
  picture.push_back(Bold(Text(guide_.Position(), head, 18 * unit, Ink::kText, Align::kRight)));
  picture.push_back(Mono(Bold(Text(GroupWords(*step), row(92, 4), 86 * unit, Ink::kText))));
  const LitKey lit = LitAt(step->keys, shownMs_);
  AddPresses(picture, *step, lit.press, row(40, 10));
  picture.push_back(Text(step->words, row(28, 2), 20 * unit, Ink::kText));
  const Box seen = row(26, 10);
  if (!step->display.empty()) {
    picture.push_back(
        Bold(Text(std::string(kSeen) + step->display, seen, 16 * unit, Ink::kAccent)));
  }
  const Box after = row(32, 14);
  AddNeighbours(picture, kAfter, guide_, 1, kGroupsAhead, after, unit);
  if (guide_.Group(1) == nullptr) {
    picture.push_back(Text(std::string(kLast), after, 14 * unit, Ink::kMuted));
  }
  const Box bar = row(8, 0);
  picture.push_back(Filled(bar, Ink::kBorder, bar.height / 2));
  picture.push_back(
      Filled({bar.x, bar.y, std::max(bar.height, bar.width * guide_.Fraction()), bar.height},
             Ink::kAccent, bar.height / 2));
  return picture;
}

Picture TypingPage::KeypadPicture(double width, double height) const {
  const phones::TypingStep* step = guide_.Group();
  Picture picture;
  if (step == nullptr) {
    return picture;
  }
  constexpr double kGap = 8, kPad = 14,
                   kMostShape = 0.8;  // maximum height of a key, as a fraction of its width
  const phones::Keypad& pad = *guide_.keypad();
  const double display = step->display.empty() ? 0 : 56;
  const double keyWidth = (width - 2 * kPad - (pad.columns - 1) * kGap) / pad.columns;
  const double keyHeight = std::min(
      keyWidth * kMostShape, (height - 2 * kPad - display - (pad.rows - 1) * kGap) / pad.rows);
  const double high = pad.rows * (keyHeight + kGap) - kGap + display;
  double top = (height - high) / 2;
  if (display > 0) {
    const Box screen = {kPad, top, width - 2 * kPad, display - kGap - 4};
    picture.push_back(Filled(screen, Ink::kDisplayGround, 8));
    picture.push_back(Mono(Bold(Text(step->display, screen, 26, Ink::kDisplayInk))));
    top += display;
  }
  const LitKey lit = LitAt(step->keys, shownMs_);
  for (const phones::KeypadKey& key : pad.keys) {
    const auto presses = [&key](const phones::KeyPress& press) {
      return key.signs.find(press.key) != std::string_view::npos;
    };
    const auto used = std::ranges::find_if(step->keys, presses);
    const bool now = lit.press != nullptr && presses(*lit.press);
    const bool down = now && lit.down;
    const KeyFace face =
        down ? KeyFace{Ink::kAccent, Ink::kAccent, Ink::kAccentText, Ink::kAccentText}
        : used != step->keys.end()
            ? KeyFace{Ink::kAccentWash, Ink::kAccent, Ink::kText, Ink::kMuted}
            : KeyFace{Ink::kCard, Ink::kBorder, Ink::kText, Ink::kMuted};
    const Box box = {kPad + key.column * (keyWidth + kGap), top + key.row * (keyHeight + kGap),
                     keyWidth, keyHeight};
    AddKey(picture, key, box, face,
           now                        ? phones::PressWords(*lit.press)
           : used != step->keys.end() ? phones::PressWords(*used)
                                      : "");
  }
  return picture;
}

}  // namespace tonadex::app
