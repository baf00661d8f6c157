#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "core/text.h"
#include "formats/beep_wav.h"
#include "formats/ems.h"
#include "formats/kws.h"
#include "formats/motorola_keys.h"
#include "formats/motorola_sms.h"
#include "formats/nokia_composer.h"
#include "formats/nokia_keys.h"
#include "formats/note_length.h"
#include "formats/octave_range.h"
#include "formats/samsung_keys.h"
#include "formats/tempo125.h"
#include "formats/trium_mdy.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::formats::writers_test {

using namespace test;

using Writer = std::string (*)(core::RTTTLMelody&, std::string&, std::int16_t);

const std::map<std::string, Writer> kWriters = {{"NokiaComposer", NokiaComposerText},
                                                {"NokiaKeys", NokiaKeyPresses},
                                                {"EMelody", EMelodyText},
                                                {"IMelody", IMelodyText},
                                                {"MotorolaSms", MotorolaSmsText},
                                                {"MotorolaKeys", MotorolaKeyPresses},
                                                {"MotorolaIMelody", MotorolaIMelodyKeys},
                                                {"Samsung1", SamsungKeyPresses1},
                                                {"Samsung2", SamsungKeyPresses2}};

// The sentences for these codes: "d3" is the sentence defined by "d=", on note 3.
std::string Findings(const Row& sentences, std::string_view codes) {
  std::string findings;
  for (const std::string_view code : core::SplitText(codes, ' ')) {
    for (std::size_t i = 3; i < sentences.fields.size() && !code.empty(); ++i) {
      if (sentences[i].front() == code.front()) {
        std::string sentence = sentences[i].substr(2) + "\r\n";
        findings += core::ReplaceAll(sentence, "%", code.substr(1));
      }
    }
  }
  return findings;
}

TEST(Writers, WriteEveryRowOfTheirTables) {
  for (const Row& words : Table("Words")) {
    for (const Row& row : Table(words[0])) {
      SCOPED_TRACE(words[0] + " " + row[0]);
      core::RTTTLMelody melody = MelodyOf(row[1]);
      std::string warnings = "(antes)";
      const auto base = static_cast<std::int16_t>(std::stoi(row[2]));
      EXPECT_EQ(kWriters.at(words[0])(melody, warnings, base), row[3]);
      EXPECT_EQ(core::ToUtf8(warnings), words[1] + Findings(words, row[4]) + words[2]);
    }
  }
}

TEST(Writers, ReportWhatDoesNotParseAndFailOnOctavesThatAreNoNumber) {
  for (const auto& [name, writer] : kWriters) {
    SCOPED_TRACE(name);
    const Boxes boxes;
    std::string warnings = "(antes)";
    core::RTTTLMelody melody = MelodyOf("x:y"), bad = MelodyOf("x:d=4,o=k,b=9:c5,c");
    EXPECT_EQ(writer(melody, warnings, 5) + warnings, "(antes)");
    EXPECT_EQ(boxes.Text(),
              "Error desconocido al separar las notas del RTTTL.Comprueba que sea correcto");
    EXPECT_EQ(ErrorOf([&] { writer(bad, warnings, 5); }), 13);
  }
}

// Every format with a limit converts all notes (Motorola 35) and reports the excess once.
TEST(Writers, ReportTooManyNotes) {
  for (const Row& row : Table("Limits")) {
    const int limit = std::stoi(row[1]), mostWritten = std::stoi(row[2]);
    for (const int notes : {limit - 1, limit, limit + 1}) {
      SCOPED_TRACE(row[0] + std::to_string(notes));
      core::RTTTLMelody melody = MelodyOf("x:d=4,o=5,b=9:c" + Repeated(",c", notes - 1));
      std::string warnings = "(antes)";
      const std::string text = kWriters.at(row[0])(melody, warnings, 5);
      EXPECT_EQ(core::Contains(core::ToUtf8(warnings), row[3]),
                notes > limit || (notes == limit && limit == mostWritten));
      const auto written = std::ranges::count_if(text, [](char x) { return x == '1' || x == 'C'; });
      EXPECT_EQ(written, std::min(notes, mostWritten));
    }
  }
}

TEST(IMelodyText, FoldsALineThatHasReached69Characters) {
  core::RTTTLMelody melody = MelodyOf("c" + Repeated(",c", 66));
  std::string warnings;
  const std::string text = IMelodyText(melody, warnings, 5);
  EXPECT_EQ(text.substr(text.find("MELODY:")),
            "MELODY:" + Repeated("c2", 31) + "\r\n" + Repeated("c2", 35) + "\r\nc2\r\nEND:IMELODY");
}

TEST(MotorolaIMelodyKeys, BringsTheMelodyToTempo125) {
  core::RTTTLMelody melody = MelodyOf("x:d=4,o=5,b=63:c,8p,c#.");  // 992, 496, 1488 ms
  std::string warnings;
  EXPECT_EQ(MotorolaIMelodyKeys(melody, warnings, 5), "*3c1r4r3*3c1.");
  EXPECT_NE(warnings.find("convertido de 63 a 125.\r\n"), std::string::npos);
}

// The finding of the formats whose result is a file.
const Row kFileWords = ReadRow("|||d=La nota # % no tiene una duración válida");

TEST(KwsBytes, WritesMergedEntries) {
  for (const Row& row : Table("Kws")) {
    std::string warnings;
    const auto bytes = KwsBytes(ParsedMelody(row[0]), warnings);
    EXPECT_EQ(bytes ? Hex(*bytes) : "none", row[1]) << row[0];
    EXPECT_EQ(core::ToUtf8(warnings), Findings(kFileWords, row[2])) << row[0];
  }
}

TEST(TriumMdyText, NamesNotesTheGermanWay) {
  for (const Row& row : Table("Mdy")) {
    std::string want = "NAME=x TEMPO=100 " + row[1] + (row[1].empty() ? "" : " ");
    core::ReplaceAll(want, " ", "\r\n");
    core::RTTTLMelody melody = MelodyOf(row[0]);
    std::string warnings;
    EXPECT_EQ(TriumMdyText(melody, warnings), want);
    EXPECT_EQ(core::ToUtf8(warnings), Findings(kFileWords, row[2])) << row[0];
  }
}

TEST(Writers, FailOnWhatTheyCannotHold) {
  const auto failure = [](const Row& row) {
    core::RTTTLMelody melody = ParsedMelody(row[1]);
    std::string warnings;
    return std::to_string(ErrorOf([&] {
      row[0] == "kws"   ? void(KwsBytes(melody, warnings))
      : row[0] == "mdy" ? void(TriumMdyText(melody, warnings))
                        : void(RtttlAtTempo125(melody));
    }));
  };
  ExpectRows("Failures", failure, 2);
}

TEST(TriumMdyText, ReportsTheFirstPitchWithoutAName) {
  const Boxes boxes;
  core::RTTTLMelody melody = MelodyOf("Mi vals:d=4,o=5,b=100:c,b#,x,3e#,d");
  std::string warnings;
  EXPECT_EQ(TriumMdyText(melody, warnings), "NAME=Mi vals\r\nTEMPO=100\r\nMc4\r\nMd4\r\n");
  EXPECT_EQ(boxes.Text(),
            "!Kann nicht konvertieren!\r\nb# Bereiche: c bis H\r\nDatei:     Mi vals");
  EXPECT_EQ(core::ToUtf8(warnings), "La nota # 4 no tiene una duración válida\r\n");
}

TEST(NoteLengthMs, IsTheNearestMillisecond) {
  for (const auto& [duration, ms] :
       {std::pair{"1", 2000}, {"2", 1000}, {"4", 500}, {"8", 250}, {"16", 125}, {"32", 63}}) {
    for (int tempo = 20; tempo <= 900; ++tempo) {
      for (const bool dotted : {false, true}) {
        // In half units: |2 x length x tempo - base x 125 x (2 or 3)| is at most half a unit.
        const int exact = ms * 125 * (dotted ? 3 : 2);
        const int length = NoteLengthMs(duration, std::to_string(tempo), dotted);
        EXPECT_LE(std::abs(2 * tempo * length - exact), tempo) << duration << " at " << tempo;
      }
    }
  }
  const auto length = [](const Row& row) {
    return NumberOrError([&] { return NoteLengthMs(row[0], row[1], row[2] == "yes"); });
  };
  ExpectRows("Note lengths", length, 3);
}

// "85=32 110=32. …": the last millisecond of each run of equal results.
TEST(DurationForLength, EveryMillisecondHasItsBand) {
  std::string bands;
  std::string last;
  for (std::int16_t ms = 0; ms <= 4001; ++ms) {
    std::string pitch = "c";
    const std::string duration(DurationForLength(ms, pitch));
    const std::string band = duration + pitch.substr(1);
    if (band != last && ms > 0) {
      bands += std::to_string(ms - 1) + "=" + last + " ";
    }
    last = band;
  }
  EXPECT_EQ(bands + last,
            "85=32 110=32. 160=16 218=16. 317=8 437=8. 605=4 875=4. 1255=2 1750=2. 3005=1 1.");
  std::string pitch = "c#";
  EXPECT_EQ(DurationForLength(32767, pitch), "1");
  EXPECT_EQ(pitch, "c#.");
  EXPECT_EQ(DurationForLength(-1, pitch), "32");
  EXPECT_EQ(pitch, "c#.");
}

TEST(RtttlAtTempo125, RewritesDurations) {
  ExpectRows("Tempo125", [](const Row& row) {
    core::RTTTLMelody melody = MelodyOf(row[0]);
    return RtttlAtTempo125(melody);
  });
}

TEST(BeepWav, SoundsAtThePhonesPitch) {
  for (const auto& [note, hertz] : {std::pair{"a", 440}, {"c5", 523}, {"c7", 2093}, {"p", 0}}) {
    core::RTTTLMelody melody = MelodyOf(std::string("x:d=1,o=4,b=240:") + note);  // 1 s
    ASSERT_EQ(core::ParseRTTTL(melody), core::kParsed);
    const std::string wave = BeepWav(melody);
    int periods = 0;
    for (std::size_t i = 45; i < wave.size(); ++i) {
      periods += core::Code(wave[i - 1]) < 128 && core::Code(wave[i]) >= 128 ? 1 : 0;
    }
    EXPECT_NEAR(periods, hertz, 1) << note;
  }
}

TEST(OctaveRange, IsPlacedAroundTheTwoMostUsedOctaves) {
  for (const Row& row : Table("Octave ranges")) {
    core::RTTTLMelody melody = MelodyOf(row[0]);
    const Boxes boxes;
    EXPECT_EQ(NumberOrError([&] { return frmOctave{melody}.mGetOctaveRange("k", 2); }), row[1])
        << row[0];
    EXPECT_EQ(std::to_string(boxes.recorded.messages.size()), row[2].empty() ? "0" : row[2])
        << row[0];
  }
}

}  // namespace tonadex::formats::writers_test
