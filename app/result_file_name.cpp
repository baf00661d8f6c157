#include "app/result_file_name.h"

#include "core/melody_file.h"
#include "net/file_name.h"
#include "phones/formats.h"

namespace tonadex::app {

std::string SuggestedFileName(std::string_view row, std::string_view model) {
  constexpr std::string_view kNameless = "melodia", kTextExtension = "txt";
  std::string name(core::RowStem(row));
  for (char& c : name) {
    if (!net::IsSafeFileName(std::string_view(&c, 1)) && c != ' ' && c != '.') {
      c = '_';
    }
  }
  const phones::Format* format = phones::FindFormat(model);
  const std::string ending =
      "." + std::string(format == nullptr ? kTextExtension : format->extension);
  const bool usable = !name.empty() && net::IsSafeFileName(name + ending);
  return (usable ? name : std::string(kNameless)) + ending;
}

}  // namespace tonadex::app
