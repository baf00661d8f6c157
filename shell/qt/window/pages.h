#pragma once

#include <QList>
#include <array>

#include "shell/qt/window/binding.h"

class QLabel;
class QPushButton;
class QSlider;
class QToolButton;

namespace tonadex::shell {

class KeyRow;
class MelodyView;
class PhoneDisplay;

// A melody that can sound, and its picture.
struct MelodyPart {
  app::Sounding what;
  app::Drawing app::Form1::*drawing;
  MelodyView* view;
};

// What stands in the window beside the model's controls.
struct PageParts {
  QToolButton* phone = nullptr;  // the chosen phone, a way to the options
  QWidget* listColumn = nullptr;  // narrow while a result stands beside it
  QWidget* resultColumn = nullptr;
  QPushButton* goToSearch = nullptr;
  QPushButton *copy = nullptr, *saveAs = nullptr;
  QSlider* size = nullptr;
  PhoneDisplay* display = nullptr;
  MelodyView *repertoireView = nullptr, *composerView = nullptr, *rtttlView = nullptr;
  QLabel *composerCheck = nullptr, *rtttlCheck = nullptr;
  QLabel *optionsSentence = nullptr, *optionsPicture = nullptr;
  KeyRow* keys = nullptr;
  // Parts of the window that show while one of the controls in them does, inner ones first.
  QList<QWidget*> groups;

  std::array<MelodyPart, 3> Melodies() const;
};

// Lays the bound widgets out in the window, navigation row on top. The layout knows places, never
// what a page does: which controls show is the model's affair.
PageParts LayOut(Binding& binding, QWidget* window);

}  // namespace tonadex::shell
