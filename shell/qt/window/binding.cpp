#include "shell/qt/window/binding.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QTextEdit>
#include <QTimer>
#include <QToolButton>
#include <algorithm>

#include "shell/qt/text.h"
#include "shell/qt/theme/icons.h"
#include "shell/qt/theme/theme.h"
#include "shell/qt/widgets/key_row.h"
#include "shell/qt/widgets/melody_view.h"
#include "shell/qt/widgets/phone_display.h"
#include "shell/qt/widgets/row_list.h"
#include "shell/qt/widgets/shape_view.h"
#include "shell/qt/widgets/waiting_line.h"
#include "shell/qt/widgets/web_pane.h"

namespace tonadex::shell {
namespace {

using app::Control;
using app::ControlInfo;
using app::Event;
using app::Form1;
using app::Look;

// ---- How a control looks ------------------------------------------------------------------------

// QLabel::sizeHint ignores that an underlined mnemonic disables kerning, and is a few pixels too
// narrow.
class FieldLabel : public QLabel {
 public:
  QSize sizeHint() const override { return Wider(QLabel::sizeHint()); }
  QSize minimumSizeHint() const override { return Wider(QLabel::minimumSizeHint()); }

 private:
  QSize Wider(QSize size) const { return size + QSize(buddy() != nullptr ? kGrid / 2 : 0, 0); }
};

QWidget* MakeLabel(const ControlInfo& info) {
  const Theme theme = CurrentTheme();
  auto* label = new FieldLabel;
  label->setTextFormat(Qt::PlainText);
  label->setAlignment((info.right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  label->setFont(info.font == app::Font::kTitle     ? theme.title
                 : info.font == app::Font::kHeading ? theme.heading
                 : info.font == app::Font::kSmall   ? theme.small
                                                    : theme.body);
  return label;
}

void SetPrimary(QAbstractButton& button, const ControlInfo& info, bool primary) {
  button.setProperty("primary", primary);
  button.setIcon(
      ThemedIcon(QLatin1String(info.icon), primary ? IconInk::kOnAccent : IconInk::kText));
  button.style()->unpolish(&button);
  button.style()->polish(&button);
}

// Words that have no room are cut off with an ellipsis.
QString Shortened(const QAbstractButton& button) {
  const int missing = std::max(0, button.sizeHint().width() - button.width());
  const QFontMetrics type = button.fontMetrics();
  return missing == 0 ? button.text()
                      : type.elidedText(button.text(), Qt::ElideRight,
                                        type.horizontalAdvance(button.text()) - missing);
}

class CommandButton : public QPushButton {
 public:
  // As with FieldLabel.
  QSize sizeHint() const override {
    return QPushButton::sizeHint() + QSize(qRound(kGrid * CurrentTheme().scale / 2), 0);
  }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text = Shortened(*this);
    painter.drawControl(QStyle::CE_PushButton, option);
  }
};

class LinkButton : public QToolButton {
 public:
  LinkButton() { setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.text = Shortened(*this);
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
  }
};

QWidget* MakeButton(const ControlInfo& info) {
  auto* button = new CommandButton;
  SetPrimary(*button, info, info.look == Look::kPrimary);
  button->setCheckable(info.look == Look::kChoice);
  button->setProperty("mark", info.look == Look::kMark);
  button->setIconSize(IconSize());
  if (!info.shortcut.empty()) {
    button->setFocusPolicy(Qt::TabFocus);  // a click leaves the keys where they are
  }
  return button;
}

QWidget* MakeNavigationButton(const ControlInfo& info) {
  const bool link = info.look == Look::kLink;
  QToolButton* button = link ? new LinkButton : new QToolButton;
  button->setIcon(ThemedIcon(QLatin1String(info.icon)));
  button->setIconSize(link ? IconSize() : IconSize() * 4 / 3);
  button->setToolButtonStyle(link ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonTextUnderIcon);
  button->setProperty("nav", true);
  button->setFocusPolicy(Qt::StrongFocus);
  button->setCheckable(info.leadsTo != app::kNoPage);
  if (link) {
    button->setFont(CurrentTheme().small);
  }
  return button;
}

class CardButton : public QPushButton {
 public:
  void SetLine(const QString& line) {
    if (line != accessibleDescription()) {
      setAccessibleDescription(line);
      update();
    }
  }
  QSize sizeHint() const override {
    const Theme theme = CurrentTheme();
    return {160,
            QFontMetrics(theme.body).height() + QFontMetrics(theme.small).height() + 2 * kGrid};
  }
  QSize minimumSizeHint() const override {
    return {Left() + QFontMetrics(Heavy()).horizontalAdvance(text()) + kGrid, sizeHint().height()};
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QStylePainter painter(this);
    QStyleOptionButton ground;
    initStyleOption(&ground);
    ground.text.clear();
    ground.icon = {};
    painter.drawControl(QStyle::CE_PushButton, ground);
    const Theme theme = CurrentTheme();
    const QSize picture = IconSize() * 4 / 3;
    icon().paint(&painter, QRect(QPoint(kPageMargin, (height() - picture.height()) / 2), picture));
    QRect line = rect().adjusted(Left(), kGrid, -kGrid, -kGrid);
    const auto write = [&](const QFont& font, const QColor& colour, const QString& words,
                           int alignment) {
      painter.setFont(font);
      painter.setPen(colour);
      const QFontMetrics type(font);
      painter.drawText(line, alignment, type.elidedText(words, Qt::ElideRight, line.width()));
    };
    write(Heavy(), theme.text, text(), Qt::AlignTop);
    write(theme.small, theme.muted, accessibleDescription(), Qt::AlignBottom);
  }

 private:
  static QFont Heavy() {
    QFont heavy = CurrentTheme().body;
    heavy.setWeight(QFont::DemiBold);
    return heavy;
  }
  // Of the words.
  static int Left() { return 2 * kPageMargin + IconSize().width() * 4 / 3; }
};

QWidget* MakeCardButton(const ControlInfo& info) {
  auto* button = new CardButton;
  button->setIcon(ThemedIcon(QLatin1String(info.icon), IconInk::kAccent));
  return button;
}

// A screen reader calls the buttons of the row tabs: the one of the page shown is selected.
class TabAccess : public QAccessibleWidget {
 public:
  explicit TabAccess(QToolButton* button) : QAccessibleWidget(button, QAccessible::PageTab) {}

  static QAccessibleInterface* Make(const QString&, QObject* object) {
    auto* button = qobject_cast<QToolButton*>(object);
    const bool tab = button != nullptr && button->isCheckable() && button->property("nav").toBool();
    return tab ? new TabAccess(button) : nullptr;
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.selectable = true;
    state.selected = Button().isChecked();
    return state;
  }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? Button().text().remove('&') : QAccessibleWidget::text(kind);
  }
  QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
  void doAction(const QString& action) override {
    action == pressAction() ? Button().click() : QAccessibleWidget::doAction(action);
  }

 private:
  QToolButton& Button() const { return *qobject_cast<QToolButton*>(widget()); }
};

// A picture in the colours of the current theme.
class PictureLabel : public QLabel {
 public:
  explicit PictureLabel(const char* name) : picture_(ThemedIcon(QLatin1String(name))) { Draw(); }

 protected:
  void changeEvent(QEvent* event) override {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
      Draw();
    }
  }

 private:
  void Draw() { setPixmap(picture_.pixmap(32, 32)); }
  QIcon picture_;
};

// Takes the height that is left and asks for none.
class TextArea : public QPlainTextEdit {
 public:
  QSize sizeHint() const override { return {QPlainTextEdit::sizeHint().width(), Least()}; }
  QSize minimumSizeHint() const override {
    return {QPlainTextEdit::minimumSizeHint().width(), Least()};
  }

 private:
  // Two lines at any size of the type.
  int Least() const {
    return std::max(minimumHeight(), fontMetrics().lineSpacing() * 2 + 2 * kGrid);
  }
};

QWidget* With(QWidget* widget, std::initializer_list<std::pair<const char*, QVariant>> values) {
  for (const auto& [name, value] : values) {
    widget->setProperty(name, value);
  }
  return widget;
}

QWidget* MakeComboBox() {
  auto* box = new QComboBox;
  box->setEditable(true);
  box->setInsertPolicy(QComboBox::NoInsert);
  box->setCompleter(nullptr);
  return box;
}

QWidget* MakeWidget(const ControlInfo& info) {
  switch (info.look) {
    case Look::kLabel:
      return MakeLabel(info);
    case Look::kNavigation:
    case Look::kLink:
      return MakeNavigationButton(info);
    case Look::kCard:
      return MakeCardButton(info);
    case Look::kButton:
    case Look::kPrimary:
    case Look::kChoice:
    case Look::kMark:
      return MakeButton(info);
    case Look::kLine:
      return new QLineEdit;
    case Look::kReading:
      return With(new QLineEdit, {{"readOnly", true}, {"alignment", int{Qt::AlignRight}}});
    case Look::kArea:
      return With(new TextArea, {{"tabChangesFocus", true}, {"font", CurrentTheme().mono}});
    case Look::kNotices:
      return With(new TextArea, {{"tabChangesFocus", true},
                                 {"readOnly", true},
                                 {"textInteractionFlags",
                                  int{Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard}}});
    case Look::kDisplay:
      return With(new PhoneDisplay, {{"tabChangesFocus", true}});
    case Look::kList:
      return new RowList;
    case Look::kComboBox:
      return MakeComboBox();
    case Look::kPage:
      return new WebPane(WebPane::Kind::kPage);
    case Look::kBanner:
      return new WebPane(WebPane::Kind::kBanner);
    case Look::kPicture:
      return new PictureLabel(info.icon);
    case Look::kDrawing:
      return new MelodyView;
    case Look::kShapes:
      return new ShapeView;
    case Look::kSlider:
      return With(new QSlider(Qt::Horizontal),
                  {{"minimum", kSmallestType}, {"maximum", kLargestType}, {"pageStep", 4}});
    case Look::kKeys:
      return new KeyRow;
    case Look::kBusyLine:
      return new WaitingLine(ToQString(info.caption));
    case Look::kTimer:
    case Look::kStorage:
      break;
  }
  return nullptr;
}

// ---- Drawing and reading back, by class of widget -----------------------------------------------

// Setting the same text again would move the cursor.
void DrawLine(QLineEdit& line, const Control& control) {
  line.setPlaceholderText(ToQString(control.invitation));
  if (const QString text = ToQString(control.text); line.text() != text) {
    line.setText(text);
  }
}

// With places to break words that a line may not hold, such as names without blanks.
QString Breakable(QString words) {
  constexpr qsizetype kLongest = 12;
  constexpr QChar kBreak(0x200B);
  for (qsizetype at = 0, begin = 0; at < words.size(); ++at) {
    if (words[at].isSpace()) {
      begin = at + 1;
    } else if (at - begin == kLongest) {
      words.insert(at, kBreak);
      begin = at + 1;
    }
  }
  return words;
}

void DrawTone(QWidget& widget, const Control& control) {
  constexpr const char* kTones[] = {"", "muted", "good", "bad"};
  const QLatin1String tone(kTones[static_cast<std::size_t>(control.tone)]);
  if (widget.property("tone").toString() != tone) {
    widget.setProperty("tone", tone);
    widget.style()->unpolish(&widget);
    widget.style()->polish(&widget);
  }
}

void DrawLabel(QLabel& label, const Control& control) {
  DrawTone(label, control);
  label.setText(Breakable(ToQString(control.caption)));
}

// As one step that the user can undo.
void DrawArea(QPlainTextEdit& area, const Control& control) {
  const QString text = ToQStringLines(control.text);
  if (area.toPlainText() == text) {
    return;
  }
  QTextCursor cursor(area.document());
  cursor.select(QTextCursor::Document);
  cursor.insertText(text);
  cursor.setPosition(
      static_cast<int>(std::min(control.cursor, static_cast<std::size_t>(text.size()))));
  area.setTextCursor(cursor);
}

// Drawn over the text, which itself stays without formats.
void DrawFaults(QPlainTextEdit& area, const Control& control) {
  if (control.faults.empty() && area.extraSelections().isEmpty()) {
    return;
  }
  QTextCharFormat wave;
  wave.setUnderlineStyle(QTextCharFormat::WaveUnderline);
  wave.setUnderlineColor(CurrentTheme().bad);
  // The widget holds one character where the model's text holds CR LF.
  std::size_t read = 0, lineEnds = 0;
  const auto position = [&](std::size_t index) {
    if (index < read) {
      read = lineEnds = 0;
    }
    for (; read < index; ++read) {
      lineEnds += control.text.compare(read, 2, core::kCrLf) == 0 ? 1U : 0U;
    }
    return static_cast<int>(index - lineEnds);
  };
  QList<QTextEdit::ExtraSelection> waves;
  for (const core::TextRange& fault : control.faults) {
    QTextCursor range(area.document());
    range.setPosition(position(fault.start));
    range.setPosition(position(fault.start + fault.length), QTextCursor::KeepAnchor);
    if (range.hasSelection()) {  // a line end alone has no width
      waves.append({range, wave});
    }
  }
  area.setExtraSelections(waves);
}

void DrawDisplay(PhoneDisplay& display, const Control& control, const Form1& form) {
  display.SetInvitation(ToQString(control.invitation));
  if (control.value != 0 && control.value != display.PixelSize()) {
    display.SetPixelSize(control.value);
  }
  if (control.text != display.Text()) {
    display.SetResult(control.text, form.ResultGroupsShown(), form.ResultIsCounted());
  }
  display.Follow(control.marked);
}

void DrawButton(QAbstractButton& button, const Control& control, const ControlInfo& info) {
  button.setText(ToQString(control.caption));
  DrawTone(button, control);
  if (auto* card = dynamic_cast<CardButton*>(&button)) {
    card->SetLine(ToQString(control.text));
  }
  if (info.look == Look::kPrimary && button.property("primary").toBool() != control.checked) {
    SetPrimary(button, info, control.checked);
  }
  if (button.isCheckable()) {
    button.setChecked(control.checked);
  }
}

void DrawComboBox(QComboBox& box, const Control& control) {
  const auto& rows = control.rows;
  const bool same = box.count() == static_cast<int>(rows.size()) &&
                    std::all_of(rows.begin(), rows.end(), [&box, i = 0](const auto& row) mutable {
                      return box.itemText(i++) == ToQString(row.text);
                    });
  if (!same) {
    box.clear();
    for (const app::ListRow& row : rows) {
      box.addItem(ToQString(row.text));
    }
  }
  box.setCurrentIndex(control.listIndex);
  if (const QString text = ToQString(control.text); box.currentText() != text) {
    box.setEditText(text);
  }
}

void DrawTimer(QTimer& timer, const Control& control) {
  const int interval = static_cast<int>(control.interval);
  if (timer.interval() != interval) {
    timer.setInterval(interval);
  }
  if (control.enabled != timer.isActive()) {
    control.enabled ? timer.start() : timer.stop();
  }
}

// What is read and not pressed looks the same disabled, unless it is paled.
void Dim(QWidget& widget) {
  constexpr double kPale = 0.4;
  const auto* area = qobject_cast<QPlainTextEdit*>(&widget);
  if (area != nullptr && area->isReadOnly()) {
    auto* pale = widget.isEnabled() ? nullptr : new QGraphicsOpacityEffect;
    if (pale != nullptr) {
      pale->setOpacity(kPale);
    }
    widget.setGraphicsEffect(pale);
  }
}

void DrawObject(const BoundControl& bound, const Control& control, const Form1& form) {
  if (auto* timer = qobject_cast<QTimer*>(bound.object)) {
    DrawTimer(*timer, control);
    return;
  }
  QWidget& widget = *bound.widget;
  if (widget.isEnabled() != control.enabled) {
    widget.setEnabled(control.enabled);
    Dim(widget);
  }
  const bool why = !control.enabled && !control.whyDisabled.empty();
  widget.setToolTip(ToQString(why ? control.whyDisabled : bound.info->help));
  if (bound.info->look == Look::kLabel) {
    DrawLabel(*qobject_cast<QLabel*>(&widget), control);
  } else if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
    DrawButton(*button, control, *bound.info);
  } else if (auto* line = qobject_cast<QLineEdit*>(&widget)) {
    DrawLine(*line, control);
  } else if (auto* display = qobject_cast<PhoneDisplay*>(&widget)) {
    DrawDisplay(*display, control, form);
  } else if (auto* area = qobject_cast<QPlainTextEdit*>(&widget)) {
    DrawArea(*area, control);
    DrawFaults(*area, control);
  } else if (auto* list = qobject_cast<RowList*>(&widget)) {
    list->SetControl(control);
  } else if (auto* box = qobject_cast<QComboBox*>(&widget)) {
    DrawComboBox(*box, control);
  } else if (auto* view = qobject_cast<MelodyView*>(&widget)) {
    view->SetDrawing(form.*bound.info->drawing, ToQString(control.invitation));
    if (bound.info->sounds == app::Sounding::kNothing) {
      view->Mark(control.listIndex);
    }
  } else if (auto* shapes = qobject_cast<ShapeView*>(&widget)) {
    shapes->SetPicture([&form, picture = bound.info->picture](
                           double width, double height) { return (form.*picture)(width, height); },
                       ToQString(control.text));
  } else if (auto* waiting = qobject_cast<WaitingLine*>(&widget)) {
    waiting->SetBusy(control.checked);
  }
  widget.setVisible(control.Shows());
}

void CopyInObject(const BoundControl& bound, Control& control) {
  if (const auto* line = qobject_cast<const QLineEdit*>(bound.object)) {
    if (line->text() != ToQString(control.text)) {
      control.text = FromQString(line->text());
    }
  } else if (const auto* display = qobject_cast<const PhoneDisplay*>(bound.object)) {
    control.value = display->ChosenPixelSize();
  } else if (const auto* area = qobject_cast<const QPlainTextEdit*>(bound.object)) {
    if (area->toPlainText() != ToQStringLines(control.text)) {
      control.text = FromQString(area->toPlainText().replace('\n', QLatin1String("\r\n")));
    }
    control.cursor = static_cast<std::size_t>(area->textCursor().position());
  } else if (const auto* list = qobject_cast<const RowList*>(bound.object)) {
    if (list->SelectedRow() != control.listIndex) {
      control.Select(list->SelectedRow());
    }
  } else if (const auto* slider = qobject_cast<const QSlider*>(bound.object)) {
    control.value = slider->value();
  } else if (const auto* shapes = qobject_cast<const ShapeView*>(bound.object)) {
    control.value = shapes->Hit();
  } else if (const auto* box = qobject_cast<const QComboBox*>(bound.object)) {
    if (box->currentText() != ToQString(control.text)) {
      control.SetText(FromQString(box->currentText()));
    }
  }
}

// ---- Events -------------------------------------------------------------------------------------

using Fire = std::function<void()>;

// Connects the signal if the object has this type.
template <typename Sender, typename Signal>
bool ConnectIf(QObject* object, Signal signal, const Fire& fire) {
  auto* sender = qobject_cast<Sender*>(object);
  return sender != nullptr && QObject::connect(sender, signal, sender, fire);
}

void ConnectEvent(QObject* object, Event event, const Fire& fire) {
  if (event == Event::kActivate) {
    ConnectIf<RowList>(object, &RowList::RowActivated, fire);
  } else if (event == Event::kEnter) {
    ConnectIf<QLineEdit>(object, &QLineEdit::returnPressed, fire);
  } else {
    ConnectIf<QAbstractButton>(object, &QAbstractButton::clicked, fire) ||
        ConnectIf<RowList>(object, &RowList::RowChosen, fire) ||
        ConnectIf<QTimer>(object, &QTimer::timeout, fire) ||
        ConnectIf<ShapeView>(object, &ShapeView::Clicked, fire) ||
        ConnectIf<WebPane>(object, &WebPane::LeaveAttempted, fire) ||
        ConnectIf<QSlider>(object, &QSlider::valueChanged, fire) ||
        ConnectIf<QLineEdit>(object, &QLineEdit::textChanged, fire) ||
        ConnectIf<QPlainTextEdit>(object, &QPlainTextEdit::textChanged, fire) ||
        ConnectIf<QComboBox>(object, &QComboBox::editTextChanged, fire);
  }
}

}  // namespace

Binding::Binding(Form1& form, QWidget* parent, const Dispatch& dispatch) : form_(form) {
  QAccessible::installFactory(TabAccess::Make);
  for (const ControlInfo& info : app::Controls()) {
    BoundControl bound{&info, nullptr, nullptr};
    if (info.look == Look::kTimer) {
      bound.object = new QTimer(parent);
    } else if (QWidget* widget = MakeWidget(info)) {
      bound.widget = widget;
      bound.widget->setParent(parent);
      bound.widget->setToolTip(ToQString(info.help));
      bound.widget->setAccessibleName(ToQString(info.spoken));
      bound.widget->hide();
      bound.object = bound.widget;
    }
    if (bound.object != nullptr) {
      bound.object->setObjectName(ToQString(info.name));
    }
    bound_.push_back(bound);
  }
  for (const BoundControl& bound : bound_) {
    if (bound.object != nullptr) {
      Connect(bound, dispatch);
    }
  }
}

QObject* Binding::Object(Control Form1::*member) const {
  const auto found = std::find_if(bound_.begin(), bound_.end(), [member](const BoundControl& row) {
    return row.info->member == member;
  });
  return found == bound_.end() ? nullptr : found->object;
}

QWidget* Binding::Widget(Control Form1::*member) const {
  return qobject_cast<QWidget*>(Object(member));
}

void Binding::Connect(const BoundControl& bound, const Dispatch& dispatch) {
  const ControlInfo& info = *bound.info;
  if (info.field != nullptr) {
    qobject_cast<QLabel*>(bound.widget)->setBuddy(Widget(info.field));
  }
  if (auto* list = qobject_cast<RowList*>(bound.object); list != nullptr && !info.on.handler) {
    // A choice without a handler shows all the same in what is drawn from it.
    QObject::connect(list, &RowList::RowChosen, list, [dispatch] { dispatch([] {}); });
  }
  if (!info.menu.empty()) {
    ConnectMenu(bound, dispatch);
  }
  for (const app::EventHandler& on : {info.on, info.also}) {
    if (on.handler != nullptr) {
      ConnectEvent(bound.object, on.event, [this, dispatch, handler = on.handler] {
        if (!drawing_) {
          dispatch([this, handler] { (form_.*handler)(); });
        }
      });
    }
  }
}

// The menu on a list's selected row, and its keys while the list has the focus.
void Binding::ConnectMenu(const BoundControl& bound, const Dispatch& dispatch) {
  auto* list = qobject_cast<RowList*>(bound.object);
  const ControlInfo& info = *bound.info;
  const auto run = [this, dispatch, &info](const app::MenuItem& item) {
    dispatch([this, &item, &info] {
      if (form_.Allows(info, item)) {
        (form_.*item.handler)();
      }
    });
  };
  for (const app::MenuItem& item : info.menu) {
    auto* key = new QShortcut(QKeySequence(ToQString(item.shortcut)), list);
    key->setContext(Qt::WidgetShortcut);
    QObject::connect(key, &QShortcut::activated, list, [run, &item] { run(item); });
  }
  list->SetButtons(info.menu);
  QObject::connect(list, &RowList::ButtonClicked, list,
                   [run](const app::MenuItem* item) { run(*item); });
  QObject::connect(list, &RowList::MenuAsked, list, [=, this, &info](const QPoint& place) {
    if (form_.paginaactual != info.menuPage) {
      return;
    }
    auto* menu = new QMenu(list);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const app::MenuItem& item : info.menu) {
      QAction* action =
          item.caption.empty() ? menu->addSeparator() : menu->addAction(ToQString(item.caption));
      action->setShortcut(QKeySequence(ToQString(item.shortcut)));
      action->setShortcutContext(Qt::WidgetShortcut);  // the list's own key does it
      action->setEnabled(form_.Allows(info, item));
      QObject::connect(action, &QAction::triggered, list, [run, &item] { run(item); });
    }
    menu->popup(place);
  });
}

void Binding::CopyIn() {
  for (const BoundControl& bound : bound_) {
    if (bound.object != nullptr) {
      CopyInObject(bound, form_.*bound.info->member);
    }
  }
}

void Binding::Draw() {
  drawing_ = true;
  for (const BoundControl& bound : bound_) {
    if (bound.object != nullptr) {
      DrawObject(bound, form_.*bound.info->member, form_);
    }
  }
  drawing_ = false;
}

}  // namespace tonadex::shell
