#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

namespace tonadex::shell {

// Whether the desktop asks programs for dark colours. Desktops whose palette does not reach the
// toolkit say it over D-Bus; without a bus or an answer it is false.
bool SystemPrefersDark();

// Calls `changed` when the desktop's colours change while the program runs.
class SchemeWatcher : public QObject {
  Q_OBJECT
 public:
  explicit SchemeWatcher(const std::function<void()>& changed);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  Q_SLOT void SettingChanged(const QString& group, const QString& key);

  QTimer once_;  // a change is sent to every window
};

}  // namespace tonadex::shell
