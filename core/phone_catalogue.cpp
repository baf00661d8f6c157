#include "core/phone_catalogue.h"

#include <algorithm>

#include "core/text.h"

namespace tonadex::core {
namespace {

constexpr std::array<std::string_view, 29> kRows = {
    "Nokia^ RTTTL (cable)^NRTLNOMOD",
    "Nokia^ RTTTL (cable-Tempo125)^NRTL",
    "Nokia^ Compositor^NCOM",
    "Nokia^3210,3310,3330,3390,8250^NCOM",
    "Nokia^ Pulsaciones^NKEY",
    "EMS^ EMelody^EMSE",
    "EMS^ IMelody^EMSI",
    "Ericsson^R520,R600^EMSE",
    "Ericsson^T20e,T29,T39,T66,T68m^EMSE",
    "Ericsson^T65,T68u,T68i,T300^EMSI",
    "Kyocera^ KWS^KKWS",
    "Kyocera^2119,2135,2255,2235,3035^KKWS",
    "Samsung^ Pulsaciones tipo 1^SAM1",
    "Samsung^R220,R225,N105,N400^SAM1",
    "Samsung^A200,A288,Q300^SAM1",
    "Samsung^S100,T100,V100^SAM1",
    "Samsung^ Pulsaciones tipo 2^SAM2",
    "Samsung^A300,A308,A400,A408^SAM2",
    "Samsung^Q100,Q105,Q200^SAM2",
    "Motorola^ Motorola por SMS^MOTS",
    "Motorola^ Motorola Pulsaciones Tipo 1^MOTK",
    "Motorola^ Motorola iMelody^MOTI",
    "Motorola^v100,v50,T193,T191^MOTS",
    "Motorola^p280,v60,v66,v120c^MOTK",
    "Motorola^120e,120t,T720^MOTI",
    "Motorola^C300,C331,C332,C333^MOTI",
    "Motorola^v60i, v60t, v120t^MOTI",
    "Mitsubishi Trium^MDY (cable)^mdy",
    "Siemens^MIDI (cable)^midi",
};

struct SavedModel {
  std::string_view model;
  std::size_t brand;  // index in kBrands
};

// Which brand a saved model text brings back, first match wins. The Samsung group spells "Tipo"
// with a capital where the table has "tipo", so its generic entries never restore their brand.
constexpr std::array kSavedModels = std::to_array<SavedModel>({
    {" RTTTL (cable)", 0},
    {" RTTTL (cable-Tempo125)", 0},
    {"3210,3310,3330,3390,8250", 0},
    {" Compositor", 0},
    {" Pulsaciones", 0},
    {"2119,2135,2255,2235,3035", 1},
    {" KWS", 1},
    {" Pulsaciones Tipo 1", 2},
    {"R220,R225,N105,N400", 2},
    {"A200,A288,Q300", 2},
    {"S100,T100,V100", 2},
    {" Pulsaciones Tipo 2", 2},
    {"A300,A308,A400,A408", 2},
    {"Q100,Q105,Q200", 2},
    {" EMelody", 3},
    {" IMelody", 3},
    {" Motorola por SMS", 4},
    {" Motorola Pulsaciones Tipo 1", 4},
    {" Motorola iMelody", 4},
    {"v100,v50,T193,T191", 4},
    {"p280,v60,v66,v120c", 4},
    {"120e,120t,T720", 4},
    {"C300,C331,C332,C333", 4},
    {"v60i, v60t, v120t", 4},
    {" EMelody", 5},
    {"R520,R600", 5},
    {"T20e,T29,T39,T66,T68m", 5},
    {"T65,T68u,T68i,T300", 5},
    {"MDY (cable)", 6},
    {"MIDI (cable)", 7},
});

}  // namespace

PhoneCatalogue LoadPhoneCatalogue(std::vector<std::string>& cmbmarcas) {
  cmbmarcas.insert(cmbmarcas.end(), kBrands.begin(), kBrands.end());
  PhoneCatalogue catalogue;
  std::ranges::copy(kRows, catalogue.rows.begin());
  return catalogue;
}

std::optional<CatalogueRow> SplitCatalogueRow(std::string_view row) {
  const std::vector<std::string_view> fields = SplitText(row, '^');
  if (fields.size() != 3) {
    return std::nullopt;
  }
  return CatalogueRow{fields[0], fields[1], fields[2]};
}

std::vector<CatalogueRow> CatalogueRows() {
  std::vector<CatalogueRow> rows;
  rows.reserve(kRows.size());
  for (const std::string_view row : kRows) {
    rows.push_back(*SplitCatalogueRow(row));
  }
  return rows;
}

std::vector<std::string_view> ModelsOfBrand(const PhoneCatalogue& catalogue,
                                            std::string_view brand) {
  std::vector<std::string_view> models;
  for (const std::string_view row : catalogue.rows) {
    const auto fields = SplitCatalogueRow(row);
    if (fields && fields->brand == brand) {
      models.push_back(fields->model);
    }
  }
  return models;
}

std::optional<std::size_t> RestoredBrand(std::string_view savedModel) {
  const auto found = std::ranges::find(kSavedModels, savedModel, &SavedModel::model);
  if (found == kSavedModels.end()) {
    return std::nullopt;
  }
  return found->brand;
}

}  // namespace tonadex::core
