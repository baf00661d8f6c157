#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Phone makes, models and format codes.
namespace tonadex::phones {

// One row: brand, model text and format code separated by "^", for example
// "Nokia^ RTTTL (cable)^NRTLNOMOD". Rows 0 to 28 are filled, the rest are "".
// The model text, including its leading blank, is the key everywhere.
struct PhoneCatalogue {
  std::array<std::string_view, 501> rows;
};

// Indexed by the brand's number, 0 "Nokia" to 7 "Siemens".
inline constexpr std::array<std::string_view, 8> kBrands = {
    "Nokia", "Kyocera", "Samsung", "EMS", "Motorola", "Ericsson", "Mitsubishi Trium", "Siemens"};

struct CatalogueRow {
  std::string_view brand, model, code;
};

// Appends the brand names to `cmbmarcas` (not cleared) and returns the filled table.
PhoneCatalogue LoadPhoneCatalogue(std::vector<std::string>& cmbmarcas);

// The fields of a row; nullopt unless there are exactly three.
std::optional<CatalogueRow> SplitCatalogueRow(std::string_view row);

// All rows in table order.
std::span<const CatalogueRow> CatalogueRows();

// The row of a model text, compared exactly; nullptr when the catalogue lacks it.
const CatalogueRow* FindModel(std::string_view model);

// Model texts of a brand (exact, case-sensitive) in table order.
std::vector<std::string_view> ModelsOfBrand(const PhoneCatalogue& catalogue,
                                            std::string_view brand);

// Number of the brand that a saved model text restores, if any. The generic Samsung entries restore
// none: deliberate.
std::optional<std::size_t> RestoredBrand(std::string_view savedModel);

}  // namespace tonadex::phones
