#include "phones/catalogue.h"

#include <algorithm>

#include "core/text.h"

namespace tonadex::phones {
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

constexpr CatalogueRow Fields(std::string_view row) {
  const std::size_t first = row.find('^');
  const std::size_t second = row.find('^', first + 1);
  return {row.substr(0, first), row.substr(first + 1, second - first - 1), row.substr(second + 1)};
}

constexpr auto kPhones = [] {
  std::array<CatalogueRow, kRows.size()> phones;
  std::ranges::transform(kRows, phones.begin(), Fields);
  return phones;
}();

// RestoredBrand compares these two models with spellings that the program never saves, so they
// restore no brand. Kept, because saved settings have always behaved so.
struct Spelling {
  std::string_view model, saved;
};
constexpr std::array kSavedSpellings = std::to_array<Spelling>({
    {" Pulsaciones tipo 1", " Pulsaciones Tipo 1"},
    {" Pulsaciones tipo 2", " Pulsaciones Tipo 2"},
});

std::string_view SavedText(const CatalogueRow& phone) {
  const auto found = std::ranges::find(kSavedSpellings, phone.model, &Spelling::model);
  return found == kSavedSpellings.end() ? phone.model : found->saved;
}

}  // namespace

PhoneCatalogue LoadPhoneCatalogue(std::vector<std::string>& cmbmarcas) {
  cmbmarcas.insert(cmbmarcas.end(), kBrands.begin(), kBrands.end());
  PhoneCatalogue catalogue;
  std::ranges::copy(kRows, catalogue.rows.begin());
  return catalogue;
}

std::optional<CatalogueRow> SplitCatalogueRow(std::string_view row) {
  const std::vector<std::string_view> fields = core::SplitText(row, '^');
  if (fields.size() != 3) {
    return std::nullopt;
  }
  return CatalogueRow{fields[0], fields[1], fields[2]};
}

std::span<const CatalogueRow> CatalogueRows() {
  return kPhones;
}

const CatalogueRow* FindModel(std::string_view model) {
  const auto found = std::ranges::find(kPhones, model, &CatalogueRow::model);
  return found == kPhones.end() ? nullptr : &*found;
}

std::string_view ModelOfCode(std::string_view code) {
  const auto found = std::ranges::find(kPhones, code, &CatalogueRow::code);
  return found == kPhones.end() ? std::string_view() : found->model;
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
  const auto phone = std::ranges::find(kPhones, savedModel, SavedText);
  if (phone == kPhones.end()) {
    return std::nullopt;
  }
  return static_cast<std::size_t>(std::ranges::find(kBrands, phone->brand) - kBrands.begin());
}

}  // namespace tonadex::phones
