#pragma once

#include <filesystem>
#include <span>

#include "app/melody_notes.h"
#include "app/pages/page.h"
#include "app/pages/repertoire_page.h"
#include "app/picture.h"
#include "app/typing_guide.h"

namespace tonadex::app {

// The typing guide: leads through a result of keys, group by group.
class TypingPage {
 public:
  explicit TypingPage(SharedState& state);

  void nextGroup_Click() { Go(GuideMove::kNext); }
  void previousGroup_Click() { Go(GuideMove::kPrevious); }
  void firstGroup_Click() { Go(GuideMove::kFirst); }
  void lastGroup_Click() { Go(GuideMove::kLast); }
  void keyTimer_Timer();
  // Each note sounds when it is shown.
  void soundNotes_Click();
  // Automatic advance and its pace.
  void goOnButton_Click();
  void fasterButton_Click() { ChangePace(-1); }
  void slowerButton_Click() { ChangePace(1); }
  // The sheet as a PDF, which can then be opened or shown in its folder, or printed.
  void saveSheet_Click();
  void printSheet_Click();
  void openSheet_Click();
  void showSheet_Click();

  // Pictures of the current step, and of the keypad with the pressed key lit. Empty while no guide
  // is open.
  Picture StepPicture(double width, double height) const;
  Picture KeypadPicture(double width, double height) const;

  Drawing guideDrawing;

  Control guideTitle;
  Control stepView, keypadView, guideView;
  Control firstGroup, previousGroup, nextGroup, lastGroup;
  Control soundNotes;  // `value`: 1 while the notes sound
  Control goOnButton, slowerButton, pace, fasterButton;
  Control saveSheet, printSheet, openSheet, showSheet, leaveGuide;
  Control keyTimer;

  static std::span<const ControlInfo> Rows();
  static Part Layout(bool wide);  // a larger keypad, nothing wider than the eye takes in

 protected:
  // Returns false when there is nothing to type.
  bool OpenGuide(const ShownResult& result);
  void CloseGuide();
  void RefreshTyping();

 private:
  void Go(GuideMove move);
  void ChangePace(int seconds);
  void SoundNote();
  void HushNote();
  Paper Sheet() const;

  SharedState& state_;
  TypingGuide guide_;
  std::string row_;              // of the repertoire
  core::RTTTLMelody melody_;     // as the conversion left it
  bool sounds_ = false;          // a note was started
  std::filesystem::path saved_;  // the sheet as PDF; empty before it is saved
  std::uint32_t shownMs_ = 0;    // time since the group is shown
  int seconds_ = 4;              // per group with automatic advance
  bool goesOn_ = false;
};

}  // namespace tonadex::app
