#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/melody_file.h"
#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "fuzz/require.h"

// Any bytes as external text: both conversions, case, lines and the strings made from a stored
// line.
namespace {

namespace core = tonadex::core;

void CheckConversions(const std::string& bytes) {
  const std::string text = core::FromOutside(bytes);
  const std::string utf8 = core::ToUtf8(text);
  Require(core::IsUtf8(utf8), "our UTF-8 is malformed");
  Require(core::FromUtf8(utf8) == text && core::FromOutside(utf8) == text, "not the way back");
  Require(core::IsUtf8(bytes) || text == bytes, "changed what is no UTF-8");
  if (core::IsUtf8(bytes)) {
    const auto characters = std::ranges::count_if(
        bytes, [](char c) { return (static_cast<unsigned char>(c) & 0xC0u) != 0x80; });
    Require(static_cast<std::ptrdiff_t>(core::FromUtf8(bytes).size()) == characters,
            "not one byte for each character");
  }
  Require(core::ToUpper(core::ToLower(core::ToUpper(text))) == core::ToUpper(text),
          "case does not settle");
}

void CheckRow(const std::string& bytes) {
  const std::string line = core::UndoSharpEscape(bytes.substr(0, bytes.find('\n')));
  core::SkipErrors([&] {
    const core::MelodyRow row = core::RepertoireRow(line, "stem.120");
    Require(core::RowStem(row.text).find("stem") != std::string_view::npos, "a row without stem");
  });
  core::SkipErrors([&] { core::RepertoireRow("name:", line); });
  core::SkipErrors([&] { core::ToNumber(line); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  CheckConversions(bytes);
  CheckRow(bytes);
  return 0;
}
