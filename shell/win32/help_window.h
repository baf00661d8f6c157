#pragma once

#include <windows.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/help_book.h"
#include "shell/win32/theme.h"
#include "shell/win32/widgets/row_list.h"

namespace tonadex::shell {

// The help viewer: shows the manual in the rich-text control, with its contents, search, history
// and zoom.
class HelpWindow : app::HelpPage {
 public:
  HelpWindow();
  ~HelpWindow() override;
  HelpWindow(const HelpWindow&) = delete;
  HelpWindow& operator=(const HelpWindow&) = delete;

  // Shows the file and brings the window to the front. A file that is missing or is no rich text is
  // reported on the page itself.
  void Open(const std::filesystem::path& file);
  bool Translate(MSG& message);
  // Answers the window's messages.
  std::optional<LRESULT> Handle(UINT message, WPARAM wide, LPARAM data);

 private:
  HWND Add(HWND part, std::string_view spoken);
  void LayOut();
  void Command(int id, int notice);
  void Select(std::size_t from, std::size_t to);

  std::u16string DrawManual() override;
  void DrawContents() override;
  void DrawSection(int section) override;
  void DrawHits() override;
  void DrawHit() override;
  void DrawButtons() override;
  std::size_t Top() const override;
  void ScrollTo(std::size_t position) override;

  Theme theme_;
  HWND window_ = nullptr, text_ = nullptr, search_ = nullptr, hitCount_ = nullptr;
  std::vector<HWND> buttons_;  // as app::HelpButtons() has them
  std::unique_ptr<RowList> contents_;
  app::Control rows_;  // of the contents
  app::HelpBook book_{*this};
};

}  // namespace tonadex::shell
