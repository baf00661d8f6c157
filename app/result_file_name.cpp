#include "app/result_file_name.h"

#include "core/melody_file.h"
#include "net/file_name.h"

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

}  // namespace tonadex::app
