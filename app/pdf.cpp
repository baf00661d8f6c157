#include "app/pdf.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "core/windows1252.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

// Advance widths of Helvetica-Bold from the blank to "~", in thousandths of its size.
constexpr auto kWidths = std::to_array<std::uint16_t>(
    {278, 333, 474, 556, 556, 889, 722, 278, 333, 333, 389, 584, 278, 333, 278, 278,
     556, 556, 556, 556, 556, 556, 556, 556, 556, 556, 333, 333, 584, 584, 584, 611,
     975, 722, 722, 722, 722, 667, 611, 778, 722, 278, 556, 722, 611, 833, 722, 778,
     667, 778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 333, 278, 333, 584, 556,
     278, 556, 611, 556, 611, 556, 333, 611, 611, 278, 278, 556, 278, 889, 611, 611,
     611, 611, 389, 556, 333, 611, 556, 778, 556, 556, 500, 389, 280, 389, 584});
constexpr int kMonoWidth = 600;  // of every character of Courier-Bold

int WidthOf(char c) {
  constexpr std::string_view kAccented = u8"áéíóúüñ"_w, kPlain = "aeiouun";
  constexpr int kWidest = 1000;  // the widest of the other characters
  const std::size_t accented = kAccented.find(c);
  const char plain = accented == std::string_view::npos ? c : kPlain[accented];
  return plain >= ' ' && plain <= '~' ? kWidths[static_cast<std::size_t>(plain - ' ')] : kWidest;
}

// Two decimals with a point, in every locale.
std::string Number(double value) {
  const auto hundredths = std::lround(std::abs(value) * 100);
  const std::string fraction = std::to_string(100 + hundredths % 100).substr(1);
  return (value < 0 ? "-" : "") + std::to_string(hundredths / 100) + "." + fraction + " ";
}

std::string Quoted(std::string_view text) {
  std::string quoted = "(";
  for (const char c : text) {
    if (c == '(' || c == ')' || c == '\\') {
      quoted += '\\';
    }
    quoted += c;
  }
  return quoted + ")";
}

double GreyOf(Ink ink) {
  return ink == Ink::kText || ink == Ink::kAccent ? 0 : 0.5;
}

std::string TextCode(const Shape& shape, double paperHeight) {
  constexpr double kRise = 0.36;  // half the height of capitals, as a fraction of the font size
  const double width = TextWidth(shape.text, shape.size, shape.mono);
  const double size = width > shape.box.width ? shape.size * shape.box.width / width : shape.size;
  const double room = std::max(0.0, shape.box.width - width);
  const double x = shape.box.x + room * static_cast<int>(shape.align) / 2;
  const double middle = shape.box.y + shape.box.height / 2;
  return "BT " + std::string(shape.mono ? "/M " : "/T ") + Number(size) + "Tf " + Number(x) +
         Number(paperHeight - middle - kRise * size) + "Td " + Quoted(shape.text) + " Tj ET\n";
}

std::string PageCode(const Picture& page, double paperHeight) {
  std::string code;
  for (const Shape& shape : page) {
    const Box& box = shape.box;
    const std::string grey = Number(GreyOf(shape.ink));
    code.append(grey).append("g ").append(grey).append("G ");
    if (shape.kind == Shape::Kind::kText) {
      code += TextCode(shape, paperHeight);
    } else {
      code += Number(shape.size) + "w " + Number(box.x) + Number(paperHeight - box.bottom()) +
              Number(box.width) + Number(box.height) + "re " +
              (shape.kind == Shape::Kind::kFilled ? "f\n" : "S\n");
    }
  }
  return code;
}

// The file's numbered objects and their offsets, which the cross-reference table lists.
class ObjectList {
 public:
  void Add(std::string_view content) {
    starts_.push_back(file_.size());
    file_ += std::to_string(starts_.size()) + " 0 obj\n" + std::string(content) + "\nendobj\n";
  }
  std::string Close() && {
    const std::size_t table = file_.size();
    const std::string count = std::to_string(starts_.size() + 1);
    file_ += "xref\n0 " + count + "\n0000000000 65535 f \n";
    for (const std::size_t start : starts_) {
      const std::string digits = std::to_string(start);
      file_ += std::string(10 - digits.size(), '0') + digits + " 00000 n \n";
    }
    return file_ + "trailer\n<< /Size " + count + " /Root 1 0 R /Info 5 0 R >>\nstartxref\n" +
           std::to_string(table) + "\n%%EOF\n";
  }

 private:
  std::string file_ = "%PDF-1.4\n%\xE2\xE3\xCF\xD3\n";
  std::vector<std::size_t> starts_;
};

std::string FontObject(std::string_view name) {
  return "<< /Type /Font /Subtype /Type1 /Encoding /WinAnsiEncoding /BaseFont /" +
         std::string(name) + " >>";
}

}  // namespace

double TextWidth(std::string_view text, double points, bool mono) {
  int width = 0;
  for (const char c : text) {
    width += mono ? kMonoWidth : WidthOf(c);
  }
  return width * points / 1000;
}

std::string PdfFile(const Paper& paper) {
  constexpr std::size_t kFirstPage = 6;  // after the five objects that every file has
  const auto reference = [](std::size_t page) {
    return std::to_string(kFirstPage + 2 * page) + " 0 R ";
  };
  std::string kids;
  for (std::size_t page = 0; page < paper.pages.size(); ++page) {
    kids += reference(page);
  }
  ObjectList objects;
  objects.Add("<< /Type /Catalog /Pages 2 0 R >>");
  objects.Add("<< /Type /Pages /Count " + std::to_string(paper.pages.size()) + " /Kids [" + kids +
              "] /MediaBox [0 0 " + Number(paper.width) + Number(paper.height) +
              "] /Resources << /Font << /T 3 0 R /M 4 0 R >> >> >>");
  objects.Add(FontObject("Helvetica-Bold"));
  objects.Add(FontObject("Courier-Bold"));
  objects.Add("<< /Title " + Quoted(paper.title) + " /Creator (Tonadex) >>");
  for (std::size_t page = 0; page < paper.pages.size(); ++page) {
    objects.Add("<< /Type /Page /Parent 2 0 R /Contents " +
                std::to_string(kFirstPage + 2 * page + 1) + " 0 R >>");
    const std::string code = PageCode(paper.pages[page], paper.height);
    objects.Add("<< /Length " + std::to_string(code.size()) + " >>\nstream\n" + code + "endstream");
  }
  return std::move(objects).Close();
}

}  // namespace tonadex::app
