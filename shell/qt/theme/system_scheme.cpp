#include "shell/qt/theme/system_scheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

namespace tonadex::shell {
namespace {

constexpr int kAnswerMs = 100;  // the window does not wait longer for its colours
constexpr uint kDark = 1;       // 0 no preference, 2 light

}  // namespace

bool SystemPrefersDark() {
  if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) {
    return false;  // asking would start a bus
  }
  QDBusMessage question = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.portal.Desktop"),
      QStringLiteral("/org/freedesktop/portal/desktop"),
      QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
  question << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme");
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

}  // namespace tonadex::shell
