#pragma once

#include <string_view>
#include <vector>

#include "phones/catalogue.h"

namespace tonadex::phones {

// The catalogue rows that a loosely written name means ("3310", "Nokia 3310", "t68i", "imelody"):
// the one whose model text or brand and model text are just that, else all whose brand and model
// hold every word of it. Case does not matter; words are runs of letters and digits.
std::vector<CatalogueRow> FindPhones(std::string_view name);

}  // namespace tonadex::phones
