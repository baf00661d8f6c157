#pragma once

#include <string>
#include <string_view>

// Short Spanish descriptions of the chosen phone.
namespace tonadex::phones {

// For the navigation row: "Nokia 3210, 3310, 3330 …", "Kyocera KWS"; "Elige tu móvil" when the
// catalogue lacks the model.
std::string PhoneName(std::string_view model);

// The result for this phone: "Pulsaciones para el compositor, hasta 50 notas, tres octavas."; an
// invitation to choose when the catalogue lacks the model.
std::string PhoneGets(std::string_view model);

}  // namespace tonadex::phones
