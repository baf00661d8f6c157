#include "json/catalogue.h"

#include <array>
#include <nlohmann/json.hpp>

#include "core/windows1252.h"
#include "phones/catalogue.h"
#include "phones/file_formats.h"
#include "phones/formats.h"
#include "phones/keypads.h"
#include "phones/phone_choices.h"
#include "phones/phone_description.h"

namespace tonadex::json {
namespace {

using Json = nlohmann::ordered_json;
using core::ToUtf8;

// Names of phones::Kind, indexed by it.
constexpr std::array kKindNames = {"texto", "notas", "teclas", "fichero"};

Json Keypad(const phones::Keypad& keypad) {
  Json keys = Json::array();
  for (const phones::KeypadKey& key : keypad.keys) {
    keys.push_back({{"tecla", std::string(1, key.label)},
                    {"signos", ToUtf8(key.signs)},
                    {"palabra", ToUtf8(key.word)},
                    {"fila", key.row},
                    {"columna", key.column}});
  }
  return {{"filas", keypad.rows}, {"columnas", keypad.columns}, {"teclas", std::move(keys)}};
}

Json PhonesOf(const phones::CatalogueRow& row) {
  Json names = Json::array();
  for (const phones::PhoneChoice& choice : phones::PhonesOfBrand(row.brand)) {
    if (choice.model == row.model) {
      names.push_back(ToUtf8(choice.name));
    }
  }
  return names;
}

}  // namespace

std::string KeypadJson(std::string_view model) {
  const phones::Keypad* keypad = phones::FindKeypad(model);
  return keypad == nullptr ? "" : Keypad(*keypad).dump();
}

std::string CatalogueJson() {
  Json models = Json::array();
  for (const phones::CatalogueRow& row : phones::CatalogueRows()) {
    const auto kind = static_cast<std::size_t>(phones::FindFormat(row.model)->kind);
    Json model = {{"marca", ToUtf8(row.brand)},
                  {"modelo", ToUtf8(row.model)},
                  {"formato", ToUtf8(row.code)},
                  {"moviles", PhonesOf(row)},
                  {"clase", kKindNames[kind]},
                  {"fichero", phones::FileFormatOf(row.model)->name},
                  {"recibe", ToUtf8(phones::PhoneGets(row.model))},
                  {"entrada", ToUtf8(phones::HowToEnter(row.model))},
                  {"ejemplo", ToUtf8(phones::ExampleResult(row.model))}};
    if (const phones::Keypad* keypad = phones::FindKeypad(row.model)) {
      model["teclado"] = Keypad(*keypad);
    }
    models.push_back(std::move(model));
  }
  return Json{{"modelos", std::move(models)}}.dump();
}

}  // namespace tonadex::json
