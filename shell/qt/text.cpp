#include "shell/qt/text.h"

#include <QList>

#include "core/windows1252.h"

namespace tonadex::shell {

QString ToQString(std::string_view text) {
  QString unicode;
  unicode.reserve(static_cast<qsizetype>(text.size()));
  for (const char byte : text) {
    unicode += QChar(static_cast<char16_t>(core::ToUnicode(static_cast<unsigned char>(byte))));
  }
  return unicode;
}

QString ToQStringLines(std::string_view text) {
  return ToQString(text).replace(QLatin1String("\r\n"), QLatin1String("\n")).replace('\r', '\n');
}

std::string FromQString(const QString& text) {
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(text.size()));
  for (const uint character : text.toUcs4()) {
    bytes += core::FromUnicode(character);
  }
  return bytes;
}

}  // namespace tonadex::shell
