#pragma once

#include <filesystem>
#include <functional>
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

  // Marks in the drawing, one after the other, the notes that a mark counts.
  void limitMark_Click();
  void rangeMark_Click();
  // Folds the instructions away, or back.
  void foldButton_Click();

  void copyButton_Click();
  void copiedTimer_Timer();
  void saveAsButton_Click();
  void sizeSlider_Change();

  Drawing repertoireDrawing;  // of the selected row

  // The groups of the result, which lines do not break, and whether they are key presses.
  std::vector<ResultGroup> ResultGroupsShown() const;
  bool ResultIsKeyPresses() const;

  Control goToSearchButton;
  Control picreproducir, picconvertir, picimprimir;
  Control lbltextresult, repertoireView, textresultado;  // the result and its title
  Control limitMark, rangeMark, wordsMark;  // what does not fit the phone, or is no keys
  Control copyButton, copiedTimer, saveAsButton;
  Control smallType, sizeSlider, largeType;  // the size of the result's type
  Control Label2, foldButton, Textavisos;    // instructions and notices
  Control Label1, texttempo, tempoUnit;      // tempo

  static std::span<const ControlInfo> Rows();
  static Part Layout();

 protected:
  void FillRepertoire();
  void RefreshRepertoire();
  // The group of the display whose note sounds at this time, where the display shows the selected
  // melody for the chosen phone; -1 for none.
  int ResultGroupAt(double ms) const;

 private:
  std::filesystem::path SelectedFile() const;
  void RefreshMarks();
  void ShowNext(const std::function<bool(const DrawnNote&)>& meant);

  SharedState& state_;
  std::string resultRow_, resultModel_;  // of what the result panel shows
  std::vector<int> resultGroups_;        // and the group of each of its melody's notes, or -1
  bool folded_ = false;                  // the instructions
};

}  // namespace tonadex::app
