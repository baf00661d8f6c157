#pragma once

#include <QColor>
#include <functional>

#include "rtf/rtf_document.h"

class QTextDocument;

namespace tonadex::platform {

// How a rich text is drawn; by default exactly as in the file, for paper.
struct TextDrawing {
  double scale = 1;     // of type and lengths
  bool screen = false;  // the program's typefaces, and nothing justified because columns are narrow
  // Maps the file's colours; they stay unchanged when empty.
  std::function<QColor(const QColor&)> ink;
  std::function<QColor(const QColor&)> ground;
};

// Replaces the content of `target`. Lengths are in screen dots, also for paper, because a layout
// for another paint device scales some lengths and ignores the indents. Successive bordered or
// shaded paragraphs of one format become one frame. Headings keep their level in
// QTextBlockFormat::headingLevel. Undo is switched off.
void FillTextDocument(QTextDocument& target, const rtf::Document& source,
                      const TextDrawing& drawing = {});

// Dots per inch of that layout.
double DotsPerInch();

}  // namespace tonadex::platform
