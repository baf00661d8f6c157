#include "core/melody_file.h"

#include <algorithm>

#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::core {
namespace {

constexpr std::size_t kNumberSpan = 5;  // maximum digits of a file number

}  // namespace

std::string UndoSharpEscape(std::string_view text) {
  std::string plain(text);
  ReplaceAll(plain, kSharpEscape, "#");
  return plain;
}

std::string ScanName(std::string_view line) {
  std::string name;
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line[at] == ' ' && ++at == line.size()) {
      break;
    }
    if (line[at] == ':') {
      break;
    }
    name += line[at];
  }
  return name;
}

std::size_t NumberStop(std::string_view text) {
  return text.size() > kNumberSpan ? text.find('.', text.size() - kNumberSpan - 1) : text.npos;
}

std::string_view CutNumber(std::string_view text) {
  return Left(text, static_cast<std::ptrdiff_t>(NumberStop(text)));  // npos is -1
}

std::int32_t FileNumber(std::string_view formed) {
  const std::string_view number = Mid(formed, InStr(formed, ".") + 1);
  if (number.empty()) {  // "vals." has no number; elsewhere an empty text counts as 0
    throw RunTimeError(ErrorNumber::kTypeMismatch, std::string(u8"falta el número del fichero"_w));
  }
  return ToInt32(ToNumber(number));
}

std::string_view FormedStem(std::string_view formed, std::string_view name) {
  const std::size_t open = name.size() + std::string_view(" (").size();
  return Mid(CutNumber(formed), static_cast<std::ptrdiff_t>(open) + 1);
}

std::string RowText(std::string_view name, std::string_view stem) {
  std::string text(stem);
  if (stem != name) {
    text.insert(0, std::string(name) + " (").append(")");
  }
  return text;
}

MelodyRow RepertoireRow(std::string_view line, std::string_view fileName) {
  const std::string name = ScanName(line);
  const std::string formed = name + " (" + std::string(fileName);
  return {RowText(name, FormedStem(formed, name)), FileNumber(formed)};
}

std::string_view RowStem(std::string_view row) {
  const std::ptrdiff_t open = InStr(row, " (");
  if (open == 0 || !Contains(row, ")")) {
    return row;
  }
  const std::string_view inner = Mid(row, open + 2);
  return inner.substr(0, std::max<std::size_t>(inner.size(), 1) - 1);
}

std::string MelodyFileName(std::string_view row, std::int32_t number) {
  return std::string(RowStem(row)) + "." + std::to_string(number);
}

}  // namespace tonadex::core
