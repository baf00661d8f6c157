#include "shell/qt/widgets/row_list.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <algorithm>

#include "shell/qt/text.h"
#include "shell/qt/theme/icons.h"
#include "shell/qt/theme/theme.h"

namespace tonadex::shell {
namespace {

// Draws "name (file)" with the file quieter, and a sentence for the user as one.
class RowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const QString text = index.data().toString();
    const bool hint = index.data(RowsModel::kHintRole).toBool();
    QStyleOptionViewItem ground = option;
    initStyleOption(&ground, index);
    ground.text.clear();
    ground.state &= ~QStyle::State_HasFocus;  // the list's frame shows the focus
    QApplication::style()->drawControl(QStyle::CE_ItemViewItem, &ground, painter, option.widget);

    const Theme theme = CurrentTheme();
    const bool enabled = option.state & QStyle::State_Enabled;
    QRect place = option.rect.adjusted(kGrid + 4, 0, -kGrid, 0);
    if (const auto* list = qobject_cast<const RowList*>(option.widget); list != nullptr && !hint) {
      for (std::size_t i = 0; i < list->Buttons().size(); ++i) {
        const QRect square = list->ButtonPlace(option.rect, i);
        const int margin = (square.height() - IconSize().height()) / 2;
        ThemedIcon(QLatin1String(list->Buttons()[i]->icon), IconInk::kAccent)
            .paint(painter, square.adjusted(margin, margin, -margin, -margin));
        place.setRight(std::min(place.right(), square.left()));
      }
    }
    const qsizetype split = hint ? -1 : text.indexOf(QStringLiteral(" ("));
    const QString name = split < 0 ? text : text.left(split);
    QFont font = option.font;
    font.setItalic(hint);
    font.setWeight(option.state & QStyle::State_Selected ? QFont::DemiBold : QFont::Normal);
    const QFontMetrics metrics(font);
    painter->setFont(font);
    painter->setPen(hint || !enabled ? theme.muted : theme.text);
    painter->drawText(place, Qt::AlignVCenter,
                      metrics.elidedText(name, Qt::ElideRight, place.width()));
    const int used = metrics.horizontalAdvance(name) + kGrid;
    font.setWeight(QFont::Normal);
    const QString file = split < 0 ? QString() : text.mid(split + 1);
    if (used + QFontMetrics(font).horizontalAdvance(file) <=
        place.width()) {  // whole or not at all
      painter->setFont(font);
      painter->setPen(theme.muted);
      painter->drawText(place.adjusted(used, 0, 0, 0), Qt::AlignVCenter, file);
    }
  }
};

}  // namespace

bool RowsModel::SetRows(const app::Control& control) {
  if (list_.HasLinesOf(control)) {
    return false;
  }
  beginResetModel();
  list_ = control;
  endResetModel();
  return true;
}

int RowsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(list_.Lines());
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
  const auto at = static_cast<std::size_t>(index.row());
  switch (role) {
    case Qt::DisplayRole:
      return ToQString(list_.LineAt(at));
    case Qt::ToolTipRole:
      return ToQString(list_.HelpAt(at));
    case kHintRole:
      return list_.IsHint(at);
    default:
      return {};
  }
}

RowList::RowList(QWidget* parent) : QListView(parent), model_(new RowsModel(this)) {
  setModel(model_);
  setItemDelegate(new RowDelegate(this));
  setUniformItemSizes(true);
  setEditTriggers(NoEditTriggers);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(ScrollPerPixel);
  setMouseTracking(true);
}

void RowList::SetControl(const app::Control& control) {
  setting_ = true;
  if (const QString words = ToQString(control.invitation); words != invitation_) {
    invitation_ = words;
    viewport()->update();
  }
  const bool fresh = model_->SetRows(control);
  if (fresh || SelectedRow() != control.listIndex) {
    setCurrentIndex(model_->index(control.SelectedLine()));  // -1 clears the selection
  }
  setting_ = false;
}

void RowList::SetButtons(std::span<const app::MenuItem> menu) {
  for (const app::MenuItem& item : menu) {
    if (*item.icon != '\0') {
      buttons_.push_back(&item);
    }
  }
}

QRect RowList::ButtonPlace(const QRect& row, std::size_t button) const {
  const int side = row.height();
  const int behind = static_cast<int>(buttons_.size() - button);
  return {row.right() - behind * (side + kGrid), row.top(), side, side};
}

const app::MenuItem* RowList::ButtonAt(const QPoint& place) const {
  const QModelIndex row = indexAt(place);
  const bool melody = row.isValid() && !row.data(RowsModel::kHintRole).toBool();
  for (std::size_t i = 0; melody && i < buttons_.size(); ++i) {
    if (ButtonPlace(visualRect(row), i).contains(place)) {
      return buttons_[i];
    }
  }
  return nullptr;
}

QSize RowList::sizeHint() const {
  return {QListView::minimumSizeHint().width(),
          std::max(minimumHeight(), 2 * (fontMetrics().height() + kGrid))};
}

// The selected row stays in view when the list is laid out after its row was selected.
void RowList::resizeEvent(QResizeEvent* event) {
  QListView::resizeEvent(event);
  scrollTo(currentIndex());
}

int RowList::SelectedRow() const {
  const int row = currentIndex().isValid() ? currentIndex().row() : -1;
  return row < static_cast<int>(Rows().size()) ? row : -1;
}

void RowList::paintEvent(QPaintEvent* event) {
  QListView::paintEvent(event);
  if (model_->Rows().empty() && !invitation_.isEmpty()) {
    QPainter painter(viewport());
    painter.setPen(CurrentTheme().muted);
    const QRect place = viewport()->rect().adjusted(kPageMargin, 0, -kPageMargin, 0);
    painter.drawText(place, Qt::AlignCenter | Qt::TextWordWrap, invitation_);
  }
}

void RowList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QListView::currentChanged(current, previous);
  if (!setting_ && current.isValid()) {
    emit RowChosen();
  }
}

void RowList::mousePressEvent(QMouseEvent* event) {
  const QPersistentModelIndex before = currentIndex();
  QListView::mousePressEvent(event);
  if (event->button() == Qt::LeftButton && before.isValid() && indexAt(event->pos()) == before) {
    emit RowChosen();
  }
}

// On focus QListView selects the first row when none is selected; only the user selects here.
void RowList::focusInEvent(QFocusEvent* event) {
  const bool none = !currentIndex().isValid();
  setting_ = true;
  QListView::focusInEvent(event);
  if (none) {
    setCurrentIndex({});
  }
  setting_ = false;
}

void RowList::contextMenuEvent(QContextMenuEvent* event) {
  const bool mouse = event->reason() == QContextMenuEvent::Mouse;
  emit MenuAsked(mouse ? event->globalPos()
                       : viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()));
}

void RowList::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (SelectedRow() >= 0) {
      emit RowActivated();
    }
    return;
  }
  if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
    QContextMenuEvent asked(QContextMenuEvent::Keyboard, {},
                            {});  // this Qt sends it for Menu alone
    return contextMenuEvent(&asked);
  }
  QListView::keyPressEvent(event);
}

void RowList::mouseReleaseEvent(QMouseEvent* event) {
  QListView::mouseReleaseEvent(event);
  const app::MenuItem* button = ButtonAt(event->pos());
  if (event->button() == Qt::LeftButton && button != nullptr &&
      indexAt(event->pos()) == currentIndex()) {
    emit ButtonClicked(button);
  }
}

bool RowList::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    if (const app::MenuItem* button = ButtonAt(help->pos())) {
      QToolTip::showText(help->globalPos(), ToQString(button->caption).remove('&'), viewport());
      return true;
    }
  }
  return QListView::viewportEvent(event);
}

void RowList::mouseDoubleClickEvent(QMouseEvent* event) {
  if (ButtonAt(event->pos()) != nullptr) {
    return;
  }
  QListView::mouseDoubleClickEvent(event);
  if (event->button() == Qt::LeftButton && indexAt(event->pos()).isValid()) {
    emit RowActivated();
  }
}

}  // namespace tonadex::shell
