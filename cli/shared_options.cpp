#include "cli/shared_options.h"

#include <CLI/CLI.hpp>

#include "core/windows1252.h"
#include "phones/phone_finder.h"

namespace tonadex::cli {
namespace {

std::optional<std::string> PhoneModel(Context& context, const std::string& name) {
  const std::vector<phones::CatalogueRow> found = phones::FindPhones(core::FromUtf8(name));
  if (found.size() == 1) {
    return std::string(found.front().model);
  }
  if (found.empty()) {
    Fail(context, ExitCode::kWrongUse,
         "ningún móvil del catálogo responde a «" + name + "»; mira «tonadex-cli modelos»");
    return std::nullopt;
  }
  Fail(context, ExitCode::kWrongUse, "«" + name + "» puede ser:");
  for (const phones::CatalogueRow& row : found) {
    context.err << "  " << row.brand << ": \"" << row.model << "\"\n";
  }
  return std::nullopt;
}

}  // namespace

bool PhoneChoice::IsGiven() const {
  return phoneOption->count() + modelOption->count() > 0;
}

bool PhoneChoice::IsOne() const {
  return (phoneOption->count() > 0) != (modelOption->count() > 0);
}

void AddPhone(CLI::App& command, PhoneChoice& choice) {
  choice.phoneOption = command
                           .add_option("-t,--telefono", choice.phone,
                                       "Móvil o formato: 3310, \"Nokia 3310\", t68i, imelody")
                           ->type_name("NOMBRE");
  choice.modelOption =
      command.add_option("-m,--modelo", choice.model, "Texto exacto del modelo en el catálogo")
          ->type_name("TEXTO");
}

std::optional<std::string> ChosenModel(Context& context, const PhoneChoice& choice) {
  return choice.phoneOption->count() > 0 ? PhoneModel(context, choice.phone)
                                         : std::optional(core::FromUtf8(choice.model));
}

void AddMelody(CLI::App& command, std::string& file) {
  command.add_option("fichero", file, "Melodía RTTTL; \"-\" es la entrada estándar")
      ->type_name("FICHERO")
      ->required();
}

void AddMelodies(CLI::App& command, std::vector<std::string>& files) {
  command.add_option("ficheros", files, "Melodías RTTTL; \"-\" es la entrada estándar")
      ->type_name("FICHERO");
}

}  // namespace tonadex::cli
