#pragma once

#include <string>
#include <string_view>

#include "app/picture.h"

// Writes pages of shapes as a PDF file. All text is bold, in the standard fonts that PDF readers
// supply. Texts are Windows-1252.
namespace tonadex::app {

// In points.
double TextWidth(std::string_view text, double points, bool mono);

// The bytes of the file. Rounded corners are written as square ones.
std::string PdfFile(const Paper& paper);

}  // namespace tonadex::app
