// The catalogue of phones and the conversions for them.
#include "phones/conversion.h"

#include <gtest/gtest.h>

#include <array>

#include "phones/catalogue.h"
#include "phones/formats.h"
#include "phones/phone_description.h"
#include "phones/phone_finder.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"

namespace tonadex::phones::conversion_test {

using namespace test;

constexpr std::array<std::string_view, 7> kOutcomes = {
    "(converted)", "(incomplete)",     "(no model)",    "(cancelled)",
    "(refused)",   "(cannot convert)", "(disk failure)"};

Conversion Converted(std::string_view text, std::string_view model, SaveFileQuestion& ask) {
  core::RTTTLMelody melody;
  core::InitMelody(melody, "");
  melody.Text = text;
  return ConvertSelectedMelody(melody, model, "Vals (v)", ask);
}

// Title, result, notices and tempo, concatenated; the outcome if there is no page.
std::string Convert(std::string_view text, std::string_view model,
                    SaveFileQuestion&& ask = FakeSaveQuestion()) {
  const auto [outcome, page, messages] = Converted(text, model, ask);
  return page ? core::ToUtf8(page->title + "\n" + page->result + "\n" + page->notices + "\n" +
                             page->tempo)
              : std::string(kOutcomes.at(static_cast<std::size_t>(outcome)));
}

TEST(ConvertSelectedMelody, FillsTheWholePage) {
  const Boxes boxes;
  for (const Row& row : Table("Pages")) {
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

// In the tables "%2" and "%?" stand for the parser's error message on note 2 and on a text without
// notes.
std::string Expanded(std::string text) {
  core::ReplaceAll(
      text, "%2",
      "Error encontrado al separar la nota #2\r\nComprueba que el RTTL sea correcto\r\n\r\n"
      "Asegurate también de que no hay dos\r\ncomas (,,) consecutivas");
  return core::ReplaceAll(
      text, "%?", "Error desconocido al separar las notas del RTTTL.Comprueba que sea correcto");
}

TEST(ConvertSelectedMelody, EachParseReportsItsOwnErrors) {
  for (const Row& row : Table("Reports")) {
    const Boxes boxes;
    FakeSaveQuestion cancel;
    const auto [outcome, page, messages] = Converted(row[0], row[1], cancel);
    EXPECT_EQ(outcome, Outcome::kIncomplete) << row[0] << row[1];
    EXPECT_TRUE(page) << row[0] << row[1];
    EXPECT_EQ(boxes.Text(), Expanded(row[2])) << row[0] << row[1];
    EXPECT_EQ(messages, boxes.recorded.messages);
  }
}

TEST(ConvertSelectedMelody, SaysWhyItCannotConvert) {
  for (const Row& row : Table("Refusals")) {
    const Boxes boxes;
    EXPECT_EQ(Convert(row[0], row[1]), "(cannot convert)");
    ASSERT_EQ(boxes.recorded.messages.size(), 1u) << row[0];
    EXPECT_EQ(boxes.Text().find("!No se puede convertir la melodía: "), 0u);
    EXPECT_NE(boxes.Text().find(row[2], 36), std::string::npos) << boxes.Text();
  }
  const Boxes boxes;  // nothing was parsed, so the octave is not used
  core::RTTTLMelody fresh = MelodyOf("x:y");
  FakeSaveQuestion cancel;
  EXPECT_FALSE(ConvertSelectedMelody(fresh, " Compositor", "", cancel).page);
  EXPECT_EQ(boxes.Text().find(Expanded("%?|!No se puede convertir")), 0u);
}

// Each note contains the header's duration: thirty thousand digits would give 150 MB.
TEST(ConvertSelectedMelody, RefusesLongDefaults) {
  const Boxes boxes;
  for (const CatalogueRow& row : CatalogueRows()) {
    for (const std::string header : {"x:d=123456789,o=5", "x:d=4,o=5.0000000"}) {
      const std::string page =
          Convert(header + ",b=120:c", row.model, FakeSaveQuestion("unwritten"));
      EXPECT_EQ(page == "(cannot convert)", row.code != "NRTLNOMOD") << row.model;
    }
  }
  EXPECT_TRUE(boxes.Text().ends_with("…» pasa de 8 caracteres")) << boxes.Text();
  EXPECT_TRUE(Convert("x:d=4,o=5.000000,b=9:c", " Pulsaciones").starts_with("Melodia"));
  // With a blank before it, the setting is read only by the second parse.
  EXPECT_EQ(Convert("x:d=4, o=5.0000000,b=9:c", " Pulsaciones"), "(cannot convert)");
}

TEST(ConvertSelectedMelody, SavesFiles) {
  const TempFolder folder;
  const std::string file = (folder / "file").string();
  for (const Row& row : Table("Saved files")) {
    SCOPED_TRACE(row[0] + row[1]);
    folder.Write("file", "before");
    FakeSaveQuestion answer(row[2] == "cancel"    ? std::nullopt
                            : row[2] == "nowhere" ? std::optional(file + "/a")
                                                  : std::optional(file));
    const Boxes boxes;
    std::string page = Convert(row[1], row[0], std::move(answer));
    core::ReplaceAll(page, "\r\n", "¶");
    EXPECT_EQ(core::ReplaceAll(page, "\n", ";"), row[3]);
    std::string shown = boxes.Text();
    core::ReplaceAll(shown, file, "@");
    EXPECT_EQ(core::ReplaceAll(shown, "|", ";"), Expanded(row[4]));
    const std::string bytes = Hex(folder.Read("file"));
    EXPECT_TRUE(row[5].empty() ? folder.Read("file") == "before" : bytes.ends_with(row[5]))
        << bytes;
    EXPECT_EQ(core::ToUtf8(answer.asked), row[0] == " KWS" ? "Grabar Melodía kws| (*.kws)|*.kws||2"
                                                           : "Grabar MIDI| (*.mid)|*.mid||2");
  }
  EXPECT_TRUE(SavesFile(" KWS") && SavesFile("MIDI (cable)") && !SavesFile(" Compositor"));
}

// Every saved model restores its brand, except that EMS lists models of other makes as well and the
// brand of the two generic Samsung formats is not restored.
TEST(PhoneCatalogue, EveryModelRestoresItsBrand) {
  std::vector<std::string> brands = {"kept"};
  const PhoneCatalogue catalogue = LoadPhoneCatalogue(brands);
  EXPECT_EQ(brands,
            (std::vector<std::string>{"kept", "Nokia", "Kyocera", "Samsung", "EMS", "Motorola",
                                      "Ericsson", "Mitsubishi Trium", "Siemens"}));
  std::string codes;
  for (std::size_t i = 0; i < CatalogueRows().size(); ++i) {
    const CatalogueRow& row = CatalogueRows()[i];
    EXPECT_EQ(catalogue.rows[i],
              std::string(row.brand) + "^" + std::string(row.model) + "^" + std::string(row.code));
    const auto brand = RestoredBrand(row.model);
    EXPECT_EQ(brand ? brands.at(*brand + 1) : "Samsung", row.brand) << row.model;
    EXPECT_EQ(brand.has_value(), !row.model.starts_with(" Pulsaciones tipo")) << row.model;
    codes.append(row.code).append(" ");
  }
  EXPECT_EQ(codes,
            "NRTLNOMOD NRTL NCOM NCOM NKEY EMSE EMSI EMSE EMSE EMSI KKWS KKWS SAM1 SAM1 SAM1 SAM1 "
            "SAM2 SAM2 SAM2 MOTS MOTK MOTI MOTS MOTK MOTI MOTI MOTI mdy midi ");
  ExpectRows("Labels", [](const Row& row) { return FormatLabel(row[0]); });
}

TEST(PhoneCatalogue, ListsAndRestoresExactly) {
  std::vector<std::string> ignored;
  PhoneCatalogue catalogue = LoadPhoneCatalogue(ignored);
  EXPECT_EQ(ModelsOfBrand(catalogue, "EMS"),
            (std::vector<std::string_view>{" EMelody", " IMelody"}));
  EXPECT_EQ(ModelsOfBrand(catalogue, "Nokia").size(), 5u);
  catalogue.rows[400] = "Nokia^a^b^c";
  catalogue.rows[401] = "Nokia^a";
  catalogue.rows[500] = "Nokia^ last^x";
  EXPECT_EQ(ModelsOfBrand(catalogue, "Nokia").back(), " last");
  EXPECT_EQ(ModelsOfBrand(catalogue, "Nokia").size(), 6u);
  for (const std::string_view brand : {"nokia", "Nokia ", "", "Mitsubishi"}) {
    EXPECT_TRUE(ModelsOfBrand(catalogue, brand).empty()) << brand;
  }
  for (const std::string_view type : {" Pulsaciones Tipo 1", " Pulsaciones Tipo 2"}) {
    EXPECT_EQ(RestoredBrand(type), 2u);
  }
  EXPECT_FALSE(RestoredBrand("") || RestoredBrand("EMelody"));
}

TEST(FindPhones, TakesLooseNames) {
  ExpectRows("Phones", [](const Row& row) {
    std::string models;
    for (const CatalogueRow& found : FindPhones(row[0])) {
      models.append("[").append(found.model).append("]");
    }
    return models;
  });
}

TEST(PhoneDescription, NamesThePhoneAndWhatItGets) {
  ExpectRows("Words", [](auto& row) { return core::ToUtf8(PhoneName(row[0])); });
  ExpectRows(
      "Words", [](auto& row) { return core::ToUtf8(PhoneGets(row[0])); }, 2);
}

}  // namespace tonadex::phones::conversion_test
