#include "shell/qt/text.h"

#include "app/controls.h"
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
  return app::TextOfBox(text.toUtf8().toStdString());
}

}  // namespace tonadex::shell
