#pragma once

#include <QColor>
#include <functional>

#include "rtf/rtf_document.h"

class QTextDocument;

namespace tonadex::platform {

// How rich text is drawn; by default exactly as in the file, for paper.
struct TextDrawing {
  double scale = 1;     // of font sizes and lengths
  bool screen = false;  // the program's fonts, and no justified text because columns are narrow
  // Map the file's text and background colours; may be empty.
  std::function<QColor(const QColor&)> ink;
  std::function<QColor(const QColor&)> ground;
};

// Replaces the content of `target`. Lengths are in screen dots even for paper, because the layout
// for another paint device scales only some lengths and ignores indents. Successive paragraphs with
// equal borders or shading become one frame. Headings keep their level in
// QTextBlockFormat::headingLevel. Undo is disabled.
void FillTextDocument(QTextDocument& target, const rtf::Document& source,
                      const TextDrawing& drawing = {});

// Dots per inch of the lengths of FillTextDocument.
double DotsPerInch();

}  // namespace tonadex::platform
