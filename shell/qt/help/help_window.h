#pragma once

#include <QString>
#include <QWidget>
#include <filesystem>
#include <vector>

#include "rtf/rtf_document.h"

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
class HelpWindow : public QWidget {
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
  struct Heading {
    int position;  // in the text
    QTreeWidgetItem* item;
  };

  void BuildBar(class QLayout& bar);
  void AddShortcuts();
  bool Load(const std::filesystem::path& file);
  void ShowFailure(const std::filesystem::path& file, const QString& why);
  void Draw();
  void SetColumn();
  void FillContents();
  void Search();
  void MoveToHit(int step);
  void MarkHits();
  void Zoom(int step);
  void GoTo(int position);
  void Travel(int step);
  void ScrollTo(int position);
  int TopPosition() const;
  void FollowScroll();
  void UpdateButtons();

  QToolButton *back_, *forward_, *previous_, *next_, *zoomOut_, *zoomReset_, *zoomIn_;
  QLineEdit* search_;
  QLabel* hitCount_;
  QTreeWidget* contents_;
  QTextBrowser* text_;

  rtf::Document manual_;
  std::filesystem::path file_;
  bool loaded_ = false;
  bool drawing_ = false;
  int zoomStep_ = 0;
  std::vector<Heading> headings_;
  QString folded_;         // the text as it is searched
  std::vector<int> hits_;  // positions, rising
  int hit_ = -1;           // the one that is marked
  std::vector<int> visited_ = {0};
  std::size_t visit_ = 0;
};

}  // namespace tonadex::shell
