#pragma once

#include <string>
#include <string_view>

// The chosen phone in words.
namespace tonadex::phones {

// For the navigation row: "Nokia 3210, 3310, 3330 …", "Kyocera KWS"; "Elige tu móvil" when the
// text is no model of the catalogue.
std::string PhoneName(std::string_view model);

// What this phone gets: "Pulsaciones para el compositor, hasta 50 notas, tres octavas."; an
// invitation to choose when the text is no model of the catalogue.
std::string PhoneGets(std::string_view model);

}  // namespace tonadex::phones
