#pragma once

#include <QWidget>
#include <filesystem>
#include <vector>

#include "app/help_book.h"

class QBoxLayout;
class QLabel;
class QLineEdit;
class QTextBrowser;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace tonadex::shell {

// The help viewer: a window of its own that shows a rich-text manual with its contents (the
// headings), search, history and zoom, in the colours and the type size of the program.
// Object names: helpBack, helpForward, helpSearch, helpPrevious, helpNext, helpHits, helpZoomOut,
// helpZoomReset, helpZoomIn, helpContents, helpText.
class HelpWindow : public QWidget, private app::HelpPage {
 public:
  explicit HelpWindow(QWidget* parent = nullptr);

  // Shows the file and brings the window to the front; the place stays when the file is open
  // already. A file that is missing or is no rich text is reported on the page itself.
  void Open(const std::filesystem::path& file);

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BuildBar(QBoxLayout& bar);
  void AddShortcuts();
  void SetColumn();

  std::u16string DrawManual() override;
  void DrawContents() override;
  void DrawSection(int section) override;
  void DrawHits() override;
  void DrawHit() override;
  void DrawButtons() override;
  std::size_t Top() const override;
  void ScrollTo(std::size_t position) override;

  std::vector<QToolButton*> buttons_;  // as app::HelpButtons() has them
  QLineEdit* search_;
  QLabel* hitCount_;
  QTreeWidget* contents_;
  QTextBrowser* text_;

  app::HelpBook book_{*this};
  std::vector<QTreeWidgetItem*> items_;  // of the book's headings
};

}  // namespace tonadex::shell
