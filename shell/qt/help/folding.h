#pragma once

#include <QString>
#include <vector>

namespace tonadex::shell {

// The text as it is compared in a search: small letters without accents, every kind of blank and
// line end a blank. One character stays one character, so positions hold.
QString Folded(const QString& text);

// Where `wanted` begins in `text`, both folded, without overlaps; none for an empty one.
std::vector<int> FindAll(const QString& text, const QString& wanted);

}  // namespace tonadex::shell
