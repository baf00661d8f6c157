#pragma once

#include <QStackedWidget>
#include <string>

class QLabel;

namespace tonadex::shell {

class Browser;

// A web view whose browser is created when it is first shown, or by Prepare. Without the browser's
// module, and if a page cannot be loaded, it shows a sentence instead.
class WebPane : public QStackedWidget {
  Q_OBJECT
 public:
  enum class Kind { kPage, kBanner };
  explicit WebPane(Kind kind, QWidget* parent = nullptr);

  // Creates the browser. The first one of a window must be created before the window is shown: it
  // changes how the window is drawn, so that a shown window would be created again.
  void Prepare();
  // Windows-1252, as the program composed it. (Re)loads.
  void Navigate(std::string_view address);
  const std::string& Address() const { return address_; }

 signals:
  // The user clicked a link in the banner, which is not followed. Navigation that the page starts
  // by itself is stopped without this signal.
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
