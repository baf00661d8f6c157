#pragma once

#include <QColor>
#include <functional>

#include "rtf/rtf_document.h"

class QTextDocument;

namespace tonadex::platform {

// How a rich text is drawn. As it stands: to the letter, for paper.
struct TextDrawing {
  double scale = 1;     // of type and lengths
  bool screen = false;  // the program's own typefaces, nothing justified: columns are narrow
  // What becomes of the file's colours; none leaves them.
  std::function<QColor(const QColor&)> ink;
  std::function<QColor(const QColor&)> ground;
};

// Fills `target` anew with the whole text. It is laid out in dots of the screen, also for paper: a
// layout that is given another paint device scales some lengths and forgets the indents. Bordered
// or shaded neighbours of one format become one frame. Headings keep their level in
// QTextBlockFormat::headingLevel. Undo is switched off.
void FillTextDocument(QTextDocument& target, const rtf::Document& source,
                      const TextDrawing& drawing = {});

// Dots to the inch of that layout.
double DotsPerInch();

}  // namespace tonadex::platform
