#pragma once

#include <filesystem>

#include "app/program.h"
#include "core/message_box.h"
#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"

namespace tonadex::test {

// A whole program with recording fakes, its own program folder with empty melodias/ and temp/, and
// a scripted server at http://servidor. Records the message boxes of the creating thread.
struct TestProgram {
  TestProgram() {
    std::filesystem::create_directory(folder / "melodias");
    std::filesystem::create_directory(folder / "temp");
  }

  TempFolder folder;
  FakeRegistry registry;
  FakeFileDialogs fileDialogs;
  FakeSequencer sequencer;
  ScriptedHttp http;
  ScriptedBackgroundGet newest{http};
  FakeWebViews webViews;
  FakeRichTextBox richText;
  FakeShell shell{folder.path()};
  core::RecordingMessages boxes;
  core::ScopedMessageSink sink{boxes};
  app::Program program{{registry, fileDialogs, sequencer, http, newest, webViews, richText, shell},
                       "http://servidor"};
};

}  // namespace tonadex::test
