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

// ---- How a control looks: by name where it is not the usual widget of its kind ------------------

// The line under a mnemonic undoes the kerning beside it, which the toolkit does not reckon with.
class FieldLabel : public QLabel {
 public:
  QSize sizeHint() const override { return Wider(QLabel::sizeHint()); }
  QSize minimumSizeHint() const override { return Wider(QLabel::minimumSizeHint()); }

 private:
  static QSize Wider(QSize size) { return size + QSize(kGrid / 2, 0); }
};

QWidget* MakeLabel(const ControlInfo&) {
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

QWidget* MakeTextBox(const ControlInfo&) {
  return new QLineEdit;
}

// Takes the height that is left and asks for none.
class TextArea : public QPlainTextEdit {
 public:
  QSize sizeHint() const override { return {QPlainTextEdit::sizeHint().width(), minimumHeight()}; }
};

QWidget* MakeTextArea(const ControlInfo&) {
  auto* area = new TextArea;
  area->setTabChangesFocus(true);
  return area;
}

QWidget* MakeReadOnlyArea(const ControlInfo& info) {
  auto* area = static_cast<QPlainTextEdit*>(MakeTextArea(info));
  area->setReadOnly(true);
  area->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  return area;
}

QWidget* MakeDisplay(const ControlInfo&) {
  auto* display = new PhoneDisplay;
  display->setTabChangesFocus(true);
  return display;
}

QWidget* MakeReading(const ControlInfo&) {
  auto* box = new QLineEdit;
  box->setReadOnly(true);
  box->setAlignment(Qt::AlignRight);
  return box;
}

QWidget* MakeList(const ControlInfo&) {
  return new RowList;
}

QWidget* MakeComboBox(const ControlInfo&) {
  auto* box = new QComboBox;
  box->setEditable(true);
  box->setInsertPolicy(QComboBox::NoInsert);
  box->setCompleter(nullptr);
  return box;
}

QWidget* MakePage(const ControlInfo&) {
  return new WebPane(WebPane::Kind::kPage);
}
QWidget* MakeBanner(const ControlInfo&) {
  return new WebPane(WebPane::Kind::kBanner);
}

using Make = QWidget* (*)(const ControlInfo&);
struct Special {
  std::string_view control;
  Make make;
};
constexpr std::array<Special, 12> kSpecials = {{{"cmdinicio", MakeNavigationButton},
                                                {"cmdbuscar", MakeNavigationButton},
                                                {"cmdrepertorio", MakeNavigationButton},
                                                {"cmd906", MakeNavigationButton},
                                                {"cmdopciones", MakeNavigationButton},
                                                {"cmdayuda", MakeNavigationButton},
                                                {"Textavisos", MakeReadOnlyArea},
                                                {"texttempo", MakeReading},
                                                {"cmbmarcas", MakeList},
                                                {"cmbformatos", MakeList},
                                                {"navbanner", MakeBanner},
                                                {"WebBrowser1", MakePage}}};

Make MakerOf(const ControlInfo& info) {
  const auto* special = std::find_if(kSpecials.begin(), kSpecials.end(),
                                     [&](const Special& row) { return row.control == info.name; });
  if (special != kSpecials.end()) {
    return special->make;
  }
  switch (info.kind) {
    case ControlKind::kLabel:
    case ControlKind::kFrame:
      return MakeLabel;
    case ControlKind::kButton:
    case ControlKind::kPictureButton:
      return MakeButton;
    case ControlKind::kTextBox:
      return MakeTextBox;
    case ControlKind::kTextArea:
      return MakeTextArea;
    case ControlKind::kResultBox:
      return MakeDisplay;
    case ControlKind::kListBox:
      return MakeList;
    case ControlKind::kComboBox:
      return MakeComboBox;
    case ControlKind::kWebView:
      return MakePage;
    case ControlKind::kTimer:
    case ControlKind::kStorage:
      break;
  }
  return nullptr;
}

// ---- Drawing and reading back, by class of widget -----------------------------------------------

// Line ends of the model (CR LF, CR) and of the toolkit (LF).
QString Lines(std::string_view text) {
  return ToQString(text).replace(QLatin1String("\r\n"), QLatin1String("\n")).replace('\r', '\n');
}

void DrawLabel(QLabel& label, const Control& control) {
  const QString caption = ToQString(control.caption);
  if (label.text() != caption) {
    label.setText(caption);
  }
}

void DrawButton(QAbstractButton& button, const Control& control) {
  const QString caption = ToQString(control.caption);
  if (button.text() != caption) {
    button.setText(caption);
  }
}

void DrawLine(QLineEdit& line, const Control& control) {
  const QString text = ToQString(control.text);
  if (line.text() != text) {
    line.setText(text);
  }
}

void DrawArea(QPlainTextEdit& area, const Control& control) {
  const QString text = Lines(control.text);
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
    DrawLabel(*label, control);
  } else if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
    DrawButton(*button, control);
  } else if (auto* line = qobject_cast<QLineEdit*>(&widget)) {
    DrawLine(*line, control);
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
    if (area->toPlainText() != Lines(control.text)) {
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

// ---- Events
// --------------------------------------------------------------------------------------

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

Binding::Binding(Form1& form, QWidget* parent, Dispatch dispatch) : form_(form) {
  for (const ControlInfo& info : app::Controls()) {
    BoundControl bound{&info, nullptr, nullptr};
    if (info.kind == ControlKind::kTimer) {
      bound.object = new QTimer(parent);
    } else if (const Make make = MakerOf(info)) {
      bound.widget = make(info);
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
