#pragma once

#include <string>
#include <string_view>
#include <vector>

// Helps the user to find the catalogue row of a phone. Texts are Windows-1252.
namespace tonadex::phones {

struct PhoneChoice {
  std::string name;               // "3310", with its make "Nokia 3310"
  std::string_view brand, model;  // of the catalogue's row

  friend bool operator==(const PhoneChoice&, const PhoneChoice&) = default;
};

// Whether a model text of the catalogue names a format instead of phones.
bool IsFormatModel(std::string_view model);

// Every phone of a make by its number, in the order of the catalogue.
std::vector<PhoneChoice> PhonesOfBrand(std::string_view brand);

// The phones, then the formats, that match `typed` ("33", "t68", "nokia puls"): each typed word
// begins a word of make or name. Names include the make. Ignores case; none without words.
std::vector<PhoneChoice> SearchPhones(std::string_view typed);

// A short melody converted for this model; "" if the result is a file.
std::string ExampleResult(std::string_view model);

// How to get the melody into the phone: how to open its composer, or how to send it. "" for an
// unknown model.
std::string_view HowToEnter(std::string_view model);

}  // namespace tonadex::phones
