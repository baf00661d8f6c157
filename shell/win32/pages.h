#pragma once

#include <windows.h>

#include <array>
#include <memory>
#include <vector>

#include "shell/win32/binding.h"
#include "shell/win32/widgets/busy_line.h"
#include "shell/win32/widgets/key_row.h"
#include "shell/win32/widgets/melody_view.h"

namespace tonadex::shell {

// Ids of what stands in the window beside the model's controls.
enum PartId : int {
  kPhoneId = 2000,
  kGoToSearchId,
  kCopyId,
  kSaveAsId,
  kSizeId,
  kFirstKeyId = 2100,
};

// A melody that can sound, and its picture.
struct MelodyPart {
  app::Sounding what;
  app::Drawing app::Form1::*drawing;
  MelodyView* view;
};

struct PageParts {
  HWND phone = nullptr;  // the chosen phone, a way to the options
  HWND goToSearch = nullptr;
  HWND copy = nullptr, saveAs = nullptr, size = nullptr;
  HWND beats = nullptr;  // the unit behind the tempo
  HWND composerCheck = nullptr, rtttlCheck = nullptr;
  HWND optionsTitle = nullptr, optionsSentence = nullptr;
  std::unique_ptr<BusyLine> busy;
  std::unique_ptr<MelodyView> repertoireView, composerView, rtttlView;
  std::unique_ptr<KeyRow> keys;

  std::array<MelodyPart, 3> Melodies() const;
};

// Makes the parts and puts every window into reading order, which is the order of the Tab key.
PageParts MakeParts(const Binding& binding, HWND parent, const Theme& theme,
                    KeyRow::Pressed pressed);

// Shows each part while the control of the model that it belongs to shows.
void ShowParts(const PageParts& parts, const app::Form1& form);

// What the window paints itself, around its children.
struct Frame {
  enum Kind { kBar, kCard, kField, kDisplay };
  Kind kind;
  RECT box;
  HWND field = nullptr;  // whose focus the frame shows
};

// Gives every visible window its place. It knows places, never what a page does.
std::vector<Frame> LayOut(const Binding& binding, const PageParts& parts, const Theme& theme,
                          const app::Form1& form, SIZE client);

}  // namespace tonadex::shell
