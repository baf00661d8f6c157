#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/pages/page.h"
#include "phones/catalogue.h"
#include "phones/formats.h"
#include "phones/phone_choices.h"

namespace tonadex::app {

// The choice of a phone, with a description of what it receives.
class OptionsPage {
 public:
  explicit OptionsPage(SharedState& state) : state_(state) {}

  // A brand was chosen (`listIndex` and `text` are set).
  void cmbmarcas_Click();
  void FillModelList();

  // Lists in modelList the phones of all makes that match what is typed.
  void phoneSearch_Change() { ListPhones(); }
  void phoneSearch_Enter();  // chooses the first of them
  void modelList_Click();
  void formatList_Click() { cmbformatos.SetText(formatList.text); }
  // What to get for a Nokia.
  void keysChoice_Click() { Choose(kNokia, phones::ModelOfCode(phones::kKeysCode)); }
  void shownChoice_Click() { Choose(kNokia, phones::ModelOfCode(phones::kComposerCode)); }
  void sendChoice_Click() { Choose(kNokia, phones::ModelOfCode(phones::kRtttlCode)); }
  // What melodies are played with.
  void instrumentChoice_Click() { ChooseVoice(0); }
  void beepChoice_Click() { ChooseVoice(1); }
  void trySoundButton_Click();

  Control optionsTitle, optionsPicture, optionsSentence;
  Control searchLabel, phoneSearch;
  Control modelLabel, modelList;  // phones by their numbers
  Control nokiaLabel, keysChoice, shownChoice, sendChoice;
  Control exampleLabel, enterLabel;  // an example result; how to enter it into the phone
  Control soundLabel, instrumentChoice, beepChoice, trySoundButton;
  Control Label3, cmbmarcas;   // make
  Control cmbformatos;         // the make's models and formats; its text is any text; not drawn
  Control Label4, formatList;  // the formats among them

  static std::span<const ControlInfo> Rows();
  static Part Layout(bool wide);

 protected:
  // Fills the page, which is shown, with the saved model.
  void OpenOptions();
  void CloseOptions(bool save);
  void SaveModel();
  // The model selected on this page while it is shown, which is saved when it is left, else the
  // saved one.
  const std::string& ChosenModel() const;
  void RefreshOptions();
  // Plays with what beepChoice says.
  void UseVoice();

 private:
  static constexpr std::string_view kNokia = "Nokia";

  void ChooseVoice(int beep);  // 1: beep, 0: instrument
  void Choose(std::string_view brand, std::string_view model);
  void ListPhones();
  void MarkChosen();

  SharedState& state_;
  std::vector<phones::PhoneChoice> listed_;  // in modelList
  std::string exampleModel_;                 // whose example exampleLabel shows
};

}  // namespace tonadex::app
