// An independent program, gammu, reads the Smart Messaging files.
#include <gtest/gtest.h>

#include <cstdlib>

#include "formats/smart_messaging.h"
#include "tests/core/test_melody.h"
#include "tests/support/melodies.h"
#include "tests/support/temp_folder.h"

namespace tonadex::import {
namespace {

constexpr std::string_view kGammu = TONADEX_GAMMU;

// Duration, pitch, octave and dot of each note in a common notation.
std::string Notes(const std::string& rtttl) {
  std::string notes;
  const core::RTTTLMelody melody = test::ParsedMelody(rtttl);
  for (const core::RTTTLNote& note : melody.Notes) {
    notes.append(note.Duration).append(note.Note).append(note.Dotted ? "." : "");
    notes.append(core::IsPause(note) ? "" : note.Octave).append(",");
  }
  return notes;
}

TEST(Gammu, ReadsOurSmartMessages) {
  if (kGammu.empty()) {
    GTEST_SKIP() << "gammu is not installed";
  }
  const test::TempFolder folder;
  const std::string ott = (folder / "m.ott").string(), text = (folder / "m.rtttl").string();
  for (const std::string& rtttl : test::Shelf()) {
    SCOPED_TRACE(rtttl);
    std::string limits;
    folder.Write("m.ott", formats::OttBytes(test::ParsedMelody(rtttl), limits));
    const std::string command = "LC_ALL=C.UTF-8 timeout 10 " + std::string(kGammu) +
                                " copyringtone " + ott + " " + text + " RTTL > " + text +
                                ".log 2>&1 </dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0) << folder.Read("m.rtttl.log");
    // Gammu drops accented letters from the name, which may become empty.
    ASSERT_EQ(Notes("x" + folder.Read("m.rtttl")), Notes(rtttl));
    std::filesystem::remove(text);
  }
}

}  // namespace
}  // namespace tonadex::import
