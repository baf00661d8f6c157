#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/display_layout.h"
#include "app/melody_notes.h"
#include "app/melody_store.h"
#include "app/pages/page.h"
#include "formats/pitch.h"

namespace tonadex::app {

// What the result panel shows.
struct ShownResult {
  std::string row, model;        // row of the repertoire, model text
  std::string name, file, line;  // what the list calls the melody; its file and its text
  std::vector<int> groups;       // of each note of the melody its group of the result, or -1
};

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

  // Each click shows the next of the counted notes in the drawing.
  void limitMark_Click();
  void rangeMark_Click();
  // Hides or shows the instructions.
  void foldButton_Click() { folded_ = !folded_; }
  // Filters the list: rows that contain all words of the box.
  void repertoireFilter_Change();
  void repertoireFilter_Enter();
  // The menu on a row.
  void renameItem_Click() { Ask(Entry::kName); }
  void duplicateItem_Click() { Copy(0); }
  void octaveUpItem_Click() { Copy(formats::kSemitones); }
  void octaveDownItem_Click() { Copy(-formats::kSemitones); }
  void transposeItem_Click() { Ask(Entry::kSemitones); }
  void deleteItem_Click();
  void openFolderItem_Click();
  // The line below the list that asks for a name or a number.
  void entryButton_Click();
  void cancelEntryButton_Click();
  void undoDeleteButton_Click();
  // Lists the folder again if it has changed; keeps the selection.
  void MelodyFolderChanged();

  void copyButton_Click();
  void copiedTimer_Timer();
  void saveAsButton_Click();
  void sizeSlider_Change() { textresultado.value = sizeSlider.value; }

  Drawing repertoireDrawing;  // of the selected row

  // The groups of the result, which lines do not break, and whether they are key presses.
  std::vector<ResultGroup> ResultGroupsShown() const { return ResultGroups(textresultado.text); }
  bool ResultIsCounted() const;

  Control repertoireFilter, goToSearchButton;
  Control entryLabel, entryBox, entryButton, cancelEntryButton;
  Control addButton, undoDeleteButton, folderTimer;
  Control staleButton;  // above a result of another row or phone
  Control picreproducir, picconvertir, teclearButton, picimprimir;
  Control lbltextresult, repertoireView, textresultado;  // the result and its title
  Control limitMark, rangeMark,
      wordsMark;  // what does not fit the phone; that the result is not keys
  Control copyButton, copiedTimer, saveAsButton, savedText;
  Control smallType, sizeSlider, largeType;  // the font size of the result
  Control Label2, foldButton, Textavisos;    // instructions and notices
  Control Label1, texttempo, tempoUnit;      // tempo

  static std::span<const ControlInfo> Rows();
  static Part Layout(bool wide);  // drawing and notices beside the result

 protected:
  void FillRepertoire();
  void RefreshRepertoire();
  // The result to be typed; nullptr if it is out of date or not typed by keys.
  const ShownResult* ResultToType();
  // Marks the group whose note sounds at this time, if the display shows the selected melody for
  // the chosen phone; a negative time marks none. False when nothing changed.
  bool MarkSounding(double ms);
  MelodyStore Store() const;
  // Runs `work`; on failure shows a message that begins with `failure`, and returns false.
  static bool Try(std::string_view failure, const std::function<void()>& work);
  // Lists the folder again and selects the row of this file.
  void ShowFile(const std::string& file);
  // Selects the row that was selected last, if it is still there.
  void SelectLast();
  // The selected melody's text, with "#" for sharps.
  std::string SelectedMelody() const;
  std::string SelectedName() const;  // of its file, "" when no row is selected

 private:
  enum class Entry { kNone, kName, kSemitones };
  // Names and times of a folder's files, compared to detect changes.
  using FolderState =
      std::vector<std::pair<std::filesystem::path, std::filesystem::file_time_type>>;

  std::filesystem::path SelectedFile() const;
  int NoteLimit() const;  // of the chosen phone, 0 for none
  void RefreshMarks();
  void ShowNext(const std::function<bool(const DrawnNote&)>& meant);
  FolderState LookAtFolder() const;
  void ShowNames();
  void FilterRows();
  void SelectName(const std::string& file);
  void Ask(Entry what);
  void Copy(int semitones);
  bool IsStale() const;

  SharedState& state_;
  ListRows all_, allShown_;  // before they are filtered
  FolderState folder_;
  std::string last_;  // file of the row selected last
  std::string line_;  // and its melody
  Entry asked_ = Entry::kNone;
  std::string askedFile_;                                               // which the entry is for
  std::vector<std::pair<std::filesystem::path, std::string>> deleted_;  // in the bin; the old names
  bool converted_ = false;
  ShownResult result_;
  bool folded_ = false;  // the instructions
};

}  // namespace tonadex::app
