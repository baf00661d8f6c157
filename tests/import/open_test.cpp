// Written files read back to the same notes, lengths and pauses, or to the nearest ones that the
// format has; then files as other programs and people write them, and damaged ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "core/rtttl_writer.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "formats/octave_range.h"
#include "formats/pitch.h"
#include "formats/smart_messaging.h"
#include "import/open_melody.h"
#include "phones/file_formats.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/melodies.h"
#include "tests/support/temp_folder.h"

namespace tonadex::import::open_test {

// The lengths that read back for the six durations, plain and dotted, in sixty-fourths of a whole
// note.
using Lengths = std::array<std::array<int, 6>, 2>;
constexpr Lengths kExact = {{{64, 32, 16, 8, 4, 2}, {96, 48, 24, 12, 6, 3}}};
constexpr Lengths Undotted(std::array<int, 6> plain) {
  return {plain, plain};
}
constexpr Lengths kPlain = Undotted(kExact[0]);
constexpr Lengths kNoRests = {}, kIMelodyPauses = {{{16, 16, 12, 8, 4, 4}, {24, 20, 16, 10, 6, 6}}};

// The octave that reads back: `lowest` and up to `span` above it, counted from the octave `from`
// or, if that is negative, from the melody's base octave.
struct Octaves {
  int lowest, span, from = -1;
  bool keepsTop = false;  // the highest of them reads back as it is

  int Of(int octave, int base) const {
    base = from < 0 ? base : from;
    return keepsTop && octave >= base + span ? base + span
                                             : lowest + std::clamp(octave - base, 0, span);
  }
};
constexpr Octaves kSame{0, 99, 0}, kThree{5, 2}, kThreeFrom4{4, 2}, kFour{5, 3}, kTwo{5, 1},
    kSms{5, 2, 5}, kIMelodyKeys{5, 3, -1, true}, kTrium{5, 1, 5}, kSmart{4, 3, 4};

std::string Written(std::string_view format, const std::string& rtttl) {
  return phones::WriteMelodyFile(*phones::FindFileFormat(format), rtttl).bytes;
}

struct Format {
  std::string_view name;  // of the file format
  FileKind kind;
  Lengths notes, pauses;
  Octaves octave = kSame;
  std::size_t nameHeld = 0;  // maximum length of the name
  bool keepsTempo = false;
  int tempo = 0;             // the tempo at which lengths are exact; 0 for any
  int baseIfNone = 0;        // the writer's base octave if the melody sets none
  Lengths rests = kNoRests;  // lengths of pauses after a note, if they differ
  std::size_t notesHeld = 10'000;
  bool sharpOnDotted = true;
};

constexpr Lengths kEMelody = Undotted({16, 16, 16, 8, 8, 8});
constexpr Lengths kSamsung = Undotted({64, 32, 16, 8, 4, 4});
constexpr Lengths kSamsung2Pauses = Undotted({32, 32, 16, 8, 4, 4});
constexpr Lengths kSamsung1Rests = {{{}, {32, 16, 8, 4, 4, 4}}};
constexpr Lengths kMotorola = Undotted({32, 32, 16, 16, 4, 4});

// What reads back of a melody, by format.
const Format kFormats[] = {
    {"rtttl", FileKind::kRtttl, kExact, kExact, kSame, 100, true},
    {"rtttl125", FileKind::kRtttl, kExact, kExact, kSame, 100, true, 125},
    {"compositor", FileKind::kComposer, kExact, kExact, kThree},
    {"nokia", FileKind::kKeys, kExact, kPlain, kThree},
    {"emy", FileKind::kEMelody, kEMelody, kEMelody, kTwo},
    {"imy", FileKind::kIMelody, kExact, kIMelodyPauses, kFour, 100, true},
    {"samsung1", FileKind::kKeys, kSamsung, kSamsung, kThreeFrom4, 0, false, 0, 4, kSamsung1Rests},
    {"samsung2", FileKind::kKeys, kSamsung, kSamsung2Pauses, kThreeFrom4, 0, false, 0, 4},
    {"motorola", FileKind::kMotorolaSms, kPlain, kPlain, kSms, 0, false, 0, 0, kNoRests, 35},
    {"motorola1", FileKind::kKeys, kMotorola, kMotorola, kThree, 0, false, 0, 5},
    {"motorola-imelody", FileKind::kIMelodyKeys, kExact, kIMelodyPauses, kIMelodyKeys, 0, false,
     125, 5, kNoRests, 10'000, false},
    {"mdy", FileKind::kTriumMdy, kExact, kExact, kTrium, 100, true, 100},
    {"ott", FileKind::kOtt, kExact, kExact, kSmart, 15, true, 112},
    {"sckl", FileKind::kSckl, kExact, kExact, kSmart, 15, true, 112},
};

struct Sound {
  int pitch = -1;  // in semitones; -1 for a pause
  int length = 0;  // sixty-fourths

  friend bool operator==(const Sound&, const Sound&) = default;
};

void PrintTo(const Sound& sound, std::ostream* out) {
  *out << sound.pitch << '/' << sound.length;
}

// Consecutive pauses are joined into one.
void Append(std::vector<Sound>& sounds, Sound sound) {
  if (sound.pitch < 0 && !sounds.empty() && sounds.back().pitch < 0) {
    sounds.back().length += sound.length;
  } else if (sound.length > 0) {
    sounds.push_back(sound);
  }
}

std::vector<Sound> Held(const Format& format, core::RTTTLMelody melody) {
  const int found = formats::AutoOctave(melody, formats::kRangeSpan);
  const int base = found == 0 ? format.baseIfNone : found;
  std::vector<Sound> sounds;
  for (const core::NoteCodes& note :
       melody.Notes.Codes().first(std::min(format.notesHeld, melody.Notes.Codes().size()))) {
    const std::size_t dotted = note.dotted ? 1 : 0;
    if (core::IsPause(note)) {
      Append(sounds, {-1, format.pauses[dotted][note.length]});
      continue;
    }
    const bool natural = note.dotted && note.IsSharp() && !format.sharpOnDotted && note.length > 0;
    Append(sounds, {formats::SemitoneOf(note) - natural + 12 * format.octave.Of(note.octave, base),
                    format.notes[dotted][note.length]});
    Append(sounds, {-1, format.rests[dotted][note.length]});
  }
  return sounds;
}

std::vector<Sound> Sounds(const std::string& rtttl) {
  return Held({"", FileKind::kRtttl, kExact, kExact}, test::ParsedMelody(rtttl));
}

std::string AtTempo(std::string rtttl, int tempo) {
  const std::size_t at = rtttl.find("b=") + 2;
  return tempo == 0 ? rtttl : rtttl.replace(at, rtttl.find(':', at) - at, std::to_string(tempo));
}

// The parser removes blanks.
std::string NameOf(const std::string& rtttl, std::size_t most = 100) {
  std::string name = rtttl.substr(0, std::min(most, rtttl.find(':')));
  std::erase(name, ' ');
  return name;
}

std::string TempoOf(const std::string& rtttl) {
  return test::ParsedMelody(rtttl).Beats;
}

TEST(ReadBack, GivesWhatTheFormatHolds) {
  for (const Format& format : kFormats) {
    int read = 0;
    for (const std::string& melody : test::Melodies()) {
      const std::string rtttl = AtTempo(melody, format.tempo);
      const std::string written = Written(format.name, rtttl);
      SCOPED_TRACE(std::string(format.name) + "\n" + rtttl + "\n" + written);
      OpenedFile opened;
      try {
        opened = OpenMelodyFile(written, "Fichero.2.bin");
      } catch (const core::RunTimeError& error) {
        // Some short results are valid keys of two makes.
        ASSERT_TRUE(core::Contains(error.what(), "pueden ser de")) << error.what();
        continue;
      }
      ASSERT_EQ(opened.kind, format.kind);
      ASSERT_EQ(opened.melodies.size(), 1u);
      const std::string& text = opened.melodies[0].text;
      ASSERT_EQ(Sounds(text), Held(format, test::ParsedMelody(rtttl)));
      ASSERT_EQ(TempoOf(text), format.keepsTempo ? TempoOf(rtttl) : "125");
      ASSERT_EQ(NameOf(text), format.nameHeld > 0 ? NameOf(rtttl, format.nameHeld) : "Fichero.2");
      ++read;
    }
    EXPECT_GT(read, 250) << format.name;
  }
}

struct Onset {
  int pitch;
  double ms;
};

// KWS merges equal adjacent notes and stores times in ms.
std::vector<Onset> Onsets(const std::string& rtttl) {
  const double unit = 3750 / std::stod(TempoOf(rtttl));
  std::vector<Onset> onsets;
  double at = 0;
  int last = -2;
  for (const Sound& sound : Sounds(rtttl)) {
    if (sound.pitch != last) {
      onsets.push_back({sound.pitch, at});
    }
    last = sound.pitch;
    at += sound.length * unit;
  }
  std::erase_if(onsets, [](const Onset& onset) { return onset.pitch < 0; });
  return onsets;
}

TEST(ReadBack, KeepsTheTimesOfKws) {
  for (const std::string& rtttl : test::Melodies()) {
    SCOPED_TRACE(rtttl);
    const OpenedFile opened = OpenMelodyFile(Written("kws", rtttl), "Fichero.2.bin");
    ASSERT_EQ(opened.kind, FileKind::kKws);
    SCOPED_TRACE(opened.melodies.at(0).text);
    const auto want = Onsets(rtttl), got = Onsets(opened.melodies[0].text);
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t i = 0; i < want.size(); ++i) {
      ASSERT_EQ(got[i].pitch, want[i].pitch) << i;
      // Every time is rounded to a millisecond.
      ASSERT_NEAR(got[i].ms, want[i].ms, 1 + static_cast<double>(i)) << i;
    }
  }
}

TEST(ScklText, PartsWhatOneMessageCannotHold) {
  EXPECT_TRUE(formats::ScklText(std::string(133, 'x')).starts_with("//SCKL1581 78"));
  EXPECT_TRUE(formats::ScklText(std::string(134, 'x')).starts_with("//SCKL15811581000201 78"));
}

// An independent program reads the Smart Messaging files.
TEST(Gammu, ReadsOurSmartMessages) {
  if (std::system("gammu --version > /dev/null 2>&1") != 0) {
    GTEST_SKIP() << "gammu is not installed";
  }
  const test::TempFolder folder;
  const std::string ott = (folder / "m.ott").string(), text = (folder / "m.rtttl").string();
  for (const std::string& rtttl : test::Shelf()) {
    SCOPED_TRACE(rtttl);
    folder.Write("m.ott", Written("ott", rtttl));
    const std::string command = "LC_ALL=C.UTF-8 timeout 10 gammu copyringtone " + ott + " " + text +
                                " RTTL > " + text + ".log 2>&1 </dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0) << folder.Read("m.rtttl.log");
    // Gammu drops accented letters from the name, which may become empty.
    ASSERT_EQ(test::PlainNotes("x" + folder.Read("m.rtttl")), test::PlainNotes(rtttl));
    std::filesystem::remove(text);
  }
}

TEST(OpenMelodyFile, ReadsWhatOthersWriteAndSaysWhereItIsDamaged) {
  for (const test::Row& row : test::Table("Files")) {
    SCOPED_TRACE(row[0]);
    std::string got, remarks;
    try {
      const OpenedFile file = OpenMelodyFile(row[0], "Fichero.txt");
      got = core::ToUtf8(file.melodies.at(0).text);
      for (const std::string& remark : file.melodies[0].remarks) {
        remarks += (remarks.empty() ? "" : ";") + core::ToUtf8(remark).substr(0, 17);
      }
    } catch (const core::RunTimeError& error) {
      got = core::ToUtf8(error.what());
    }
    EXPECT_EQ(core::ToUtf8(KindName(RecogniseFile(row[0]))), row[1]);
    EXPECT_EQ(got, row[2]);
    EXPECT_EQ(remarks, row[3]);
  }
}

}  // namespace tonadex::import::open_test
