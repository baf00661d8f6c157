#pragma once

#include <string_view>
#include <vector>

#include "phones/catalogue.h"

namespace tonadex::phones {

// The catalogue rows that match a loosely written name ("3310", "Nokia 3310", "t68i", "imelody"):
// the single row whose model text, or brand and model text, equals it; otherwise all rows whose
// brand and model contain every word of it. Ignores case; words are runs of letters and digits.
std::vector<CatalogueRow> FindPhones(std::string_view name);

// Whether `name` has a word that begins so for each word typed, and any is typed.
bool BeginsWords(std::string_view name, std::string_view typed);

}  // namespace tonadex::phones
