#include "app/result_file_name.h"

#include "core/melody_file.h"
#include "net/file_name.h"
#include "phones/formats.h"

namespace tonadex::app {

std::string FileNameOfRow(std::string_view row, std::string_view extension) {
  constexpr std::string_view kNameless = "melodia";
  std::string name(core::RowStem(row));
  for (char& c : name) {
    if (!net::IsSafeFileName(std::string_view(&c, 1)) && c != ' ' && c != '.') {
      c = '_';
    }
  }
  const std::string ending = "." + std::string(extension);
  const bool usable = !name.empty() && net::IsSafeFileName(name + ending);
  return (usable ? name : std::string(kNameless)) + ending;
}

std::string SuggestedFileName(std::string_view row, std::string_view model) {
  const phones::Format* format = phones::FindFormat(model);
  return FileNameOfRow(row, format == nullptr ? "txt" : format->extension);
}

}  // namespace tonadex::app
