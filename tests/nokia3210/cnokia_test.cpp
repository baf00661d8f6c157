#include "nokia3210/cnokia.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "nokia3210/phone_tables.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::nokia3210::cnokia_test {

using namespace std::string_view_literals;

// The log in UTF-8, entries separated by ";"; "5 «4x»" is an entry on unread text.
std::string Short(std::string_view log) {
  std::string text = core::ToUtf8(log);
  core::ReplaceAll(text, "[CNokia.Convert] Posición ", "");
  core::ReplaceAll(text, ": no se entiende", "");
  return core::ReplaceAll(text, "\r", ";");
}

void ExpectConverts(NoteKind showType, std::string_view given, std::string_view want,
                    std::string_view log) {
  SCOPED_TRACE(given);
  CNokia converter;
  converter.ShowType = showType;
  converter.SetOriginalText(given);
  converter.Convert();
  EXPECT_EQ(converter.ConvertedNotes(), want);
  EXPECT_EQ(Short(converter.ConversionErrors()), log);
  const auto parted = std::ranges::count(want, showType == NoteKind::kRTTTL ? ',' : ' ');
  EXPECT_EQ(converter.NoteCount(), want.empty() ? 0 : static_cast<std::size_t>(parted) + 1);
}

constexpr std::string_view kOctaveLog =
    "[modNok.GetOctave] RTTTL Octave 4 Not supported by Nokia 3210.  Please increase the default "
    "octave by 1 in Cantorix (use octave 5,6,7 only).;"
    "[modNok.GetOctave] RTTTL Octave 8 is not a valid octave and is not supported by the Nokia "
    "3210.";

TEST(CNokia, ReadsWhatIsTypedAndShowsWhatIsRead) {
  for (const test::Row& row : test::Table("Typed")) {
    ExpectConverts(NoteKind::kRTTTL, row[0], row[1], row[2]);
  }
  ExpectConverts(NoteKind::kRTTTL, "4c,8d;\r\n\t2e,,;\r1f", "c,8d,2e,1f", "");
  ExpectConverts(NoteKind::kRTTTL, "4c \0\xFF\x80 4\xE1 d"sv, "c,d", "4 «\0ÿ€»;8 «4á»"sv);
  for (const test::Row& row : test::Table("RTTTL")) {
    ExpectConverts(NoteKind::kComposer, row[0], row[1], row[2]);
  }
  ExpectConverts(NoteKind::kComposer, "c4,8d8,e", "4c0 8d4 4e1", kOctaveLog);
}

TEST(PhoneTables, MapsOctavesAndKeys) {
  ErrorLog log;
  std::string octaves, keys;
  for (const std::string_view octave :
       {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "", "55"}) {
    octaves.append(GetOctave(octave, log)).append("|");
  }
  for (const std::string_view note :
       {"c", "d", "e", "f", "g", "a", "b", "-", "C", "h", "p", "", "cd"}) {
    keys.append(GetKey(note)).append("|");
  }
  EXPECT_EQ(octaves + keys, "|5|6|7|0|1|2|3|4||||1|2|3|4|5|6|7|0||||||");
  EXPECT_EQ(Short(log.Text()), kOctaveLog);
}

TEST(CNokia, KeepsItsPropertiesAndStartsAfresh) {
  CNokia converter;
  converter.Defaults = {.Duration = "8", .Octave = "6"};
  converter.Tempo = 120;
  converter.SetOriginalText("c 4d2 8e2 x");
  converter.Convert();
  converter.Convert();
  EXPECT_EQ(converter.ConvertedNotes(), "c5,4d,e");
  EXPECT_EQ(Short(converter.ConversionErrors()), "11 «x»");
  converter.Clear();
  EXPECT_EQ(converter.OriginalText() + converter.ConvertedNotes() + converter.ConversionErrors(),
            "");
  EXPECT_EQ(converter.NoteCount(), 0u);
  EXPECT_EQ(converter.Tempo, 120);
  converter.AddError("CNote.NoteBatch", "uno");
  converter.AddError("CNotes.Add", "dos");
  EXPECT_EQ(converter.ConversionErrors(), "[CNote.NoteBatch] uno\r[CNotes.Add] dos");
}

TEST(CNotes, CountsFromOne) {
  CNotes notes;
  ErrorLog log;
  notes.GetNotes("8.#c2 4.-", NoteKind::kComposer, {}, log);
  EXPECT_EQ(notes.Item(1).Full_RTTTLNote() + notes.Item(2).Full_RTTTLNote(), "8c#.64p.");
  notes.Delete(1);
  EXPECT_EQ(notes.Item(1).Full_ComposerNote(), "4.-");
  for (const std::size_t number : {std::size_t{0}, std::size_t{2}}) {
    EXPECT_THROW(notes.Item(number), core::RunTimeError);
    EXPECT_THROW(notes.Delete(number), core::RunTimeError);
  }
}

// A scanner with quadratic time would need hours for these patterns.
TEST(CNokia, ReadsMegabytesOfGarbageInOneGo) {
  for (const std::string_view pattern :
       {"("sv, "(hold "sv, "(hold("sv, "1"sv, "c2"sv, "c2222"sv, "."sv, "c.#"sv, "Tempo="sv, "x"sv,
        "-"sv, "c2("sv, "\0"sv, "x "sv, "(c)"sv, "c,"sv}) {
    const std::string text = test::Repeated(pattern, 500'000);
    for (const NoteKind kind : {NoteKind::kRTTTL, NoteKind::kComposer}) {
      CNokia converter;
      converter.ShowType = kind;
      converter.SetOriginalText(text);
      converter.Convert();
      EXPECT_TRUE(converter.NoteCount() > 0 || !converter.ConversionErrors().empty()) << pattern;
    }
  }
}

}  // namespace tonadex::nokia3210::cnokia_test
