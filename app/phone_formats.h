#pragma once

#include <optional>
#include <string_view>

#include "core/phone_catalogue.h"

// What each of the catalogue's format codes means to the window.
namespace tonadex::app {

// Octaves that a format plays.
enum class OctaveRange {
  kAny,      // as written
  kAround,   // `octaves` from the base octave that the converter chooses for the melody
  kFrom,     // from `lowest` on
  kBetween,  // `octaves` from `lowest` on
};

struct PhoneFormat {
  std::string_view code;
  std::string_view gets;       // a sentence: what this phone gets
  std::string_view extension;  // of a saved result, without its full stop
  bool keyPresses;
  OctaveRange range;
  int lowest;
  int octaves;
};

// The catalogue's row of a model text, compared exactly.
std::optional<core::CatalogueRow> FindModel(std::string_view model);

// The format of a model text, nullptr when the catalogue does not hold it.
const PhoneFormat* FindFormat(std::string_view model);

}  // namespace tonadex::app
