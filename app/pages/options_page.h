#pragma once

#include <span>

#include "app/pages/page.h"

namespace tonadex::app {

// The choice of a phone, with a description of what it receives.
class OptionsPage {
 public:
  explicit OptionsPage(SharedState& state) : state_(state) {}

  // A brand was chosen (`listIndex` and `text` are set).
  void cmbmarcas_Click();
  void FillModelList();

  Control optionsTitle, optionsPicture, optionsSentence;
  Control Label3, cmbmarcas;    // make
  Control Label4, cmbformatos;  // model or format; its text is any text

  static std::span<const ControlInfo> Rows();
  static Part Layout();

 protected:
  void RestoreSavedModel();
  void SaveModel();
  void RefreshOptions();

 private:
  SharedState& state_;
};

}  // namespace tonadex::app
