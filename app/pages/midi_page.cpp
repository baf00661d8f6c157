#include "app/pages/midi_page.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "app/form1.h"
#include "app/layout.h"
#include "core/rtttl_writer.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "phones/smf_choice.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using F = Form1;

constexpr std::string_view kNoNotes = "el fichero MIDI no tiene ninguna nota";
constexpr std::string_view kFirstBar = u8"Desde el com&pás"_w;
constexpr std::string_view kNoBar = u8"En esos compases la voz no tiene notas."_w;
constexpr std::string_view kNothingLost = u8"La melodía entra entera."_w;
constexpr int kListHeight = 120, kTextHeight = 60, kLeastField = 136;

constexpr ControlInfo Choice(std::string_view name, Control F::*member, std::string_view caption,
                             std::string_view help, Handler click) {
  return Button(Look::kChoice, name, member, caption, "", help, click);
}

constexpr auto kRows = std::to_array<ControlInfo>({
    Words("midiTitle", &F::midiTitle, "", Font::kHeading),
    Words("midiVoice", &F::midiVoice, "", Font::kBody, Tone::kMuted, true),
    Label("midiVoicesLabel", &F::midiVoicesLabel, "&Voces del fichero", &F::midiVoices),
    Row(Look::kList, "midiVoices", &F::midiVoices, "Voces del fichero",
        {Event::kClick, &F::midiVoices_Click}, {Event::kActivate, &F::listenMidi_Click}),
    Shapes("midiVoicesView", &F::midiVoicesView, &F::MidiVoicesPicture, &F::midiVoicesView_Click),
    Label("midiBarLabel", &F::midiBarLabel, kFirstBar, &F::midiBar),
    Row(Look::kLine, "midiBar", &F::midiBar, u8"Primer compás"_w,
        {Event::kChange, &F::midiChoice_Change}),
    Label("midiNotesLabel", &F::midiNotesLabel, "No&tas como mucho", &F::midiNotes),
    Row(Look::kLine, "midiNotes", &F::midiNotes, "Notas y pausas como mucho",
        {Event::kChange, &F::midiChoice_Change}),
    Words("midiTakenLabel", &F::midiTakenLabel, "Si suenan varias"),
    Choice("highestTaken", &F::highestTaken, u8"La más agu&da"_w,
           u8"De las notas que suenan a la vez queda la más aguda"_w, &F::highestTaken_Click),
    Choice("firstTaken", &F::firstTaken, "L&a primera",
           u8"De las notas que suenan a la vez queda la que empezó antes"_w, &F::firstTaken_Click),
    Words("midiOctavesLabel", &F::midiOctavesLabel, "Octavas"),
    Choice("phonesOctaves", &F::phonesOctaves, u8"Las del &móvil"_w,
           u8"Subir o bajar la melodía hasta las octavas de tu móvil"_w, &F::phonesOctaves_Click),
    Choice("filesOctaves", &F::filesOctaves, "Las del &fichero",
           "Dejar las notas en las octavas del fichero", &F::filesOctaves_Click),
    View("midiView", &F::midiView, &F::midiDrawing, Sounding::kMidi),
    Row(Look::kNotices, "midiText", &F::midiText, u8"La melodía en RTTTL"_w),
    Row(Look::kNotices, "midiRemarks", &F::midiRemarks, u8"Lo que cambia en la melodía"_w),
    WithKeys(Button(Look::kButton, "leaveMidi", &F::leaveMidi, "Vo&lver", "",
                    "Dejar el fichero MIDI", &F::leaveMidi_Click),
             "Esc"),
    Button(Look::kButton, "listenMidi", &F::listenMidi, "&Escuchar", "reproducir",
           u8"Escuchar la melodía que sale"_w, &F::listenMidi_Click),
    Button(Look::kButton, "useMidi", &F::useMidi, "&Usar", "",
           u8"Poner la melodía en el cuadro de RTTTL de Inicio"_w, &F::useMidi_Click),
    Button(Look::kPrimary, "saveMidi", &F::saveMidi, "&Guardar en mi repertorio", "guardar",
           u8"Guardar la melodía en mi repertorio"_w, &F::saveMidi_Click),
});

// The number in a box, 0 for anything else.
std::size_t NumberIn(const Control& box) {
  const std::string_view text = core::Trim(box.text);
  std::uint16_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : 0;
}

}  // namespace

std::span<const ControlInfo> MidiPage::Rows() {
  return kRows;
}

Part MidiPage::Layout(bool /*wide*/) {
  const auto choice = [](Control F::*label, Control F::*field) {
    return Field(label, The(field).Weight(1)).Widths(kLeastField, Part::kUnbounded);
  };
  const auto choices = [](Control F::*label, Control F::*one, Control F::*other) {
    return Field(label, Row({The(one), The(other)}));
  };
  return Column({
                    The(&F::midiTitle),
                    Row({The(&F::midiVoicesLabel), The(&F::midiVoice).Weight(1)}),
                    Row({The(&F::midiVoices).Weight(4).Heights(kListHeight),
                         The(&F::midiVoicesView).Weight(7).Heights(kListHeight)})
                        .Gap(look::kPageMargin)
                        .Weight(5),
                    Row({choice(&F::midiBarLabel, &F::midiBar),
                         choice(&F::midiNotesLabel, &F::midiNotes),
                         choices(&F::midiTakenLabel, &F::highestTaken, &F::firstTaken),
                         choices(&F::midiOctavesLabel, &F::phonesOctaves, &F::filesOctaves)})
                        .Wraps(),
                    The(&F::midiView).Weight(3).Heights(look::kLowestView, look::kTallestView),
                    Row({The(&F::midiText).Weight(3).Heights(kTextHeight),
                         The(&F::midiRemarks).Weight(2).Heights(kTextHeight)})
                        .Gap(look::kPageMargin)
                        .Weight(1),
                    Row({The(&F::leaveMidi), Stretch(), The(&F::listenMidi), The(&F::useMidi),
                         The(&F::saveMidi)}),
                })
      .Margins(look::kPageMargin, look::kGrid, look::kPageMargin)
      .Scrolls();
}

void MidiPage::ReadMidiFile(std::string_view bytes, std::string_view name) {
  midi::SmfFile file = midi::ReadSmf(bytes);
  std::vector<midi::SmfVoice> voices = midi::VoicesOf(file);
  if (voices.empty()) {
    throw core::RunTimeError(core::ErrorNumber::kInvalidArgument, std::string(kNoNotes));
  }
  file_ = std::move(file);
  voices_ = std::move(voices);
  rolls_ = VoiceRolls(file_, voices_);
  name_ = name.substr(0, name.rfind('.'));
  midiVoices.Clear();
  for (std::size_t i = 0; i < voices_.size(); ++i) {
    midiVoices.AddRow(std::to_string(i + 1) + ". " + midi::VoiceText(voices_[i]));
  }
  const std::size_t notes = phones::ChoiceFor(state_.program.gPhoneModel, "").mostNotes;
  midiNotes.text = notes == 0 ? "" : std::to_string(notes);
  const auto tune = std::ranges::find(voices_, true, &midi::SmfVoice::tune);
  SelectVoice(tune == voices_.end() ? 0 : static_cast<int>(tune - voices_.begin()));
}

void MidiPage::CloseMidi() {
  file_ = {};
  voices_.clear();
  rolls_.clear();
  midiDrawing = {};
}

midi::SmfChoice MidiPage::Choice() const {
  midi::SmfChoice choice =
      phones::ChoiceFor(filesOctaves.value == 0 ? state_.program.gPhoneModel : "", name_);
  choice.firstBar = NumberIn(midiBar);
  choice.mostNotes = NumberIn(midiNotes);
  choice.taken = firstTaken.value != 0 ? midi::Taken::kFirst : midi::Taken::kHighest;
  return choice;
}

void MidiPage::SelectVoice(int voice) {
  midiVoices.Select(voice);
  midiBar.text.clear();
  midiChoice_Change();
}

void MidiPage::midiVoicesView_Click() {
  if (midiVoicesView.value >= 0) {
    SelectVoice(midiVoicesView.value);
  }
}

void MidiPage::midiChoice_Change() {
  const midi::SmfVoice* voice = midiVoices.SelectedOf(voices_);
  midiText.text.clear();
  midiRemarks.text.clear();
  midiDrawing = {};
  if (voice == nullptr) {
    return;
  }
  const midi::SmfMelody made = midi::MelodyOf(file_, *voice, Choice());
  midiBarLabel.caption = std::string(kFirstBar) + ", de " + std::to_string(made.bars);
  midiBar.invitation = std::to_string(made.firstBar);
  if (made.melody.notes.empty()) {
    midiRemarks.text = kNoBar;
    return;
  }
  midiText.text = core::RtttlText(made.melody);
  midiDrawing = MelodyDrawing(midiText.text, state_.program.gPhoneModel);
  for (const std::string& remark : made.remarks) {
    midiRemarks.text += (midiRemarks.text.empty() ? "" : std::string(core::kCrLf)) + remark;
  }
  if (made.remarks.empty()) {
    midiRemarks.text = kNothingLost;
  }
}

void MidiPage::Choose(Control& choice, int value) {
  choice.value = value;
  midiChoice_Change();
}

void MidiPage::listenMidi_Click() {
  if (!midiText.text.empty()) {
    state_.program.gMelody.Text = midiText.text;
    state_.Play(Sounding::kMidi, state_.program.gMelody);
  }
}

void MidiPage::RefreshMidi() {
  for (Control* button : {&listenMidi, &useMidi, &saveMidi}) {
    button->enabled = !midiText.text.empty();
  }
  firstTaken.checked = firstTaken.value != 0;
  highestTaken.checked = !firstTaken.checked;
  filesOctaves.checked = filesOctaves.value != 0;
  phonesOctaves.checked = !filesOctaves.checked;
  midiNotes.invitation = "todas";
  midiTitle.caption = "De un fichero MIDI: " + name_;
  const midi::SmfVoice* voice = midiVoices.SelectedOf(voices_);
  midiVoice.caption = midiVoicesView.text = voice == nullptr ? "" : midi::VoiceText(*voice);
}

}  // namespace tonadex::app
