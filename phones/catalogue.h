#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// The phone catalogue: brands, models and format codes.
namespace tonadex::phones {

// One row: brand, model text and format code separated by "^", for example
// "Nokia^ RTTTL (cable)^NRTLNOMOD". Rows 0 to 28 are filled, the rest are "".
// The model text, including its leading blank, is the key everywhere.
struct PhoneCatalogue {
  std::array<std::string_view, 501> rows;
};

// Indexed by brand number: 0 is "Nokia", 7 "Siemens".
inline constexpr std::array<std::string_view, 8> kBrands = {
    "Nokia", "Kyocera", "Samsung", "EMS", "Motorola", "Ericsson", "Mitsubishi Trium", "Siemens"};

struct CatalogueRow {
  std::string_view brand, model, code;
};

// Appends the brand names to `cmbmarcas` (not cleared) and returns the filled table.
PhoneCatalogue LoadPhoneCatalogue(std::vector<std::string>& cmbmarcas);

// The fields of a row; nullopt unless it has exactly three.
std::optional<CatalogueRow> SplitCatalogueRow(std::string_view row);

// All rows in table order.
std::span<const CatalogueRow> CatalogueRows();

// The row of a model text, compared exactly; nullptr when it is not in the catalogue.
const CatalogueRow* FindModel(std::string_view model);

// The first model text with this format code; "" when there is none.
std::string_view ModelOfCode(std::string_view code);

// Model texts of a brand (compared exactly) in table order.
std::vector<std::string_view> ModelsOfBrand(const PhoneCatalogue& catalogue,
                                            std::string_view brand);

// The number of the brand of a saved model text; nullopt when it restores none, as for the generic
// Samsung entries (deliberate).
std::optional<std::size_t> RestoredBrand(std::string_view savedModel);

}  // namespace tonadex::phones
