#include "phones/catalogue.h"

#include <gtest/gtest.h>

#include <set>

#include "phones/conversion.h"
#include "phones/formats.h"
#include "phones/phone_description.h"
#include "phones/phone_finder.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/fakes.h"

namespace tonadex::phones {
namespace {

TEST(PhoneCatalogue, EveryRowHasABrandAndALabel) {
  const std::vector<test::Row> table = test::Table("Catalogue");
  std::vector<std::string> brands = {"kept"};
  const PhoneCatalogue catalogue = LoadPhoneCatalogue(brands);
  EXPECT_EQ(brands,
            (std::vector<std::string>{"kept", "Nokia", "Kyocera", "Samsung", "EMS", "Motorola",
                                      "Ericsson", "Mitsubishi Trium", "Siemens"}));
  for (std::size_t i = 0; i < catalogue.rows.size(); ++i) {
    ASSERT_EQ(catalogue.rows[i], i < table.size() ? table[i][0] : "") << i;
  }
  ASSERT_EQ(CatalogueRows().size(), table.size());
  for (const test::Row& row : table) {
    const std::string_view model = SplitCatalogueRow(row[0])->model;
    const auto brand = RestoredBrand(model);
    EXPECT_EQ(brand ? std::to_string(*brand) : "", row[1]) << model;
    EXPECT_EQ(FormatLabel(model), row[2]) << model;
  }
  for (const test::Row& row : test::Table("Other labels")) {
    EXPECT_EQ(FormatLabel(row[0]), row[1]) << row[0];
  }
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
  EXPECT_EQ(RestoredBrand(" Pulsaciones Tipo 1"), 2u);
  EXPECT_EQ(RestoredBrand(" Pulsaciones Tipo 2"), 2u);
  EXPECT_EQ(RestoredBrand(""), std::nullopt);
  EXPECT_EQ(RestoredBrand("EMelody"), std::nullopt);
}

// A writer tells as many octaves apart as the table says. The Motorola notes have a number for one
// more, which the phones do not play.
TEST(PhoneFormats, WritersTellTheirOctavesApart) {
  test::FakeSaveQuestion question;
  for (const CatalogueRow& row : CatalogueRows()) {
    std::set<std::string> results;
    for (const char octave : std::string_view("12345678")) {
      core::RTTTLMelody melody = test::MelodyOf("c,c,c6,c6,8g6,c" + std::string(1, octave));
      const auto page = ConvertSelectedMelody(melody, row.model, "x", question).page;
      results.insert(page ? page->result : "");
    }
    const int count = FindFormat(row.model)->octaves.count + (row.code == "MOTI" ? 1 : 0);
    const std::size_t all = SavesFile(row.model) ? 1 : 8;
    EXPECT_EQ(results.size(), count == 0 ? all : static_cast<std::size_t>(count)) << row.model;
  }
}

TEST(FindPhones, TakesLooseNames) {
  for (const test::Row& row : test::Table("Phones")) {
    std::string models;
    for (const CatalogueRow& found : FindPhones(row[0])) {
      models.append("[").append(found.model).append("]");
    }
    EXPECT_EQ(models, row[1]) << row[0];
  }
}

TEST(PhoneDescription, NamesThePhoneAndWhatItGets) {
  for (const test::Row& row : test::Table("Words")) {
    EXPECT_EQ(core::ToUtf8(PhoneName(row[0])), row[1]);
    EXPECT_EQ(core::ToUtf8(PhoneGets(row[0])), row[2]);
  }
}

}  // namespace
}  // namespace tonadex::phones
