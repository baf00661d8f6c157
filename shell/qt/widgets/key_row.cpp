#include "shell/qt/widgets/key_row.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "app/composer_keys.h"
#include "app/words.h"
#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"

namespace tonadex::shell {

KeyRow::KeyRow(QWidget* parent)
    : QWidget(parent), hold_(new QPushButton(QStringLiteral("( )"), this)) {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(kFieldGap);
  grid->setVerticalSpacing(0);
  const Theme theme = CurrentTheme();
  for (const app::ComposerKey& key : app::ComposerKeys()) {
    const QString sign = ToQString(key.label);
    auto* button = new QPushButton(sign, this);
    button->setProperty("key", true);
    QFont font = theme.body;
    font.setWeight(QFont::DemiBold);
    button->setFont(font);
    button->setToolTip(ToQString(key.help));
    button->setAccessibleName(ToQString(key.help));
    connect(button, &QPushButton::pressed, this, [this] { down_.start(); });
    connect(button, &QPushButton::clicked, this, [this, sign] {
      const bool shift = QApplication::keyboardModifiers() & Qt::ShiftModifier;
      const bool longPress = down_.isValid() && down_.elapsed() >= kHoldMs;
      down_.invalidate();
      emit KeyPressed(sign, hold_->isChecked() || shift || longPress);
    });
    AddColumn(grid, button, ToQString(key.word));
    first_ = first_ == nullptr ? button : first_;
  }
  hold_->setCheckable(true);
  hold_->setProperty("key", true);
  hold_->setToolTip(ToQString(app::words::kHeldKey));
  hold_->setAccessibleName(ToQString(app::words::kHeldKey));
  AddColumn(grid, hold_, ToQString(app::words::kHeldKeyShort));
}

void KeyRow::AddColumn(QGridLayout* grid, QPushButton* button, const QString& words) {
  QFont font = CurrentTheme().small;
  font.setPointSizeF(font.pointSizeF() * 0.88);
  auto* label = new QLabel(words, this);
  label->setFont(font);
  label->setAlignment(Qt::AlignHCenter);
  label->setProperty("muted", true);
  const int column = grid->columnCount();
  button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  grid->addWidget(button, 0, column);
  grid->addWidget(label, 1, column);
  grid->setColumnStretch(column, 1);
}

QWidget* KeyRow::Last() const {
  return hold_;
}

}  // namespace tonadex::shell
