#include "shell/qt/window/binding.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <algorithm>
#include <array>

#include "app/control_looks.h"
#include "app/control_pictures.h"
#include "shell/qt/text.h"
#include "shell/qt/theme/icons.h"
#include "shell/qt/theme/theme.h"
#include "shell/qt/widgets/phone_display.h"
#include "shell/qt/widgets/row_list.h"
#include "shell/qt/widgets/web_pane.h"

namespace tonadex::shell {
namespace {

using app::Control;
using app::ControlInfo;
using app::ControlKind;
using app::Event;
using app::Form1;
using app::Look;

// ---- How a control looks ------------------------------------------------------------------------

// The line under a mnemonic undoes the kerning beside it, which the toolkit does not reckon with.
class FieldLabel : public QLabel {
 public:
  QSize sizeHint() const override { return Wider(QLabel::sizeHint()); }
  QSize minimumSizeHint() const override { return Wider(QLabel::minimumSizeHint()); }

 private:
  static QSize Wider(QSize size) { return size + QSize(kGrid / 2, 0); }
};

QWidget* MakeLabel() {
  auto* label = new FieldLabel;
  label->setWordWrap(true);
  label->setTextFormat(Qt::PlainText);
  return label;
}

QWidget* MakeButton(const ControlInfo& info) {
  auto* button = new QPushButton;
  if (const app::ControlPicture* picture = app::FindPicture(info.name)) {
    button->setProperty("primary", picture->primary);
    button->setIcon(ThemedIcon(QLatin1String(picture->icon),
                               picture->primary ? IconInk::kOnAccent : IconInk::kText));
    button->setIconSize(IconSize());
  }
  return button;
}

QWidget* MakeNavigationButton(const ControlInfo& info) {
  auto* button = new QToolButton;
  button->setIcon(ThemedIcon(QLatin1String(app::FindPicture(info.name)->icon)));
  button->setIconSize(IconSize() * 4 / 3);
  button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  button->setProperty("nav", true);
  button->setFocusPolicy(Qt::StrongFocus);
  button->setCheckable(true);
  return button;
}

// Takes the height that is left and asks for none.
class TextArea : public QPlainTextEdit {
 public:
  QSize sizeHint() const override { return {QPlainTextEdit::sizeHint().width(), minimumHeight()}; }
  QSize minimumSizeHint() const override {
    return {QPlainTextEdit::minimumSizeHint().width(), minimumHeight()};
  }
};

QPlainTextEdit* MakeTextArea() {
  auto* area = new TextArea;
  area->setTabChangesFocus(true);
  return area;
}

QWidget* MakeReadOnlyArea() {
  auto* area = MakeTextArea();
  area->setReadOnly(true);
  area->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  return area;
}

QWidget* MakeDisplay() {
  auto* display = new PhoneDisplay;
  display->setTabChangesFocus(true);
  return display;
}

QWidget* MakeReading() {
  auto* box = new QLineEdit;
  box->setReadOnly(true);
  box->setAlignment(Qt::AlignRight);
  return box;
}

QWidget* MakeComboBox() {
  auto* box = new QComboBox;
  box->setEditable(true);
  box->setInsertPolicy(QComboBox::NoInsert);
  box->setCompleter(nullptr);
  return box;
}

QWidget* MakeWidget(const ControlInfo& info) {
  switch (app::LookOf(info)) {
    case Look::kLabel:
      return MakeLabel();
    case Look::kNavigation:
      return MakeNavigationButton(info);
    case Look::kButton:
      return MakeButton(info);
    case Look::kLine:
      return new QLineEdit;
    case Look::kReading:
      return MakeReading();
    case Look::kArea:
      return MakeTextArea();
    case Look::kNotices:
      return MakeReadOnlyArea();
    case Look::kDisplay:
      return MakeDisplay();
    case Look::kList:
      return new RowList;
    case Look::kComboBox:
      return MakeComboBox();
    case Look::kPage:
      return new WebPane(WebPane::Kind::kPage);
    case Look::kBanner:
      return new WebPane(WebPane::Kind::kBanner);
    case Look::kTimer:
    case Look::kNone:
      break;
  }
  return nullptr;
}

// ---- Drawing and reading back, by class of widget -----------------------------------------------

// Labels, buttons and lines of text.
template <typename TextWidget>
void DrawText(TextWidget& widget, std::string_view words) {
  const QString text = ToQString(words);
  if (widget.text() != text) {
    widget.setText(text);
  }
}

void DrawArea(QPlainTextEdit& area, const Control& control) {
  const QString text = ToQStringLines(control.text);
  if (area.toPlainText() != text) {
    area.setPlainText(text);
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
  if (box.currentIndex() != control.listIndex) {
    box.setCurrentIndex(control.listIndex);
  }
  const QString text = ToQString(control.text);
  if (box.currentText() != text) {
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

void DrawObject(const BoundControl& bound, const Control& control) {
  if (auto* timer = qobject_cast<QTimer*>(bound.object)) {
    DrawTimer(*timer, control);
    return;
  }
  QWidget& widget = *bound.widget;
  if (widget.isEnabled() != control.enabled) {
    widget.setEnabled(control.enabled);
  }
  if (auto* label = qobject_cast<QLabel*>(&widget)) {
    DrawText(*label, control.caption);
  } else if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
    DrawText(*button, control.caption);
  } else if (auto* line = qobject_cast<QLineEdit*>(&widget)) {
    DrawText(*line, control.text);
  } else if (qobject_cast<PhoneDisplay*>(&widget) != nullptr) {
    // The window gives it the text with its groups.
  } else if (auto* area = qobject_cast<QPlainTextEdit*>(&widget)) {
    DrawArea(*area, control);
  } else if (auto* list = qobject_cast<RowList*>(&widget)) {
    list->SetControl(control);
  } else if (auto* box = qobject_cast<QComboBox*>(&widget)) {
    DrawComboBox(*box, control);
  }
  if (widget.isHidden() == control.visible) {
    widget.setVisible(control.visible);
  }
}

void CopyInObject(const BoundControl& bound, Control& control) {
  if (const auto* line = qobject_cast<const QLineEdit*>(bound.object)) {
    if (line->text() != ToQString(control.text)) {
      control.text = FromQString(line->text());
    }
  } else if (qobject_cast<const PhoneDisplay*>(bound.object) != nullptr) {
    // Read, never typed into.
  } else if (const auto* area = qobject_cast<const QPlainTextEdit*>(bound.object)) {
    if (area->toPlainText() != ToQStringLines(control.text)) {
      control.text = FromQString(area->toPlainText().replace('\n', QLatin1String("\r\n")));
    }
  } else if (const auto* list = qobject_cast<const RowList*>(bound.object)) {
    control.listIndex = list->SelectedRow();
    control.text = list->Text();
  } else if (const auto* box = qobject_cast<const QComboBox*>(bound.object)) {
    if (box->currentText() != ToQString(control.text)) {
      control.text = FromQString(box->currentText());
      control.listIndex =
          box->findText(box->currentText(), Qt::MatchExactly | Qt::MatchCaseSensitive);
    }
  }
}

// ---- Events -------------------------------------------------------------------------------------

using Fire = std::function<void()>;

void ConnectList(RowList* list, Event event, const Fire& fire) {
  QObject::connect(list, event == Event::kActivate ? &RowList::RowActivated : &RowList::RowChosen,
                   list, fire);
}

void ConnectText(QWidget* widget, Event event, const Fire& fire) {
  if (auto* line = qobject_cast<QLineEdit*>(widget)) {
    if (event == Event::kEnter) {
      QObject::connect(line, &QLineEdit::returnPressed, line, fire);
    } else {
      QObject::connect(line, &QLineEdit::textChanged, line, fire);
    }
  } else if (auto* area = qobject_cast<QPlainTextEdit*>(widget)) {
    QObject::connect(area, &QPlainTextEdit::textChanged, area, fire);
  } else if (auto* box = qobject_cast<QComboBox*>(widget)) {
    QObject::connect(box, &QComboBox::editTextChanged, box, fire);
  }
}

}  // namespace

Binding::Binding(Form1& form, QWidget* parent, const Dispatch& dispatch) : form_(form) {
  for (const ControlInfo& info : app::Controls()) {
    BoundControl bound{&info, nullptr, nullptr};
    if (info.kind == ControlKind::kTimer) {
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
  for (const app::HandlerInfo& info : app::Handlers()) {
    Connect(info, dispatch);
  }
  // A choice without a handler shows all the same in what is drawn from it.
  ConnectChoice(dispatch);
}

void Binding::ConnectChoice(const Dispatch& dispatch) {
  for (const BoundControl& bound : bound_) {
    const bool handled = std::ranges::any_of(
        app::Handlers(),
        [&bound](const app::HandlerInfo& info) { return info.control == bound.info->member; });
    if (auto* list = qobject_cast<RowList*>(bound.object); list != nullptr && !handled) {
      QObject::connect(list, &RowList::RowChosen, list, [dispatch] { dispatch([] {}); });
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

void Binding::Connect(const app::HandlerInfo& info, const Dispatch& dispatch) {
  const Fire fire = [this, dispatch, handler = info.handler] {
    if (!drawing_) {
      dispatch([this, handler] { (form_.*handler)(); });
    }
  };
  QObject* object = Object(info.control);
  if (auto* button = qobject_cast<QAbstractButton*>(object)) {
    QObject::connect(button, &QAbstractButton::clicked, button, fire);
  } else if (auto* list = qobject_cast<RowList*>(object)) {
    ConnectList(list, info.event, fire);
  } else if (auto* timer = qobject_cast<QTimer*>(object)) {
    QObject::connect(timer, &QTimer::timeout, timer, fire);
  } else if (auto* pane = qobject_cast<WebPane*>(object)) {
    QObject::connect(pane, &WebPane::LeaveAttempted, pane, fire);
  } else {
    ConnectText(Widget(info.control), info.event, fire);
  }
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
      DrawObject(bound, form_.*bound.info->member);
    }
  }
  drawing_ = false;
}

}  // namespace tonadex::shell
