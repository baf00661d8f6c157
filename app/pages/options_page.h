#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/pages/page.h"
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
  void phoneSearch_Change();
  void phoneSearch_Enter();  // chooses the first of them
  void modelList_Click();
  void formatList_Click();
  // What to get for a Nokia.
  void keysChoice_Click();
  void shownChoice_Click();
  void sendChoice_Click();
  // What melodies are played with.
  void instrumentChoice_Click();
  void beepChoice_Click();
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
  static Part Layout();

 protected:
  void RestoreSavedModel();
  void SaveModel();
  void RefreshOptions();
  void ChooseVoice(int beep);  // 1: beep, 0: instrument

 private:
  void Choose(std::string_view brand, std::string_view model);
  void ListPhones();
  void MarkChosen();

  SharedState& state_;
  std::vector<phones::PhoneChoice> listed_;  // in modelList
  std::string exampleModel_;                 // whose example exampleLabel shows
};

}  // namespace tonadex::app
