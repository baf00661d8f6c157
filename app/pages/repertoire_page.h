#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "app/display_layout.h"
#include "app/melody_notes.h"
#include "app/pages/page.h"

namespace tonadex::app {

// The user's melodies: listing, playing, converting, printing.
class RepertoirePage {
 public:
  explicit RepertoirePage(SharedState& state);

  void picreproducir_Click();
  void picconvertir_Click();
  void picimprimir_Click();
  // The selection in List1 changed: redraws `repertoireDrawing`. Never throws.
  void List1_Click();
  void ConvertSelectedMelody();

  void copyButton_Click();
  void copiedTimer_Timer();
  void saveAsButton_Click();
  void sizeSlider_Change();

  Drawing repertoireDrawing;  // of the selected row

  // The groups of the result, which lines do not break, and whether they are key presses.
  std::vector<ResultGroup> ResultGroupsShown() const;
  bool ResultIsCounted() const;

  Control goToSearchButton;
  Control picreproducir, picconvertir, picimprimir;
  Control lbltextresult, repertoireView, textresultado;  // the result and its title
  Control copyButton, copiedTimer, saveAsButton;
  Control smallType, sizeSlider, largeType;  // the size of the result's type
  Control Label2, Textavisos;                // instructions and notices
  Control Label1, texttempo, tempoUnit;      // tempo

  static std::span<const ControlInfo> Rows();
  static Part Layout();
  static Part WideLayout();  // drawing and notices beside the result

 protected:
  void FillRepertoire();
  void RefreshRepertoire();

 private:
  std::filesystem::path SelectedFile() const;

  SharedState& state_;
  std::string resultRow_, resultModel_;  // of what the result panel shows
};

}  // namespace tonadex::app
