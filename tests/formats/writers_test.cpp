// The formats whose result is text or key presses.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

#include "formats/ems.h"
#include "formats/motorola_keys.h"
#include "formats/motorola_sms.h"
#include "formats/nokia_composer.h"
#include "formats/nokia_keys.h"
#include "formats/samsung_keys.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::formats {
namespace {

using test::Boxes;
using test::ErrorOf;
using test::MelodyOf;
using test::Repeated;
using test::Row;
using test::Table;

using Writer = std::string (*)(core::RTTTLMelody&, std::string&, std::int16_t);

struct Format {
  std::string_view section;
  Writer writer;
};

constexpr Format kFormats[] = {{"NokiaComposer", NokiaComposerText},
                               {"NokiaKeys", NokiaKeyPresses},
                               {"EMelody", EMelodyText},
                               {"IMelody", IMelodyText},
                               {"MotorolaSms", MotorolaSmsText},
                               {"MotorolaKeys", MotorolaKeyPresses},
                               {"MotorolaIMelody", MotorolaIMelodyKeys},
                               {"Samsung1", SamsungKeyPresses1},
                               {"Samsung2", SamsungKeyPresses2}};

void PrintTo(const Format& format, std::ostream* os) {
  *os << format.section;
}

Row RowOf(std::string_view section, std::string_view name) {
  for (const Row& row : Table(section)) {
    if (row[0] == name) {
      return row;
    }
  }
  throw std::runtime_error("no such row");
}

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

class WriterTest : public testing::TestWithParam<Format> {};

TEST_P(WriterTest, WritesEveryRowOfItsTable) {
  const auto [section, writer] = GetParam();
  const Row words = RowOf("Words", section);
  for (const Row& row : Table(section)) {
    core::RTTTLMelody melody = MelodyOf(row[1]);
    std::string warnings = "(antes)";
    EXPECT_EQ(writer(melody, warnings, static_cast<std::int16_t>(std::stoi(row[2]))), row[3])
        << row[0];
    EXPECT_EQ(core::ToUtf8(warnings), words[1] + Findings(words, row[4]) + words[2]) << row[0];
  }
}

TEST_P(WriterTest, ReportsWhatDoesNotParseAndFailsOnOctavesThatAreNoNumber) {
  const Boxes boxes;
  std::string warnings = "(antes)";
  core::RTTTLMelody melody = MelodyOf("x:y");
  EXPECT_EQ(GetParam().writer(melody, warnings, 5) + warnings, "(antes)");
  EXPECT_EQ(boxes.Text(),
            "Error desconocido al separar las notas del RTTTL.Comprueba que sea correcto");
  core::RTTTLMelody bad = MelodyOf("x:d=4,o=k,b=9:c5,c");
  EXPECT_EQ(ErrorOf([&] { GetParam().writer(bad, warnings, 5); }), 13);
}

INSTANTIATE_TEST_SUITE_P(Formats, WriterTest, testing::ValuesIn(kFormats),
                         [](const auto& tested) { return std::string(tested.param.section); });

TEST(IMelodyText, FoldsALineThatHasReached69Characters) {
  core::RTTTLMelody melody = MelodyOf("c" + Repeated(",c", 66));
  std::string warnings;
  const std::string text = IMelodyText(melody, warnings, 5);
  EXPECT_EQ(text.substr(text.find("MELODY:")),
            "MELODY:" + Repeated("c2", 31) + "\r\n" + Repeated("c2", 35) + "\r\nc2\r\nEND:IMELODY");
}

TEST(CheckCharacters, AreTheHexDigitsOfTheXor) {
  std::string checks;
  for (const std::string_view tokens : {"", "\x07", "\x5A", "\x0F", "\xFF", "aa", "O"}) {
    checks += CheckCharacters(tokens) + " ";
  }
  EXPECT_EQ(checks, "00 77 5: ?? ?? 00 4? ");
}

TEST(MotorolaIMelodyKeys, BringsTheMelodyToTempo125) {
  core::RTTTLMelody melody = MelodyOf("x:d=4,o=5,b=63:c,8p,c#.");  // 992, 496, 1488 ms
  std::string warnings;
  EXPECT_EQ(MotorolaIMelodyKeys(melody, warnings, 5), "*3c1r4r3*3c1.");
  EXPECT_NE(warnings.find("convertido de 63 a 125.\r\n"), std::string::npos);
}

// Every format with a limit converts all notes (Motorola 35) and reports the excess once.
TEST_P(WriterTest, ReportsTooManyNotes) {
  for (const Row& row : Table("Limits")) {
    if (row[0] != GetParam().section) {
      continue;
    }
    const int limit = std::stoi(row[1]), mostWritten = std::stoi(row[2]);
    for (const int notes : {limit - 1, limit, limit + 1}) {
      core::RTTTLMelody melody = MelodyOf("x:d=4,o=5,b=9:c" + Repeated(",c", notes - 1));
      std::string warnings = "(antes)";
      const std::string text = GetParam().writer(melody, warnings, 5);
      EXPECT_EQ(core::Contains(core::ToUtf8(warnings), row[3]),
                notes > limit || (notes == limit && limit == mostWritten))
          << notes;
      const auto written = std::ranges::count_if(text, [](char x) { return x == '1' || x == 'C'; });
      EXPECT_EQ(written, std::min(notes, mostWritten));
    }
  }
}

}  // namespace
}  // namespace tonadex::formats
