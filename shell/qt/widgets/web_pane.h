#pragma once

#include <QStackedWidget>
#include <string>

class QLabel;

namespace tonadex::shell {

class Browser;

// A web view whose browser is made when it is first seen, or by Prepare. Without the browser's
// module, and while a page cannot be reached, it shows a sentence instead.
class WebPane : public QStackedWidget {
  Q_OBJECT
 public:
  enum class Kind { kPage, kBanner };
  explicit WebPane(Kind kind, QWidget* parent = nullptr);

  // Makes the browser. The first one of a window must be made before the window shows: it changes
  // how the window is drawn, and a standing window would be made anew.
  void Prepare();
  // Windows-1252, as the program composed it. (Re)loads.
  void Navigate(std::string_view address);
  const std::string& Address() const { return address_; }

 signals:
  // A click wanted to lead away from the banner; the view stays where it is. What a page tries by
  // itself is stopped and not told.
  void LeaveAttempted();

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Load();
  void ShowQuietPage();
  void TakePlace(bool place);
  void FollowScheme();

  Kind kind_;
  std::string address_;
  bool pending_ = false;
  QLabel* quiet_;
  Browser* browser_ = nullptr;  // a child
};

}  // namespace tonadex::shell
