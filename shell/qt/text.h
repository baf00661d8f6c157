#pragma once

#include <QString>
#include <string>
#include <string_view>

// The edge between the program's Windows-1252 texts and the toolkit's Unicode ones.
namespace tonadex::shell {

QString ToQString(std::string_view text);
// The same with the toolkit's line ends (LF) for the program's (CR LF, CR).
QString ToQStringLines(std::string_view text);

// A character that Windows-1252 lacks becomes the one meant (app::TextOfBox) or "?".
std::string FromQString(const QString& text);

}  // namespace tonadex::shell
