#include "app/result_file_name.h"

#include "core/melody_file.h"
#include "net/file_name.h"
#include "phones/formats.h"

namespace tonadex::app {

std::string FileStem(std::string_view row) {
  std::string name(core::RowStem(row));
  for (char& c : name) {
    if (!net::IsSafeFileName(std::string_view(&c, 1)) && c != ' ' && c != '.') {
      c = '_';
    }
  }
  return !name.empty() && net::IsSafeFileName(name + ".x") ? name : "melodia";
}

std::string SuggestedFileName(std::string_view row, std::string_view model) {
  const phones::Format* format = phones::FindFormat(model);
  return FileStem(row) + "." + std::string(format == nullptr ? "txt" : format->extension);
}

}  // namespace tonadex::app
