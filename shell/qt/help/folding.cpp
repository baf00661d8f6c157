#include "shell/qt/help/folding.h"

namespace tonadex::shell {
namespace {

QChar Fold(QChar character) {
  if (character.isSpace() || character.unicode() == 0xFDD0 || character.unicode() == 0xFDD1) {
    return u' ';
  }
  const QString parts = character.decomposition();
  const bool accented = character.decompositionTag() == QChar::Canonical && !parts.isEmpty();
  return (accented ? parts.front() : character).toCaseFolded();
}

}  // namespace

QString Folded(const QString& text) {
  QString folded = text;
  for (QChar& character : folded) {
    character = Fold(character);
  }
  return folded;
}

std::vector<int> FindAll(const QString& text, const QString& wanted) {
  std::vector<int> found;
  if (wanted.isEmpty()) {
    return found;
  }
  for (qsizetype at = text.indexOf(wanted); at >= 0;
       at = text.indexOf(wanted, at + wanted.size())) {
    found.push_back(static_cast<int>(at));
  }
  return found;
}

}  // namespace tonadex::shell
