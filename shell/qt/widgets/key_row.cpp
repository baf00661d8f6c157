#include "shell/qt/widgets/key_row.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"

namespace tonadex::shell {

KeyRow::KeyRow(QWidget* parent) : QWidget(parent), hold_(new QPushButton(this)) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum);
  for (const app::ComposerKey& key : app::ComposerKeys()) {
    auto* button = new QPushButton(this);
    QFont font = CurrentTheme().body;
    font.setWeight(QFont::DemiBold);
    button->setFont(font);
    connect(button, &QPushButton::pressed, this, [this] { down_.start(); });
    connect(button, &QPushButton::clicked, this, [this, sign = ToQString(key.label)] {
      const bool shift = QApplication::keyboardModifiers() & Qt::ShiftModifier;
      const bool longPress = down_.isValid() && down_.elapsed() >= kHoldMs;
      down_.invalidate();
      emit KeyPressed(sign, hold_->isChecked() || shift || longPress);
    });
    Add(button, key);
  }
  hold_->setCheckable(true);
  Add(hold_, app::kHoldKey);
}

void KeyRow::Add(QPushButton* button, const app::ComposerKey& key) {
  button->setText(ToQString(key.label));
  button->setToolTip(ToQString(key.help));
  button->setAccessibleName(ToQString(key.help));
  button->setProperty("key", true);
  auto* words = new QLabel(ToQString(key.word), this);
  words->setFont(CurrentTheme().small);
  words->setAlignment(Qt::AlignHCenter);
  words->setProperty("muted", true);
  keys_.push_back({button, words});
}

QSize KeyRow::Key::Least() const {
  const QSize upper = button->minimumSizeHint(), lower = words->minimumSizeHint();
  return {std::max(upper.width(), lower.width()), upper.height() + lower.height()};
}

// One row, in which all keys grow alike, or rows of equal columns.
std::vector<QRect> KeyRow::Places(int width) const {
  const int count = static_cast<int>(keys_.size()), height = keys_[0].Least().height();
  int spare = width + kFieldGap, widest = 0;
  for (const Key& key : keys_) {
    spare -= key.Least().width() + kFieldGap;
    widest = std::max(widest, key.Least().width());
  }
  const int most = spare >= 0 ? count : std::max(1, (width + kFieldGap) / (widest + kFieldGap));
  const int rows = (count + most - 1) / most, columns = (count + rows - 1) / rows;
  std::vector<QRect> places;
  for (int i = 0, left = 0; i < count; ++i) {
    const int column = i % columns;
    const int cell = rows == 1 ? keys_[static_cast<std::size_t>(i)].Least().width() +
                                     spare * (i + 1) / count - spare * i / count
                               : (width + kFieldGap) * (column + 1) / columns - kFieldGap - left;
    places.emplace_back(left, i / columns * height, cell, height);
    left = column + 1 == columns ? 0 : left + cell + kFieldGap;
  }
  return places;
}

int KeyRow::heightForWidth(int width) const {
  return Places(width).back().bottom() + 1;
}

QSize KeyRow::sizeHint() const {
  return {1, keys_[0].Least().height()};
}

void KeyRow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const std::vector<QRect> places = Places(width());
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    QRect place = places[i];
    const int upper = keys_[i].button->minimumSizeHint().height();
    keys_[i].words->setGeometry(place.adjusted(0, upper, 0, 0));
    place.setHeight(upper);
    keys_[i].button->setGeometry(place);
  }
}

}  // namespace tonadex::shell
