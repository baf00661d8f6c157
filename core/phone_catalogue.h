#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Phone makes, models and format codes.
namespace tonadex::core {

// One row: brand, model text and format code parted by "^", for example
// "Nokia^ RTTTL (cable)^NRTLNOMOD". Rows 0 to 28 are filled, the rest are "".
// The model text, leading blank included, is the key everywhere; the code is carried along.
struct PhoneCatalogue {
  std::array<std::string_view, 501> rows;
};

// Position in the list is the brand's number, 0 "Nokia" to 7 "Siemens".
inline constexpr std::array<std::string_view, 8> kBrands = {
    "Nokia", "Kyocera", "Samsung", "EMS", "Motorola", "Ericsson", "Mitsubishi Trium", "Siemens"};

struct CatalogueRow {
  std::string_view brand, model, code;
};

// Appends the brand names to `cmbmarcas` (not cleared) and gives the filled table.
PhoneCatalogue LoadPhoneCatalogue(std::vector<std::string>& cmbmarcas);

// The fields of a row; none for an empty row or one without exactly three fields.
std::optional<CatalogueRow> SplitCatalogueRow(std::string_view row);

// All rows in table order.
std::vector<CatalogueRow> CatalogueRows();

// Model texts of a brand (exact, case-sensitive) in table order.
std::vector<std::string_view> ModelsOfBrand(const PhoneCatalogue& catalogue,
                                            std::string_view brand);

// Number of the brand that a saved model text restores; none when no group holds it.
// The generic Samsung entries restore none and " EMelody" restores EMS: deliberate, saved settings
// have always behaved so.
std::optional<std::size_t> RestoredBrand(std::string_view savedModel);

}  // namespace tonadex::core
