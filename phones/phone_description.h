#pragma once

#include <string>
#include <string_view>

// Short Spanish descriptions of the chosen phone.
namespace tonadex::phones {

// For the navigation row: "Nokia 3210, 3310, 3330 …", "Kyocera KWS"; "Elige tu móvil" when the
// model is not in the catalogue.
std::string PhoneName(std::string_view model);

// Describes the result: "Pulsaciones para el compositor, hasta 50 notas, tres octavas."; an
// invitation to choose when the model is not in the catalogue.
std::string PhoneGets(std::string_view model);

}  // namespace tonadex::phones
