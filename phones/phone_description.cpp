#include "phones/phone_description.h"

#include <array>

#include "core/text.h"
#include "core/windows1252.h"
#include "phones/catalogue.h"
#include "phones/formats.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;

constexpr std::string_view kChoose = u8"Elige tu móvil"_w;
constexpr std::string_view kChooseSentence =
    u8"Elige la marca y el modelo de tu móvil, o el formato que admite."_w;
constexpr std::size_t kNamedModels = 2;  // models of a list that are named before "…"

// Shortens a list: "3210,3310,3330" becomes "3210, 3310 …". A format entry is unchanged.
std::string ShortModel(std::string_view model) {
  std::string name;
  std::size_t named = 0;
  std::size_t comma = 0;
  for (; comma != std::string_view::npos && named < kNamedModels; ++named) {
    comma = model.find(',');
    name += (named == 0 ? "" : ", ") + std::string(core::Trim(model.substr(0, comma)));
    model.remove_prefix(comma == std::string_view::npos ? model.size() : comma + 1);
  }
  return comma == std::string_view::npos ? name : name + std::string(u8" …"_w);
}

// ", tres octavas"; "" for a format that plays every octave.
std::string OctavesInWords(const Octaves& octaves) {
  constexpr std::array<std::string_view, 5> kNumbers = {"", "", "dos", "tres", "cuatro"};
  switch (octaves.range) {
    case OctaveRange::kAny:
      return {};
    case OctaveRange::kFrom:
      return ", desde la octava " + std::to_string(octaves.lowest);
    case OctaveRange::kAround:
    case OctaveRange::kBetween:
      return ", " + std::string(kNumbers.at(static_cast<std::size_t>(octaves.count))) + " octavas";
  }
  return {};
}

}  // namespace

std::string PhoneName(std::string_view model) {
  const CatalogueRow* row = FindModel(model);
  if (row == nullptr) {
    return std::string(kChoose);
  }
  const std::string name = ShortModel(model);
  return name.starts_with(row->brand) ? name : std::string(row->brand) + " " + name;
}

std::string PhoneGets(std::string_view model) {
  const Format* format = FindFormat(model);
  if (format == nullptr) {
    return std::string(kChooseSentence);
  }
  std::string sentence(format->gets);
  if (format->noteLimit > 0) {
    sentence += ", hasta " + std::to_string(format->noteLimit) + " notas";
  }
  return sentence + OctavesInWords(format->octaves) + std::string(format->limits) + ".";
}

}  // namespace tonadex::phones
