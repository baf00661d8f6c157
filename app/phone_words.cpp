#include "app/phone_words.h"

#include "app/phone_formats.h"
#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr std::string_view kChoose = u8"Elige tu móvil"_w;
constexpr std::string_view kChooseSentence =
    u8"Elige la marca y el modelo de tu móvil, o el formato que admite."_w;
constexpr std::size_t kNamedModels = 2;  // of a list of models, then "…"

// "3210,3310,3330" gives "3210, 3310 …"; a format entry stays as it is.
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

}  // namespace

std::string PhoneName(std::string_view model) {
  const auto row = FindModel(model);
  if (!row) {
    return std::string(kChoose);
  }
  const std::string name = ShortModel(model);
  return name.starts_with(row->brand) ? name : std::string(row->brand) + " " + name;
}

std::string PhoneGets(std::string_view model) {
  const PhoneFormat* format = FindFormat(model);
  return std::string(format == nullptr ? kChooseSentence : format->gets);
}

bool IsModel(std::string_view model) {
  return FindModel(model).has_value();
}

}  // namespace tonadex::app
