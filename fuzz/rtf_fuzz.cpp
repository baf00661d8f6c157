#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/windows1252.h"
#include "fuzz/require.h"
#include "rtf/rtf_reader.h"

// Reads any bytes as RTF: the document keeps its documented bounds, and a text written as RTF in
// two ways reads back the same.
namespace {

using namespace tonadex::rtf;

bool Within(int value, int least, int most) {
  return value >= least && value <= most;
}

void CheckText(const std::u16string& text) {
  Require(!text.empty(), "an empty run");
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    Require(unit >= 0x20 || unit == u'\t', "a control character");
    Require(unit != 0x2029 && unit < 0xFFFE && !(unit >= 0xFDD0 && unit <= 0xFDEF),
            "a character that marks structure");
    if (unit >= 0xD800 && unit <= 0xDBFF) {
      Require(++i < text.size() && text[i] >= 0xDC00 && text[i] <= 0xDFFF, "half a pair");
    } else {
      Require(unit < 0xDC00 || unit > 0xDFFF, "the other half of a pair");
    }
  }
}

void CheckFormat(const ParagraphFormat& format) {
  for (const int indent : {format.left, format.right, format.first, format.lineHeight}) {
    Require(Within(indent, -kMaxTwips, kMaxTwips), "an indent out of bounds");
  }
  Require(Within(format.before, 0, kMaxTwips) && Within(format.after, 0, kMaxTwips),
          "a space out of bounds");
  Require(Within(format.heading, 0, 6) && format.style >= 0, "a style out of bounds");
  for (const Border& border : format.borders) {
    Require(Within(border.width, 0, 255) && Within(border.space, 0, kMaxTwips),
            "a border out of bounds");
  }
  Require(format.tabs.size() <= kMaxTabs &&
              std::ranges::is_sorted(format.tabs, {}, &Tab::position) &&
              std::ranges::all_of(format.tabs,
                                  [](const Tab& t) { return Within(t.position, 0, kMaxTwips); }),
          "tabs that do not rise within bounds");
}

void CheckDocument(const Document& document, std::size_t sourceSize) {
  for (const Paragraph& paragraph : document.paragraphs) {
    CheckFormat(paragraph.format);
    for (const Run& run : paragraph.runs) {
      CheckText(run.text);
      Require(Within(run.format.halfPoints, 2, kMaxHalfPoints), "a type size out of bounds");
    }
  }
  for (const int extent : {document.page.width, document.page.height}) {
    Require(Within(extent, 1, kMaxTwips), "a paper out of bounds");
  }
  Require(PlainText(document).size() <= sourceSize + document.paragraphs.size(),
          "more text than the source holds");
}

// Writes the same characters in the code page and as Unicode escapes with a fallback.
void CheckTwoWays(std::string_view text) {
  constexpr std::string_view kHex = "0123456789abcdef";
  std::string coded = "{\\rtf1 ";
  std::string unicode = "{\\rtf1\\uc2 ";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    coded += {'\\', '\'', kHex[byte >> 4], kHex[byte & 15]};
    unicode += "\\u" + std::to_string(tonadex::core::ToUnicode(byte)) + "?\\'3f";
  }
  Require(PlainText(ReadRtf(coded + "}")) == PlainText(ReadRtf(unicode + "}")),
          "two ways to write one text");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string source(data, data + size);
  CheckDocument(ReadRtf(source), size);
  CheckDocument(ReadRtf("{\\rtf1 " + source + "}"), size + 8);
  CheckTwoWays(source);
  return 0;
}
