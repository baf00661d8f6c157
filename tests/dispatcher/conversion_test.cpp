#include "core/dispatcher/conversion.h"

#include <gtest/gtest.h>

#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/temp_folder.h"

namespace tonadex::core {
namespace {

using test::Boxes;
using test::Hex;

// Answers with one path, or cancels, and keeps the question.
class Answer : public SaveFileQuestion {
 public:
  explicit Answer(std::optional<std::string> file = std::nullopt) : file_(std::move(file)) {}
  std::optional<std::string> AskSaveFile(const SaveRequest& request) override {
    asked += ToUtf8(request.DialogTitle) + "|" + request.Filter + "|" + request.DefaultExt +
             std::to_string(request.FilterIndex) + (request.CancelError ? "" : "no cancel");
    return file_;
  }
  std::string asked;

 private:
  std::optional<std::string> file_;
};

constexpr std::string_view kKept = "(kept)";

// Title, result, notices and tempo, one behind the other; kKept for no page.
std::string Convert(std::string_view text, std::string_view model, SaveFileQuestion& ask) {
  RTTTLMelody melody;
  InitMelody(melody, "");
  melody.Text = text;
  const auto page = ConvertSelectedMelody(melody, model, "Vals (v)", ask);
  return page
             ? ToUtf8(page->title + "\n" + page->result + "\n" + page->notices + "\n" + page->tempo)
             : std::string(kKept);
}

std::string Convert(std::string_view text, std::string_view model) {
  Answer cancel;
  return Convert(text, model, cancel);
}

TEST(ConvertSelectedMelody, FillsTheWholePage) {
  const Boxes boxes;
  for (const test::Row& row : test::Table("Pages")) {
    EXPECT_EQ(Convert("Vals:d=4,o=5,b=125:8c#,2d.6,p", core::FromUtf8(row[0])),
              row[1] + "\n" + row[2] + "\n" + row[3] + "\n" + row[4]);
  }
  EXPECT_EQ(boxes.Text(), "");
}

TEST(ConvertSelectedMelody, PlainRtttlIsShownAsLoaded) {
  const Boxes boxes;
  for (const auto& [text, tempo] :
       {std::pair{"x: d=4,b=77 :c, d ,", "77 "}, {":b=77:c", "77"}, {"no melody", ""}, {"", ""}}) {
    const std::string page = Convert(text, " RTTTL (cable)");
    EXPECT_NE(page.find("\n" + std::string(text) + "\nEste"), std::string::npos);
    EXPECT_EQ(page.substr(page.rfind('\n') + 1), tempo);
  }
  EXPECT_EQ(boxes.Text(), "");
}

constexpr std::string_view kNote2 =
    "Error encontrado al separar la nota #2\r\nComprueba que el RTTL sea correcto\r\n\r\n"
    "Asegurate también de que no hay dos\r\ncomas (,,) consecutivas";
constexpr std::string_view kUnknown =
    "Error desconocido al separar las notas del RTTTL.Comprueba que sea correcto";

TEST(ConvertSelectedMelody, EachParseReportsItsOwnErrors) {
  const std::string bad = "x:d=4,o=5,b=9:8c,,d";
  {
    const Boxes boxes;
    EXPECT_EQ(Convert(bad, " IMelody").find("Melodia Vals (v) formato Imelody.\n\nEste es"), 0u);
    EXPECT_EQ(boxes.Text(), std::string(kNote2) + "|" + std::string(kNote2));
  }
  {
    const Boxes boxes;  // the octave step drops one comma, the writer the other
    EXPECT_NE(Convert("x:d=4,o=5,b=9:8c,,", " Compositor").find("\n8c2 \n"), std::string::npos);
    EXPECT_EQ(boxes.Text(), kNote2);
  }
  for (const std::string_view model : {" RTTTL (cable-Tempo125)", " Motorola por SMS"}) {
    const Boxes boxes;  // no octave step
    EXPECT_NE(Convert(bad, model), kKept);
    EXPECT_EQ(boxes.Text(), kNote2);
  }
}

TEST(ConvertSelectedMelody, SaysWhyItCannotConvert) {
  struct {
    std::string_view text, model, named;
  } constexpr kMelodies[] = {
      {"x:d=4,o=11,b=9:c", " Compositor", "11"},
      {"x:d=4,o=alta,b=9:c", " Pulsaciones tipo 1", "alta"},
      {"x:d=4,o=5,b=0:c", " RTTTL (cable-Tempo125)", "tempo"},
      {"x:d=4,o=5,b=ya:c", "MDY (cable)", "ya"},
      {"x:d=1,o=5,b=1:c", " Motorola iMelody", ""},
      {"x:d=k,o=6,b=9:c", "p280,v60,v66,v120c", "k"},
  };
  for (const auto& c : kMelodies) {
    const Boxes boxes;
    EXPECT_EQ(Convert(c.text, c.model), kKept);
    ASSERT_EQ(boxes.recorded.messages.size(), 1u) << c.text;
    EXPECT_EQ(boxes.Text().find("!No se puede convertir la melodía: "), 0u);
    EXPECT_NE(boxes.Text().find(c.named, 36), std::string::npos) << boxes.Text();
  }
  const Boxes boxes;  // nothing was parsed, so no octave counts
  RTTTLMelody fresh = test::MelodyOf("x:y");
  Answer cancel;
  EXPECT_EQ(ConvertSelectedMelody(fresh, " Compositor", "", cancel), std::nullopt);
  EXPECT_EQ(boxes.Text().find(std::string(kUnknown) + "|!No se puede convertir"), 0u);
}

constexpr std::string_view kIntroduction =
    "i[Tonadex-Kyocera]Las melodías de Kyocera, debido a su formato, no pueden ser visualizadas. A "
    "continuación podrás elegir dónde deseas grabar la melodía, que podrás envíar posteriormente "
    "mediante un cable a tu teléfono.";

TEST(ConvertSelectedMelody, SavesKwsFiles) {
  const test::TempFolder folder;
  const std::string file = (folder / "a.kws").string();
  struct {
    std::string_view text, page;
    std::string boxes;
  } const kMelodies[] = {
      {"Vals:d=4,o=5,b=125:8c#,2d.6,p,3c",
       "Melodia Vals (v) para Kyocera (No puede ser mostrada)\n"
       "Las melodías de Kyocera no pueden ser mostradas. Para introducirla a tu móvil, "
       "necesitarás envíar el fichero .kws que has grabado.\n"
       "Utiliza un cable para envíar el fichero a tu móvil.\r\n"
       "La nota # 4 no tiene una duración válida\r\n\n125",
       "|iKWS Grabado a:\r\n" + file},
      {"x:d=4,o=4,b=9:c,c3", kKept,
       "|!La nota más baja que el formato KWS puede tocar es la octava 4.\r\n"
       "Parece que al menos una de las notas está por debajo del 4.\r\n"
       "No se ha grabado el fichero"},
      {"x:d=4,o=5,b=9:8c,,d", kKept, "|" + std::string(kNote2) + "|" + std::string(kNote2)},
  };
  for (const auto& c : kMelodies) {
    const Boxes boxes;
    Answer answer(file);
    EXPECT_EQ(Convert(c.text, " KWS", answer), c.page);
    EXPECT_EQ(boxes.Text(), std::string(kIntroduction) + c.boxes);
    EXPECT_EQ(answer.asked, "Grabar Melodía kws| (*.kws)|*.kws||2");
  }
  EXPECT_EQ(Hex(folder.Read("a.kws")), "ED FF FF FF 03 00 0E 04 F0 00 1B 04 AA 05 00 00 E2 01");
  const Boxes boxes;
  EXPECT_EQ(Convert("x:o=1:c", " KWS"), kKept) << "cancelled";
  Answer nowhere(file + "/a");
  EXPECT_EQ(Convert("x:d=4,o=5,b=9:c", " KWS", nowhere), kKept);
  EXPECT_EQ(boxes.Text(), std::string(kIntroduction) + "|" + std::string(kIntroduction) +
                              "|!Ocurrio un error al escribir el fichero.\r\nPor favor borra el "
                              "siguiente fichero e intentalo de nuevo:\r\n" +
                              file + "/a");
  EXPECT_TRUE(SavesFile(" KWS") && SavesFile("MIDI (cable)") && !SavesFile(" Compositor"));
}

TEST(ConvertSelectedMelody, SavesMidiFiles) {
  const test::TempFolder folder;
  const std::string file = (folder / "a.mid").string();
  const Boxes boxes;
  Answer answer(file);
  EXPECT_EQ(Convert("Vals:d=4,o=5,b=125:8c#,2d.6,p", "MIDI (cable)", answer),
            "Melodia Vals (v) para Siemens en formato midi (No puede ser mostrada)\n"
            "Las melodías MIDI no pueden ser mostradas. Para introducirla a tu móvil, necesitarás "
            "envíar el fichero .mid que has grabado.\n"
            "Utiliza un cable para envíar el fichero a tu móvil.\r\n\n125");
  EXPECT_EQ(answer.asked, "Grabar MIDI| (*.mid)|*.mid||2");
  const std::string bytes = folder.Read("a.mid");
  EXPECT_EQ(Hex(bytes.substr(12, 2)), "00 C8");
  EXPECT_EQ(Hex(bytes.substr(bytes.size() - 20)),
            "00 90 3D 64 0A 80 3D 00 00 90 4A 64 3A 80 4A 00 00 FF 2F 00");
  EXPECT_EQ(Convert("x", "MIDI (cable)"), kKept) << "cancelled: nothing is parsed";
  EXPECT_EQ(Convert("x:y", "MIDI (cable)", answer), kKept);
  EXPECT_EQ(folder.Read("a.mid"), bytes);
  EXPECT_EQ(Convert("x:b=ya:c", "MIDI (cable)", answer), kKept);
  EXPECT_EQ(boxes.Text(), "iMIDI Grabado a:\r\n" + file + "|" + std::string(kUnknown) +
                              "|!Ocurrio un error al grabar la melodia");
}

}  // namespace
}  // namespace tonadex::core
