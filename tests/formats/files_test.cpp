// The formats whose result is a file: Kyocera KWS and Trium MDY.
#include <gtest/gtest.h>

#include "core/text.h"
#include "formats/kws.h"
#include "formats/tempo125.h"
#include "formats/trium_mdy.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::formats {
namespace {

using test::Boxes;
using test::ErrorOf;
using test::Hex;
using test::MelodyOf;
using test::ParsedMelody;
using test::Row;
using test::Table;

// The warnings that name note numbers.
std::string WithoutLength(std::string_view numbers) {
  std::string sentences;
  for (const std::string_view number : core::SplitText(numbers, ' ')) {
    sentences += number.empty()
                     ? ""
                     : "La nota # " + std::string(number) + " no tiene una duración válida\r\n";
  }
  return sentences;
}

TEST(KwsBytes, WritesMergedEntries) {
  for (const Row& row : Table("Kws")) {
    std::string warnings;
    const auto bytes = KwsBytes(ParsedMelody(row[0]), warnings);
    EXPECT_EQ(bytes ? Hex(*bytes) : "none", row[1]) << row[0];
    EXPECT_EQ(core::ToUtf8(warnings), WithoutLength(row[2])) << row[0];
  }
}

TEST(TriumMdyText, NamesNotesTheGermanWay) {
  for (const Row& row : Table("Mdy")) {
    std::string want = "NAME=x TEMPO=100 " + row[1] + (row[1].empty() ? "" : " ");
    core::ReplaceAll(want, " ", "\r\n");
    core::RTTTLMelody melody = MelodyOf(row[0]);
    std::string warnings;
    EXPECT_EQ(TriumMdyText(melody, warnings), want);
    EXPECT_EQ(core::ToUtf8(warnings), WithoutLength(row[2])) << row[0];
  }
}

TEST(Writers, FailOnWhatTheyCannotHold) {
  for (const Row& row : Table("Failures")) {
    core::RTTTLMelody melody = ParsedMelody(row[1]);
    std::string warnings;
    const int error = ErrorOf([&] {
      row[0] == "kws"   ? void(KwsBytes(melody, warnings))
      : row[0] == "mdy" ? void(TriumMdyText(melody, warnings))
                        : void(RtttlAtTempo125(melody));
    });
    EXPECT_EQ(std::to_string(error), row[2]) << row[0] << row[1];
  }
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

}  // namespace
}  // namespace tonadex::formats
