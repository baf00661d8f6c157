#include <gtest/gtest.h>
#include <windows.h>

#include <ole2.h>

#include "shell/win32/drawing.h"

// Initialises the toolkit like the desktop program.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  OleInitialize(nullptr);
  const Gdiplus::GdiplusStartupInput input;
  ULONG_PTR drawing = 0;
  Gdiplus::GdiplusStartup(&drawing, &input, nullptr);
  return RUN_ALL_TESTS();
}
