#include "phones/phone_choices.h"

#include <algorithm>
#include <array>

#include "core/rtttl.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "phones/catalogue.h"
#include "phones/conversion.h"
#include "phones/formats.h"
#include "phones/phone_finder.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;

constexpr std::string_view kExample = "x:d=4,o=5,b=125:8c,8e,g.,p,8f#6,2c6";

constexpr std::string_view kSend =
    u8"No se teclea: se manda al móvil por cable, con el programa de su fabricante."_w;

struct Way {
  std::string_view code, words;
};
constexpr std::string_view kNokiaWay =
    u8"En el móvil: Menú, busca «Compositor» (en muchos Nokia está dentro de Tonos) y elige una "
    u8"melodía vacía. Empieza con las teclas tal como están, sin cambiar nada antes."_w;
constexpr std::string_view kEricssonWay =
    u8"En el móvil: entra en el menú de sonidos y busca «Componer melodía» o «Mis melodías». Si el "
    u8"tuyo no lo tiene, mándala por cable."_w;
constexpr std::string_view kSamsungWay =
    u8"En el móvil: entra en el menú de sonidos o de diversión y busca «Compositor» o «Componer "
    u8"melodía»; el nombre cambia con el modelo."_w;
constexpr std::string_view kMotorolaWay =
    u8"En el móvil: entra en el menú de tonos, busca «Mis tonos» y elige crear un tono nuevo; el "
    u8"nombre cambia con el modelo."_w;
constexpr auto kWays = std::to_array<Way>({
    {kRtttlCode, u8"No se teclea: se manda al móvil por cable o SMS."_w},
    {"NRTL", u8"No se teclea: se manda al móvil por cable o SMS."_w},
    {kComposerCode, kNokiaWay},
    {kKeysCode, kNokiaWay},
    {"EMSE", kEricssonWay},
    {"EMSI", kEricssonWay},
    {"KKWS", kSend},
    {"SAM1", kSamsungWay},
    {"SAM2", kSamsungWay},
    {"MOTS", u8"No se teclea en el compositor: se manda al móvil en un SMS o por cable."_w},
    {"MOTK", kMotorolaWay},
    {"MOTI", kMotorolaWay},
    {"mdy", kSend},
    {"midi", kSend},
});

// A row of phones has one choice per number, a format has one.
std::vector<PhoneChoice> ChoicesOf(const CatalogueRow& row) {
  std::vector<PhoneChoice> choices;
  for (std::string_view rest = row.model; !rest.empty();) {
    const std::size_t end = std::min(rest.find(','), rest.size());
    choices.push_back({std::string(core::Trim(rest.substr(0, end))), row.brand, row.model});
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return choices;
}

}  // namespace

bool IsFormatModel(std::string_view model) {
  return model.starts_with(' ') || core::Contains(model, "(cable)");
}

std::vector<PhoneChoice> PhonesOfBrand(std::string_view brand) {
  std::vector<PhoneChoice> phones;
  for (const CatalogueRow& row : CatalogueRows()) {
    if (row.brand == brand && !IsFormatModel(row.model)) {
      const std::vector<PhoneChoice> choices = ChoicesOf(row);
      phones.insert(phones.end(), choices.begin(), choices.end());
    }
  }
  return phones;
}

std::vector<PhoneChoice> SearchPhones(std::string_view typed) {
  std::vector<PhoneChoice> found;
  for (const bool formats : {false, true}) {
    for (const CatalogueRow& row : CatalogueRows()) {
      if (IsFormatModel(row.model) != formats) {
        continue;
      }
      for (PhoneChoice& choice : ChoicesOf(row)) {
        choice.name = choice.name.starts_with(row.brand)
                          ? choice.name
                          : std::string(row.brand) + " " + choice.name;
        if (BeginsWords(choice.name, typed)) {
          found.push_back(std::move(choice));
        }
      }
    }
  }
  return found;
}

std::string ExampleResult(std::string_view model) {
  if (FindModel(model) == nullptr || SavesFile(model)) {
    return {};
  }
  core::RTTTLMelody melody;
  const auto page = ConvertQuietly(melody, kExample, model);
  return page ? std::string(core::Trim(page->result)) : std::string();
}

std::string_view HowToEnter(std::string_view model) {
  const Format* format = FindFormat(model);
  const auto way =
      std::ranges::find(kWays, format == nullptr ? std::string_view() : format->code, &Way::code);
  return way == kWays.end() ? std::string_view() : way->words;
}

}  // namespace tonadex::phones
