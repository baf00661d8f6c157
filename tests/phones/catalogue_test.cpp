#include "phones/catalogue.h"

#include <gtest/gtest.h>

#include "core/windows1252.h"
#include "phones/formats.h"
#include "phones/phone_description.h"
#include "phones/phone_finder.h"
#include "tests/core/table.h"

namespace tonadex::phones {
namespace {

// Every saved model restores its brand, except that EMS lists models of other makes as well and the
// brand of the two generic Samsung formats is not restored.
TEST(PhoneCatalogue, EveryModelRestoresItsBrand) {
  std::vector<std::string> brands = {"kept"};
  const PhoneCatalogue catalogue = LoadPhoneCatalogue(brands);
  EXPECT_EQ(brands,
            (std::vector<std::string>{"kept", "Nokia", "Kyocera", "Samsung", "EMS", "Motorola",
                                      "Ericsson", "Mitsubishi Trium", "Siemens"}));
  EXPECT_EQ(CatalogueRows().size(), 29u);
  for (std::size_t i = 0; i < CatalogueRows().size(); ++i) {
    const CatalogueRow& row = CatalogueRows()[i];
    EXPECT_EQ(catalogue.rows[i],
              std::string(row.brand) + "^" + std::string(row.model) + "^" + std::string(row.code));
    const auto brand = RestoredBrand(row.model);
    EXPECT_EQ(brand ? brands.at(*brand + 1) : "Samsung", row.brand) << row.model;
    EXPECT_EQ(brand.has_value(), !row.model.starts_with(" Pulsaciones tipo")) << row.model;
  }
  for (const test::Row& row : test::Table("Labels")) {
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
