#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "app/control_table.h"
#include "app/controls.h"
#include "app/melody_layout.h"
#include "app/program.h"

namespace tonadex::app {

// The splash window's model. The shell creates it, calls Form_Load once its window exists, ticks
// Timer1 while that is enabled and, as soon as `finished` is true, creates Form1, calls its
// Form_Load, shows it and closes the splash.
class inicio {
 public:
  // A label of the splash, its place and the size of its type.
  struct Line {
    std::string_view name;
    Control inicio::*label;
    Box place;
    Font type;
  };
  static std::span<const Line> Lines();

  explicit inicio(Program& program);
  inicio(const inicio&) = delete;
  inicio& operator=(const inicio&) = delete;

  // `window` is the splash's window handle. Never throws.
  void Form_Load(std::intptr_t window);
  void Timer1_Timer();
  const Control& Timer() const { return Timer1; }

  Control Label1;  // the version: "Beta 0.8" unless ver.dat says otherwise
  Control Frame1;  // the note for a first run; its caption is the text
  Control Timer1;  // one interval of 2 s

  bool finished = false;  // the shell creates Form1 now

 private:
  Program& program_;
  int counter_ = 0;  // 1 after loading, then one more per tick
};

}  // namespace tonadex::app
