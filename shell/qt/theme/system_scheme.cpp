#include "shell/qt/theme/system_scheme.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QEvent>

namespace tonadex::shell {
namespace {

constexpr int kAnswerMs = 100;  // the window does not wait longer for its colours
constexpr uint kDark = 1;       // 0 no preference, 2 light

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kGroup = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");

// Asking without one would start a bus.
bool HasBus() {
  return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS");
}

}  // namespace

bool SystemPrefersDark() {
  if (!HasBus()) {
    return false;
  }
  QDBusMessage question =
      QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
  question << kGroup << kKey;
  const QDBusMessage answer = QDBusConnection::sessionBus().call(question, QDBus::Block, kAnswerMs);
  if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) {
    return false;
  }
  QVariant value = answer.arguments().constFirst();
  while (value.canConvert<QDBusVariant>()) {  // the portal wraps it twice
    value = value.value<QDBusVariant>().variant();
  }
  return value.toUInt() == kDark;
}

SchemeWatcher::SchemeWatcher(const std::function<void()>& changed) {
  once_.setSingleShot(true);
  connect(&once_, &QTimer::timeout, this, changed);
  QCoreApplication::instance()->installEventFilter(this);
  if (HasBus()) {
    QDBusConnection::sessionBus().connect(kService, kPath, kInterface,
                                          QStringLiteral("SettingChanged"), this,
                                          SLOT(SettingChanged(QString, QString)));
  }
}

bool SchemeWatcher::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ThemeChange) {
    once_.start(0);
  }
  return QObject::eventFilter(watched, event);
}

void SchemeWatcher::SettingChanged(const QString& group, const QString& key) {
  if (group == kGroup && key == kKey) {
    once_.start(0);
  }
}

}  // namespace tonadex::shell
