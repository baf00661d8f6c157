#pragma once

#include <windows.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "shell/win32/theme.h"
#include "shell/win32/widgets/row_list.h"

namespace tonadex::shell {

// The help viewer: a window of its own that shows the manual in the rich-text control, with its
// headings as contents and a search.
class HelpWindow {
 public:
  HelpWindow();
  ~HelpWindow();
  HelpWindow(const HelpWindow&) = delete;
  HelpWindow& operator=(const HelpWindow&) = delete;

  // Shows the file and brings the window to the front. A file that is missing or is no rich text is
  // reported on the page itself.
  void Open(const std::filesystem::path& file);
  bool Translate(MSG& message);
  // Answers the window's messages.
  std::optional<LRESULT> Handle(UINT message, WPARAM wide, LPARAM data);

 private:
  void Load(const std::filesystem::path& file);
  void FillContents(const std::string& source);
  void LayOut();
  void GoTo(LONG position);
  void Search(bool backwards);
  // Where the text stands from `from` on (up to `to`, before it when backwards), -1 for nowhere.
  LONG Find(const std::wstring& text, LONG from, LONG to, bool backwards) const;

  Theme theme_;
  HWND window_ = nullptr, text_ = nullptr, search_ = nullptr, next_ = nullptr, previous_ = nullptr;
  std::unique_ptr<RowList> contents_;
  std::vector<LONG> headings_;  // positions in the text
  std::filesystem::path file_;
};

}  // namespace tonadex::shell
