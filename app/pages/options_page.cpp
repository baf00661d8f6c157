#include "app/pages/options_page.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "app/form1.h"
#include "app/layout.h"
#include "app/session_state.h"
#include "app/settings.h"
#include "app/words.h"
#include "core/windows1252.h"
#include "phones/catalogue.h"
#include "phones/formats.h"
#include "phones/phone_description.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using F = Form1;

constexpr int kWidestCard = 860, kTallestCard = 720;
constexpr int kSearchWidth = 220, kLowestList = 96;

// With two equal notes in a row, to show how they sound.
constexpr std::string_view kTrial = "Prueba:d=8,o=6,b=160:c,e,g,g,4c7";
constexpr std::string_view kNothingFound = u8"Ningún móvil con ese nombre"_w;
constexpr std::string_view kNoNumbers = u8"De esta marca solo hay formatos"_w;

constexpr ControlInfo Search() {
  ControlInfo box =
      Row(Look::kLine, "phoneSearch", &F::phoneSearch, u8"Busca tu móvil por su número"_w,
          {Event::kChange, &F::phoneSearch_Change}, {Event::kEnter, &F::phoneSearch_Enter},
          u8"Escribe su número, por ejemplo 3310 o t68"_w);
  box.below = &F::modelList;
  return box;
}

constexpr auto kRows = std::to_array<ControlInfo>({
    Words("optionsTitle", &F::optionsTitle, words::kChoosePhone, Font::kHeading),
    Label("Label3", &F::Label3, "&Marca", &F::cmbmarcas),
    Row(Look::kList, "cmbmarcas", &F::cmbmarcas, u8"Marca del móvil"_w,
        {Event::kClick, &F::cmbmarcas_Click}),
    Label("searchLabel", &F::searchLabel, u8"Bu&sca tu móvil"_w, &F::phoneSearch),
    Search(),
    Label("modelLabel", &F::modelLabel, "Mod&elo", &F::modelList),
    Row(Look::kList, "modelList", &F::modelList, "Modelo", {Event::kClick, &F::modelList_Click}),
    Label("Label4", &F::Label4, "O&tros formatos", &F::formatList),
    Row(Look::kList, "formatList", &F::formatList, "Otros formatos",
        {Event::kClick, &F::formatList_Click}),
    Row(Look::kStorage, "cmbformatos", &F::cmbformatos),
    Words("nokiaLabel", &F::nokiaLabel, "Para tu Nokia quiero:"),
    Button(Look::kChoice, "keysChoice", &F::keysChoice, "Las teclas que &pulso", "",
           u8"Pulsaciones: las teclas del compositor, una por una"_w, &F::keysChoice_Click),
    Button(Look::kChoice, "shownChoice", &F::shownChoice, "&Lo que se ve", "",
           "Compositor: lo que aparece en la pantalla al pulsarlas", &F::shownChoice_Click),
    Button(Look::kChoice, "sendChoice", &F::sendChoice, "Para &cable o SMS", "",
           "RTTTL: el texto que se manda al móvil", &F::sendChoice_Click),
    Words("exampleLabel", &F::exampleLabel, "", Font::kBody, Tone::kMuted),
    Words("enterLabel", &F::enterLabel, ""),
    Words("soundLabel", &F::soundLabel, "Al escuchar suena:"),
    Button(Look::kChoice, "instrumentChoice", &F::instrumentChoice, "Instr&umento", "",
           "El instrumento de siempre", &F::instrumentChoice_Click),
    Kept(Button(Look::kChoice, "beepChoice", &F::beepChoice, u8"Pitido de mó&vil"_w, "",
                u8"Como suena en el móvil, o casi"_w, &F::beepChoice_Click),
         {kBeepState, 0, 1}),
    Button(Look::kButton, "trySoundButton", &F::trySoundButton, "Prob&ar", "reproducir",
           "Escuchar unas notas con este sonido", &F::trySoundButton_Click),
    Row(Look::kPicture, "optionsPicture", &F::optionsPicture, "", {}, {}, "", "movil"),
    Words("optionsSentence", &F::optionsSentence, ""),
});

}  // namespace

std::span<const ControlInfo> OptionsPage::Rows() {
  return kRows;
}

Part OptionsPage::Layout(bool /*wide*/) {
  using look::kGrid, look::kPageMargin;
  const auto list = [](Control F::*label, Control F::*rows, int share) {
    return Field(label, The(rows).Weight(share).Heights(kLowestList));
  };
  Part card =
      Card({
               Row({The(&F::optionsTitle), Stretch(), The(&F::searchLabel),
                    The(&F::phoneSearch).Widths(kSearchWidth, kSearchWidth)})
                   .Wraps(),
               Row({list(&F::Label3, &F::cmbmarcas, 2), list(&F::modelLabel, &F::modelList, 2),
                    list(&F::Label4, &F::formatList, 3)})
                   .Gap(kPageMargin)
                   .Weight(1),
               Column({The(&F::nokiaLabel), Row({The(&F::keysChoice), The(&F::shownChoice),
                                                 The(&F::sendChoice), Stretch()})
                                                .Wraps()})
                   .Gap(look::kFieldGap),
               Row({The(&F::optionsPicture),
                    Column({The(&F::optionsSentence), The(&F::exampleLabel), The(&F::enterLabel)})
                        .Gap(look::kFieldGap)
                        .Weight(1)}),
               Row({The(&F::soundLabel), The(&F::instrumentChoice), The(&F::beepChoice),
                    The(&F::trySoundButton), Stretch()})
                   .Wraps(),
           })
          .Gap(kPageMargin)
          .Margins(3 * kGrid, 2 * kGrid, 2 * kGrid)
          .Weight(1000)
          .Widths(0, kWidestCard);
  return Column({Row({Stretch(), std::move(card), Stretch()})
                     .Margins(kPageMargin, 0, 0)
                     .Weight(1000)
                     .Heights(0, kTallestCard),
                 Stretch()})
      .Margins(0, look::kGrid, look::kGrid)
      .Scrolls();
}

void OptionsPage::RefreshOptions() {
  const std::string& model = cmbformatos.text;
  optionsSentence.caption = phones::PhoneGets(model);
  enterLabel.caption = phones::HowToEnter(model);
  if (model != exampleModel_) {
    const std::string example = phones::ExampleResult(model);
    exampleLabel.caption = example.empty() ? example : "Por ejemplo: " + example;
    exampleModel_ = model;
  }
  const bool here = state_.paginaactual == kOptionsPage;
  const bool nokia = cmbmarcas.SelectedText() == kNokia;
  for (Control* control : {&nokiaLabel, &keysChoice, &shownChoice, &sendChoice}) {
    control->visible = here && nokia;
  }
  const phones::Format* format = phones::FindFormat(model);
  keysChoice.checked = format != nullptr && format->code == phones::kKeysCode;
  shownChoice.checked = format != nullptr && format->code == phones::kComposerCode;
  sendChoice.checked = format != nullptr && format->code.starts_with("NRTL");
  beepChoice.checked = beepChoice.value != 0;
  instrumentChoice.checked = !beepChoice.checked;
  modelList.invitation = phoneSearch.text.empty() ? kNoNumbers : kNothingFound;
  MarkChosen();
}

// Marks the chosen model in the list that has it. If its row has several numbers, the one that was
// clicked stays marked, else the first.
void OptionsPage::MarkChosen() {
  const std::string& model = cmbformatos.text;
  ListRows formats;
  for (const ListRow& row : cmbformatos.rows) {
    if (phones::IsFormatModel(row.text)) {
      formats.push_back(row);
    }
  }
  formatList.rows = std::move(formats);
  const bool phone = phones::FindModel(model) != nullptr && !phones::IsFormatModel(model);
  formatList.SetText(phone ? "" : model);
  const auto has = [&model](const phones::PhoneChoice& choice) { return choice.model == model; };
  if (const auto* marked = modelList.SelectedOf(listed_); marked == nullptr || !has(*marked)) {
    const auto first = std::ranges::find_if(listed_, has);
    modelList.Select(static_cast<int>(first - listed_.begin()));
  }
}

void OptionsPage::ListPhones() {
  listed_ = phoneSearch.text.empty() ? phones::PhonesOfBrand(cmbmarcas.SelectedText())
                                     : phones::SearchPhones(phoneSearch.text);
  modelList.Clear();
  for (const phones::PhoneChoice& phone : listed_) {
    modelList.AddRow(phone.name);
  }
}

void OptionsPage::Choose(std::string_view brand, std::string_view model) {
  if (cmbmarcas.SelectedText() != brand) {
    cmbmarcas.SetText(brand);
    FillModelList();
  }
  cmbformatos.SetText(model);
}

void OptionsPage::phoneSearch_Enter() {
  if (!listed_.empty()) {
    modelList.Select(0);
    modelList_Click();
  }
}

void OptionsPage::modelList_Click() {
  if (const phones::PhoneChoice* phone = modelList.SelectedOf(listed_)) {
    Choose(phone->brand, phone->model);
  }
}

void OptionsPage::UseVoice() {
  state_.program.voice = beepChoice.value != 0 ? midi::Voice::kBeep : midi::Voice::kInstrument;
}

void OptionsPage::ChooseVoice(int beep) {
  beepChoice.value = beep;
  UseVoice();
}

void OptionsPage::trySoundButton_Click() {
  core::RTTTLMelody melody;
  core::InitMelody(melody, state_.program.services.shell.TempPath());
  melody.Text = kTrial;
  state_.Play(Sounding::kTrial, melody);
}

const std::string& OptionsPage::ChosenModel() const {
  return state_.paginaactual == kOptionsPage ? cmbformatos.text : state_.program.gPhoneModel;
}

void OptionsPage::CloseOptions(bool save) {
  cmbformatos.visible = false;
  if (save) {
    SaveModel();
  }
}

void OptionsPage::SaveModel() {
  Program& program = state_.program;
  program.gPhoneModel = cmbformatos.text;
  RegWriteString(program.services.registry, kHkeyClassesRoot, kSettingKey, kModelSetting,
                 program.gPhoneModel);
}

void OptionsPage::FillModelList() {
  cmbformatos.Clear();
  for (const std::string_view model :
       phones::ModelsOfBrand(state_.program.PhoneCatalogue, cmbmarcas.SelectedText())) {
    cmbformatos.AddRow(model);
  }
  cmbformatos.Select(0);
}

void OptionsPage::cmbmarcas_Click() {
  FillModelList();
  phoneSearch.text.clear();
  ListPhones();
}

void OptionsPage::OpenOptions() {
  cmbformatos.visible = true;
  std::vector<std::string> brands;
  state_.program.PhoneCatalogue = phones::LoadPhoneCatalogue(brands);
  cmbmarcas.Clear();
  for (const std::string& brand : brands) {
    cmbmarcas.AddRow(brand);
  }
  cmbmarcas.Select(0);
  FillModelList();
  state_.program.services.shell.DoEvents();
  const std::string saved = state_.program.gPhoneModel;
  if (const auto brand = phones::RestoredBrand(saved)) {
    cmbmarcas.Select(static_cast<int>(*brand));
    FillModelList();
  }
  if (!saved.empty()) {
    cmbformatos.SetText(saved);
  }
  ListPhones();
  state_.focusNext = &F::phoneSearch;
}

}  // namespace tonadex::app
