#pragma once

#include "app/form1_tables.h"

// What each control is drawn with; how that looks is the shell's.
namespace tonadex::app {

enum class Look {
  kLabel,
  kNavigation,  // button of the navigation row: picture above the words, one of them marked
  kButton,
  kLine,     // text of one line
  kReading,  // the same, never typed into
  kArea,     // text of several lines
  kNotices,  // the same, never typed into
  kDisplay,  // the phone's display
  kList,     // rows, all in view
  kComboBox,
  kPage,    // web view that follows links
  kBanner,  // web view that reports them
  kTimer,
  kNone,  // scratch storage
};

Look LookOf(const ControlInfo& info);

}  // namespace tonadex::app
