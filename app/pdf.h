#pragma once

#include <string>
#include <string_view>

#include "app/picture.h"

// Pages of shapes as a PDF file. All type is heavy and of the fonts that every reader has. Texts
// are Windows-1252.
namespace tonadex::app {

// In the unit of `points`.
double TextWidth(std::string_view text, double points, bool mono);

// The bytes of the file. Corners are not rounded.
std::string PdfFile(const Paper& paper);

}  // namespace tonadex::app
