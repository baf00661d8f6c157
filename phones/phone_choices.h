#pragma once

#include <string>
#include <string_view>
#include <vector>

// Helps someone to find the row of the catalogue for the phone in the hand. Texts are Windows-1252.
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

// The phones, then the formats, of which a word of make or name begins with each word of `typed`
// ("33", "t68", "nokia puls"), with their makes. Ignores case; none for a text without words.
std::vector<PhoneChoice> SearchPhones(std::string_view typed);

// What a short melody looks like for this model, "" where there is nothing to show.
std::string ExampleResult(std::string_view model);

// How the melody gets into the phone: how to open its composer, or what to send it with. "" when
// the catalogue lacks the model.
std::string_view HowToEnter(std::string_view model);

}  // namespace tonadex::phones
