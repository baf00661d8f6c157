#include "shell/qt/theme/theme.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>
#include <QHash>
#include <QPainter>
#include <QProxyStyle>
#include <QWidget>
#include <algorithm>

#include "app/control_table.h"
#include "shell/qt/theme/icons.h"

// Forces the linker to keep the Qt resources of this static library. Must be outside of namespaces.
static void KeepResources() {
  Q_INIT_RESOURCE(shell);
}

namespace tonadex::shell {
namespace {

// Where the system names no colours of its own.
QPalette OwnPalette(bool dark) {
  const Grounds& grounds = dark ? kDarkGrounds : kLightGrounds;
  const auto& [window, base, text] = grounds;
  QPalette palette{QColor(text), QColor(window)};
  palette.setColor(QPalette::Window, window);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::Button, base);
  palette.setColor(QPalette::AlternateBase, Blend(base, window, 0.5));
  palette.setColor(QPalette::ToolTipBase, base);
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, Blend(text, window, kLightShares.faint));
  }
  palette.setColor(QPalette::Mid, Blend(text, window, 0.3));
  palette.setColor(QPalette::Dark, Blend(text, window, 0.4));
  palette.setColor(QPalette::Light, Blend(base, window, 0.7));
  return palette;
}

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::WindowText).lightness() >
         palette.color(QPalette::Window).lightness();
}

// `body` in another size of the scale.
QFont Scaled(QFont font, app::Font size, QFont::Weight weight = QFont::Normal) {
  font.setPointSizeF(font.pointSizeF() * kType[static_cast<std::size_t>(size)] / kType[0]);
  font.setWeight(weight);
  return font;
}

constexpr double kSmallestPoints = kType[0] * 0.75;  // a pixel at 96 dpi

QFont BodyFont(QFont font) {
  const double points = font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
  font.setPointSizeF(std::max(points, kSmallestPoints));
  return font;
}

// Fusion with the program's own pictures in message boxes and none on their buttons.
class Style : public QProxyStyle {
 public:
  Style() : QProxyStyle(QStringLiteral("Fusion")) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    return hint == SH_DialogButtonBox_ButtonsHaveIcons
               ? 0
               : QProxyStyle::styleHint(hint, option, widget, data);
  }

  QIcon standardIcon(StandardPixmap picture, const QStyleOption* option,
                     const QWidget* widget) const override {
    switch (picture) {
      case SP_MessageBoxInformation:
        return ThemedIcon(QStringLiteral("informacion"), IconInk::kAccent);
      case SP_MessageBoxWarning:
        return ThemedIcon(QStringLiteral("aviso"), IconInk::kBad);
      default:
        return QProxyStyle::standardIcon(picture, option, widget);
    }
  }
};

constexpr auto kStyleSheet = R"(
QPushButton, QToolButton[command="true"] {
  min-height: @inner; padding: 0 14px; border: 1px solid @border; border-radius: 6px;
  background: @card; color: @text; outline: none; }
QPushButton:hover, QToolButton[command="true"]:hover { background: @hover; border-color: @muted; }
QPushButton:pressed, QToolButton[command="true"]:pressed { background: @wash; }
QPushButton:focus, QToolButton[command="true"]:focus { border: 2px solid @accent; padding: 0 13px; }
QPushButton:disabled { color: @faint; background: @window; }
QPushButton[primary="true"] { background: @accent; border-color: @accent; color: @onaccent; }
QPushButton[primary="true"]:hover { background: @accenthover; }
QPushButton[primary="true"]:focus { border: 2px solid @text; }
QPushButton[primary="true"]:disabled { background: @window; border-color: @border; color: @faint; }
QPushButton[key="true"] { min-height: @inner; min-width: 18px; padding: 0 2px; }
QPushButton[key="true"]:focus { padding: 0 1px; }
QPushButton[mark="true"] { min-height: 22px; padding: 0 9px; border-radius: 12px; font-weight: 600; }
QPushButton[mark="true"]:focus { padding: 0 8px; }
QPushButton[mark="true"][tone="bad"] { color: @bad; border-color: @bad; }
QPushButton[mark="true"][tone="good"] { color: @good; border-color: @good; }
QLineEdit, QComboBox {
  min-height: @inner; padding: 0 8px; border: 1px solid @border; border-radius: 6px;
  background: @card; selection-background-color: @accent;
  selection-color: @onaccent; }
QLineEdit:focus, QComboBox:focus { border: 2px solid @accent; padding: 0 7px; }
QLineEdit:read-only { background: @window; }
QLineEdit:disabled, QComboBox:disabled { color: @faint; background: @window; }
QComboBox QLineEdit, QComboBox QLineEdit:focus { border: none; padding: 0; background: transparent; }
QComboBox::drop-down { border: none; width: 28px; }
QComboBox::down-arrow { image: url(:/shell/icons/flecha.svg); width: 12px; height: 12px; }
QPlainTextEdit, QTextBrowser, QListView {
  border: 1px solid @border; border-radius: 6px; background: @card; color: @text; padding: 4px;
  selection-background-color: @accent; selection-color: @onaccent; }
QPlainTextEdit:focus, QTextBrowser:focus, QListView:focus { border: 2px solid @accent; padding: 3px; }
QListView::item { min-height: @row; padding: 0 8px; border-radius: 4px; }
QListView::item:hover { background: @hover; }
QListView::item:selected { background: @wash; color: @text; border-left: 3px solid @accent; }
QListView:disabled { color: @faint; background: @window; }
QFrame[card="true"] { background: @card; border: 1px solid @border; border-radius: 8px; }
QFrame[rule="true"] { background: @border; border: none; max-height: 1px; }
QWidget[bar="true"] { background: @card; border-bottom: 1px solid @border; }
QLabel[muted="true"], QLabel[tone="muted"] { color: @muted; }
QLabel[tone="good"] { color: @good; }
QLabel[tone="bad"] { color: @bad; }
QToolButton[nav="true"] {
  border: none; border-bottom: 3px solid transparent; border-radius: 0; padding: 8px 12px 4px 12px;
  background: transparent; color: @text; }
QToolButton[nav="true"]:hover { background: @hover; }
QToolButton[nav="true"]:focus { background: @hover; border: 2px solid @accent; padding: 6px 10px 5px 10px; }
QToolButton[nav="true"]:checked { color: @accent; border-bottom: 3px solid @accent; font-weight: 600; }
tonadex--shell--PhoneDisplay, tonadex--shell--PhoneDisplay:focus {
  background: @lcd; color: @ink; border: 2px solid @lcdedge; border-radius: 10px; padding: 10px;
  selection-background-color: @ink; selection-color: @lcd; }
tonadex--shell--PhoneDisplay:focus { border-color: @accent; }
tonadex--shell--PhoneDisplay QScrollBar::handle { background: @lcdedge; }
QPushButton:checked { background: @wash; border-color: @accent; color: @accent; }
QScrollBar:vertical { background: transparent; width: 12px; margin: 0; }
QScrollBar:horizontal { background: transparent; height: 12px; margin: 0; }
QScrollBar::handle { background: @border; border-radius: 3px; margin: 3px; }
QScrollBar::handle:vertical { min-height: 32px; }
QScrollBar::handle:horizontal { min-width: 32px; }
QScrollBar::handle:hover { background: @muted; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QSlider { min-height: 24px; }
QSlider::groove:horizontal { height: 4px; border-radius: 2px; background: @border; }
QSlider::sub-page:horizontal { background: @accent; border-radius: 2px; }
QSlider::handle:horizontal {
  width: 16px; height: 16px; margin: -7px 0; border-radius: 9px; background: @card;
  border: 2px solid @accent; }
QSlider::handle:horizontal:focus { background: @accent; }
QToolTip { background: @card; color: @text; border: 1px solid @border; padding: 4px 6px; }
QScrollArea { border: none; background: transparent; }
)";

QString StyleSheet(const Theme& theme, int rowHeight) {
  const QHash<QString, QString> values = {
      {"inner", QStringLiteral("%1px").arg(theme.controlHeight - 2)},
      {"row", QStringLiteral("%1px").arg(rowHeight)},
      {"border", theme.border.name()},
      {"card", theme.card.name()},
      {"text", theme.text.name()},
      {"hover", theme.hover.name()},
      {"muted", theme.muted.name()},
      {"faint", theme.faint.name()},
      {"wash", theme.accentWash.name()},
      {"window", theme.window.name()},
      {"accent", theme.accent.name()},
      {"accenthover", theme.accentHover.name()},
      {"onaccent", theme.accentText.name()},
      {"good", theme.good.name()},
      {"bad", theme.bad.name()},
      {"lcd", theme.displayGround.name()},
      {"lcdedge", theme.displayEdge.name()},
      {"ink", theme.displayInk.name()}};
  QString sheet;
  const QString source = QString::fromLatin1(kStyleSheet);
  for (qsizetype at = 0; at < source.size(); ++at) {
    if (source[at] != '@') {
      sheet += source[at];
      continue;
    }
    qsizetype end = at + 1;
    while (end < source.size() && source[end].isLower()) {
      ++end;
    }
    sheet += values.value(source.mid(at + 1, end - at - 1));
    at = end - 1;
  }
  return sheet;
}

}  // namespace

Theme CurrentTheme() {
  const QPalette palette = QApplication::palette();
  const bool dark = IsDark(palette);
  const auto ground = [&palette](QPalette::ColorRole role) {
    return palette.color(role).rgb() & 0xFFFFFF;
  };
  const Grounds grounds{ground(QPalette::Window), ground(QPalette::Base),
                        ground(QPalette::WindowText)};
  const bool strong = IsStrong(grounds);
  const Tones tones = dark ? kDarkTones : kLightTones;
  Theme theme{MixColours(grounds,
                         strong ? ContrastTones(grounds, tones.accent, tones.accentText) : tones,
                         strong ? kContrastShares
                         : dark ? kDarkShares
                                : kLightShares,
                         [](Rgb colour) { return QColor(colour); })};
  theme.dark = dark;
  theme.body = BodyFont(QApplication::font());
  theme.scale = theme.body.pointSizeF() / kSmallestPoints;
  theme.small = Scaled(theme.body, app::Font::kSmall);
  theme.title = Scaled(theme.body, app::Font::kTitle, QFont::DemiBold);
  theme.heading = Scaled(theme.body, app::Font::kHeading, QFont::DemiBold);
  theme.mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  theme.mono.setPointSizeF(theme.body.pointSizeF());
  theme.controlHeight = std::max(36, QFontMetrics(theme.body).height() + 2 * kGrid);
  return theme;
}

void PaintCard(QPainter& painter, const QWidget& view, const Theme& theme) {
  const bool focus = view.hasFocus();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(focus ? theme.accent : theme.border, focus ? 2 : 1));
  painter.setBrush(theme.card);
  painter.drawRoundedRect(QRectF(view.rect()).adjusted(1, 1, -1, -1), kRadius, kRadius);
}

void ApplyTheme(QApplication& application, bool dark) {
  KeepResources();
  QApplication::setPalette(QPalette());  // the system's, whatever stood before
  application.setStyle(new Style);
  QPalette palette = QApplication::palette();
  const QColor standard = application.style()->standardPalette().color(QPalette::Window);
  if (palette.color(QPalette::Window) == standard) {
    palette = OwnPalette(dark || IsDark(palette));
    QApplication::setPalette(palette);
  }
  const Theme theme = CurrentTheme();
  palette.setColor(QPalette::Highlight, theme.accent);
  palette.setColor(QPalette::HighlightedText, theme.accentText);
  palette.setColor(QPalette::Link, theme.accent);
  palette.setColor(QPalette::LinkVisited, theme.accent);
  palette.setColor(QPalette::PlaceholderText, theme.muted);
  QApplication::setPalette(palette);
  QApplication::setFont(theme.body);
  application.setStyleSheet(StyleSheet(theme, QFontMetrics(theme.body).height() + kGrid));
}

}  // namespace tonadex::shell
