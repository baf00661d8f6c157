// The formats that are text to read or to type.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <vector>

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

// The sentences of a format, by the letter that stands for them in the table.
struct Sentence {
  char letter;
  std::string_view before, after;  // around the note's number
};

struct Format {
  std::string_view section;
  Writer writer;
  std::string_view before, after;  // around the findings, when warnings held "(antes)"
  std::vector<Sentence> sentences;
};

void PrintTo(const Format& format, std::ostream* os) {
  *os << format.section;
}

std::string Findings(const Format& format, std::string_view codes) {
  std::string findings;
  for (const std::string_view code : core::SplitText(codes, ' ')) {
    for (const Sentence& sentence : format.sentences) {
      if (code.starts_with(sentence.letter)) {
        findings.append(sentence.before).append(code.substr(1)).append(sentence.after);
        findings += "\r\n";
      }
    }
  }
  return findings;
}

constexpr std::string_view kInvalid = " no tiene una duración válida";
constexpr std::string_view kOutside = " está fuera del rango de octavas";

const std::vector<Format> kFormats = {
    {"NokiaComposer",
     NokiaComposerText,
     "(antes)",
     "",
     {{'p', "ERROR: La nota #", " - . no se permite en pausa"}}},
    {"NokiaKeys",
     NokiaKeyPresses,
     "(antes)Al introducir las notas rodeadas entre paréntesis, debes mantener pulsada esta tecla "
     "durante 3 segundos\r\nLos espacios sólo sirven para facilitar la lectura, no debes "
     "introducirlos en tu móvil\r\n",
     "",
     {{'d', "La nota # ", kInvalid}, {'o', "Error > La nota # ", kOutside}}},
    {"EMelody",
     EMelodyText,
     "",
     "",
     {{'d', "ERROR: La nota # ", kInvalid},
      {'o', "ERROR: La nota # ", " está fuera del rango de octavas permitido"}}},
    {"IMelody",
     IMelodyText,
     "",
     "",
     {{'d', "ERROR: La nota # ", kInvalid},
      {'v', "ERROR: La nota # ", " no tiene una duracion valida."},
      {'o', "ERROR: La nota # ", " está fuera del rango de octavas permitido."}}},
    {"MotorolaSms",
     MotorolaSmsText,
     "",
     "Envia esta melodia a tu teléfono escribiendo esto en un mensaje de texto, o mediante un "
     "cable de datos.",
     {}},
    {"MotorolaKeys",
     MotorolaKeyPresses,
     "",
     "Introduce la melodia en tu móvil pulsando las teclas indicadas.\r\n\r\nNo debes introducir "
     "los espacios. Tonadex los muestra solo para facilitar la lectura\r\n\r\n",
     {}},
    {"MotorolaIMelody",
     MotorolaIMelodyKeys,
     "Esta melodia es válida para móviles Motorola que soporten las pulsaciones I-Melody.\r\n"
     "El tempo de la melodia original se ha convertido de 125 a 125.\r\n",
     "",
     {}},
    {"Samsung1",
     SamsungKeyPresses1,
     "(antes)",
     "",
     {{'d', "La nota # ", kInvalid}, {'o', "La nota # ", " está fuera del rango de octavas."}}},
    {"Samsung2",
     SamsungKeyPresses2,
     "(antes)Las flechas del teclado de tu móvil se representan con los signos <,>,^\r\n",
     "",
     {{'d', "Error > La nota # ", kInvalid}, {'o', "Error > La nota # ", kOutside}}},
};

class WriterTest : public testing::TestWithParam<Format> {};

TEST_P(WriterTest, WritesEveryRowOfItsTable) {
  const Format& format = GetParam();
  for (const Row& row : Table(format.section)) {
    core::RTTTLMelody melody = MelodyOf(row[1]);
    std::string warnings = "(antes)";
    EXPECT_EQ(format.writer(melody, warnings, static_cast<std::int16_t>(std::stoi(row[2]))), row[3])
        << row[0];
    std::string want(format.before);
    want.append(Findings(format, row[4])).append(format.after);
    EXPECT_EQ(core::ToUtf8(warnings), want) << row[0];
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

// Every format that has a limit converts all notes (Motorola 35) and says so once.
TEST(Writers, TellOfTooManyNotes) {
  struct {
    Writer writer;
    int limit, notesWritten;  // of limit + 1
    std::string_view message;
    bool atLimit = false;
  } constexpr kLimits[] = {
      {NokiaComposerText, 50, 51, "(antes)ERROR: La melodia excede el límite de 50 notas.\r\n"},
      {NokiaKeyPresses, 50, 51,
       "en tu móvil\r\nERROR: La melodia excede el máximo de 50 notas\r\n"},
      {SamsungKeyPresses1, 100, 101,
       "(antes)La melodía supera el máximo de notas permitidas (100).\r\n"},
      {SamsungKeyPresses2, 100, 101,
       "<,>,^\r\nError > La melodía supera el máximo de notas permitidas (100).\r\n"},
      {MotorolaSmsText, 35, 35,
       "Melodia demasiado larga para Motorola.Solo se muestran las primeras 35 notas de la "
       "melodia.\r\n\r\nEnvia",
       true},
  };
  for (const auto& c : kLimits) {
    for (const int notes : {c.limit - 1, c.limit, c.limit + 1}) {
      core::RTTTLMelody melody = MelodyOf("x:d=4,o=5,b=9:c" + Repeated(",c", notes - 1));
      std::string warnings = "(antes)";
      const std::string text = c.writer(melody, warnings, 5);
      EXPECT_EQ(core::ToUtf8(warnings).find(c.message) != std::string::npos,
                notes > c.limit || (notes == c.limit && c.atLimit))
          << c.message << notes;
      const auto written = std::ranges::count_if(text, [](char x) { return x == '1' || x == 'C'; });
      EXPECT_EQ(written, std::min(notes, c.notesWritten)) << c.message;
    }
  }
}

}  // namespace
}  // namespace tonadex::formats
