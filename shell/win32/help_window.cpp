#include "shell/win32/help_window.h"

#include <commctrl.h>
#include <commdlg.h>
#include <richedit.h>

#include <algorithm>
#include <cmath>

#include "app/words.h"
#include "platform/win32/rich_edit.h"
#include "platform/win32/wide_text.h"
#include "rtf/rtf_reader.h"
#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"
#include "shell/win32/widgets/button.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

constexpr wchar_t kClass[] = L"TonadexAyuda";
constexpr int kWidth = 960, kHeight = 700, kContentsWidth = 260, kHitsWidth = 96;
enum Id : int { kSearchId = 1, kHitsId, kContentsId, kTextId, kFirstButtonId };

constexpr std::string_view kSearchWords = "Buscar en la ayuda";
constexpr std::string_view kContentsWords = "Contenido";
constexpr std::string_view kDeeper = "    ";

// The text as the control counts its characters.
std::wstring DrawnText(HWND richEdit) {
  GETTEXTLENGTHEX length{GTL_NUMCHARS, 1200};
  const auto size =
      SendMessageW(richEdit, EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&length), 0);
  std::wstring text(static_cast<std::size_t>(size) + 1, L'\0');
  GETTEXTEX wanted{static_cast<DWORD>(text.size() * sizeof(wchar_t)), GT_DEFAULT, 1200, nullptr,
                   nullptr};
  text.resize(static_cast<std::size_t>(SendMessageW(richEdit, EM_GETTEXTEX,
                                                    reinterpret_cast<WPARAM>(&wanted),
                                                    reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

bool Down(int key) {
  return GetKeyState(key) < 0;
}

// What a key does while Ctrl, Alt and Shift are as they are.
std::optional<app::HelpCommand> CommandOf(WPARAM key, bool searching) {
  using app::HelpCommand;
  if (key == VK_F3 || (key == VK_RETURN && searching)) {
    return Down(VK_SHIFT) ? HelpCommand::kPrevious : HelpCommand::kNext;
  }
  if (Down(VK_MENU) && (key == VK_LEFT || key == VK_RIGHT)) {
    return key == VK_LEFT ? HelpCommand::kBack : HelpCommand::kForward;
  }
  if (Down(VK_CONTROL) && (key == VK_OEM_PLUS || key == VK_ADD)) {
    return HelpCommand::kLarger;
  }
  if (Down(VK_CONTROL) && (key == VK_OEM_MINUS || key == VK_SUBTRACT)) {
    return HelpCommand::kSmaller;
  }
  return Down(VK_CONTROL) && key == '0' ? std::optional(HelpCommand::kNormal) : std::nullopt;
}

std::u16string Utf16(const std::wstring& text) {
  return {text.begin(), text.end()};
}

}  // namespace

HelpWindow::HelpWindow() : theme_(GetDpiForSystem()) {
  RegisterKind(kClass, ObjectProcedure<HelpWindow>);
  const HINSTANCE program = GetModuleHandleW(nullptr);
  window_ =
      CreateWindowExW(WS_EX_CONTROLPARENT, kClass, platform::ToWide(app::words::kHelpTitle).c_str(),
                      WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT,
                      theme_.Px(kWidth), theme_.Px(kHeight), nullptr, nullptr, program, nullptr);
  search_ = CreateWindowExW(
      WS_EX_CLIENTEDGE, L"EDIT", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, 0, 0, 1,
      1, window_, reinterpret_cast<HMENU>(LONG_PTR{kSearchId}), program, nullptr);
  SendMessageW(search_, EM_SETCUEBANNER, TRUE,
               reinterpret_cast<LPARAM>(platform::ToWide(kSearchWords).c_str()));
  SendMessageW(search_, WM_SETFONT, reinterpret_cast<WPARAM>(theme_.body.get()), TRUE);
  SetSpokenName(search_, kSearchWords);
  for (const app::HelpButton& row : app::HelpButtons()) {
    const int id = kFirstButtonId + static_cast<int>(buttons_.size());
    buttons_.push_back(MakeButton(window_, id, app::Look::kButton, {}, theme_));
    SetWords(buttons_.back(), std::wstring(row.sign.begin(), row.sign.end()));
    SetSpokenName(buttons_.back(), row.meaning);
    ShowWindow(buttons_.back(), SW_SHOW);
  }
  hitCount_ =
      CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | SS_CENTERIMAGE, 0, 0, 1, 1,
                      window_, reinterpret_cast<HMENU>(LONG_PTR{kHitsId}), program, nullptr);
  SendMessageW(hitCount_, WM_SETFONT, reinterpret_cast<WPARAM>(theme_.body.get()), TRUE);
  contents_ = std::make_unique<RowList>(window_, kContentsId, theme_);
  SetSpokenName(contents_->window(), kContentsWords);
  SendMessageW(contents_->window(), WM_SETFONT, reinterpret_cast<WPARAM>(theme_.body.get()), TRUE);
  text_ = platform::MakeRichEdit(
      window_, WS_TABSTOP | WS_VSCROLL | ES_READONLY | ES_AUTOVSCROLL | ES_NOHIDESEL);
  SetWindowLongPtrW(text_, GWLP_ID, kTextId);
  SendMessageW(text_, EM_SETEVENTMASK, 0, ENM_SCROLL);
  ShowWindow(contents_->window(), SW_SHOW);
  ShowWindow(text_, SW_SHOW);
  // Last, when everything that messages use is there.
  SetObject(window_, this);
  ApplyTheme(window_, theme_);
  LayOut();
}

HelpWindow::~HelpWindow() {
  SetObject<HelpWindow>(window_, nullptr);
  DestroyWindow(window_);
}

void HelpWindow::Open(const std::filesystem::path& file) {
  if (file_ != file) {
    Load(file);
  }
  ShowWindow(window_, IsIconic(window_) != 0 ? SW_RESTORE : SW_SHOW);
  SetForegroundWindow(window_);
  SetFocus(text_);
}

void HelpWindow::Load(const std::filesystem::path& file) {
  const app::HelpSource source = app::ReadHelp(file);
  file_ = source.found ? file : std::filesystem::path();
  platform::SetRichEditSource(text_, source.rtf);
  book_.Open();
  book_.SetText(rtf::ReadRtf(source.rtf), Utf16(DrawnText(text_)));
  rows_ = {};
  for (const app::HelpBook::Heading& heading : book_.headings()) {
    rows_.AddRow(std::string(heading.level > 1 ? kDeeper : "") +
                 platform::FromWide(std::wstring(heading.text.begin(), heading.text.end())));
  }
  contents_->Draw(rows_);
  ScrollTo(0);
  UpdateButtons();
}

void HelpWindow::GoTo(std::size_t position) {
  book_.GoTo(TopPosition(), position);
  ScrollTo(position);
  UpdateButtons();
}

void HelpWindow::ScrollTo(std::size_t position) {
  const auto at = static_cast<LONG>(position);
  const auto line = SendMessageW(text_, EM_EXLINEFROMCHAR, 0, at);
  const auto top = SendMessageW(text_, EM_GETFIRSTVISIBLELINE, 0, 0);
  CHARRANGE range{at, at};
  SendMessageW(text_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
  SendMessageW(text_, EM_LINESCROLL, 0, line - top);
  FollowScroll();
}

std::size_t HelpWindow::TopPosition() const {
  const auto line = SendMessageW(text_, EM_GETFIRSTVISIBLELINE, 0, 0);
  return static_cast<std::size_t>(SendMessageW(text_, EM_LINEINDEX, static_cast<WPARAM>(line), 0));
}

// The contents mark the section that is being read.
void HelpWindow::FollowScroll() {
  const int section = book_.SectionAt(TopPosition());
  if (section != rows_.listIndex) {
    rows_.listIndex = section;
    contents_->Draw(rows_);
  }
}

void HelpWindow::ShowHit() {
  if (const auto hit = book_.Hit()) {
    CHARRANGE range{static_cast<LONG>(*hit), static_cast<LONG>(*hit + book_.HitLength())};
    SendMessageW(text_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
    SendMessageW(text_, EM_SCROLLCARET, 0, 0);
    FollowScroll();
  }
  UpdateButtons();
}

void HelpWindow::Run(app::HelpCommand command) {
  constexpr int kWhole = 100;
  const std::size_t top = TopPosition();
  switch (book_.Run(command, top)) {
    case app::HelpChange::kPlace:
      ScrollTo(book_.Place());
      break;
    case app::HelpChange::kHit:
      ShowHit();
      break;
    case app::HelpChange::kZoom:
      SendMessageW(text_, EM_SETZOOM, static_cast<WPARAM>(std::lround(kWhole * book_.Zoom())),
                   kWhole);
      ScrollTo(top);
      break;
    case app::HelpChange::kNothing:
      break;
  }
  UpdateButtons();
}

void HelpWindow::UpdateButtons() {
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const app::HelpCommand command = app::HelpButtons()[i].command;
    EnableWindow(buttons_[i], book_.Can(command) ? TRUE : FALSE);
    if (command == app::HelpCommand::kNormal) {
      SetText(buttons_[i], book_.ZoomInWords());
    }
  }
  SetText(hitCount_, book_.HitsInWords());
}

bool HelpWindow::Translate(MSG& message) {
  if (message.hwnd != window_ && IsChild(window_, message.hwnd) == 0) {
    return false;
  }
  const bool key = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
  if (key && message.wParam == VK_ESCAPE) {
    ShowWindow(window_, SW_HIDE);
    return true;
  }
  if (const auto command = CommandOf(key ? message.wParam : 0, GetFocus() == search_)) {
    Run(*command);
    return true;
  }
  return IsDialogMessageW(window_, &message) != 0;
}

void HelpWindow::Command(int id, int notice) {
  if (id >= kFirstButtonId) {
    Run(app::HelpButtons()[static_cast<std::size_t>(id - kFirstButtonId)].command);
  } else if (id == kSearchId && notice == EN_CHANGE) {
    book_.Search(Utf16(WindowText(search_)), TopPosition());
    ShowHit();
  } else if (id == kTextId && notice == EN_VSCROLL) {
    FollowScroll();
  } else if (id == kContentsId && notice == LBN_SELCHANGE && contents_->Selected() >= 0) {
    rows_.listIndex = contents_->Selected();
    GoTo(book_.headings()[static_cast<std::size_t>(contents_->Selected())].position);
  }
}

std::optional<LRESULT> HelpWindow::Handle(UINT message, WPARAM wide, LPARAM data) {
  switch (message) {
    case WM_COMMAND:
      Command(LOWORD(wide), HIWORD(wide));
      return 0;
    case WM_DRAWITEM:
      return ReflectDraw(data);
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORSTATIC:
      SetTextColor(reinterpret_cast<HDC>(wide), theme_.colours.text);
      SetBkMode(reinterpret_cast<HDC>(wide), TRANSPARENT);
      return reinterpret_cast<LRESULT>(theme_.windowBrush.get());
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLOREDIT:
      SetTextColor(reinterpret_cast<HDC>(wide), theme_.colours.text);
      SetBkColor(reinterpret_cast<HDC>(wide), theme_.colours.card);
      return reinterpret_cast<LRESULT>(theme_.cardBrush.get());
    case WM_SIZE:
      LayOut();
      return 0;
    case WM_ERASEBKGND: {
      RECT area{};
      GetClientRect(window_, &area);
      FillRect(reinterpret_cast<HDC>(wide), &area, theme_.windowBrush.get());
      return 1;
    }
    case WM_SETFOCUS:
      SetFocus(text_);
      return 0;
    case WM_CLOSE:
      ShowWindow(window_, SW_HIDE);
      return 0;
    default:
      return std::nullopt;
  }
}

void HelpWindow::LayOut() {
  RECT area{};
  GetClientRect(window_, &area);
  const int gap = theme_.Px(kGrid), left = theme_.Px(kContentsWidth);
  const int top = 2 * gap + theme_.control,
            height = std::max(1, static_cast<int>(area.bottom) - top);
  // From the left: back and forward, the search with its arrows and hits; the zoom last.
  int x = gap;
  const auto place = [&](HWND part, int width) {
    MoveWindow(part, x, gap, width, theme_.control, TRUE);
    x += width + gap;
  };
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const app::HelpCommand command = app::HelpButtons()[i].command;
    if (command == app::HelpCommand::kPrevious) {
      place(search_, left);
    } else if (command == app::HelpCommand::kSmaller) {
      place(hitCount_, theme_.Px(kHitsWidth));
    }
    place(buttons_[i], ButtonSize(buttons_[i], theme_).cx);
  }
  MoveWindow(contents_->window(), gap, top, left - 2 * gap, height - gap, TRUE);
  MoveWindow(text_, left, top, std::max(1, static_cast<int>(area.right) - left), height, TRUE);
  const int margin = theme_.Px(3 * kGrid);
  RECT inner{margin, gap, area.right - left - margin, height - gap};
  SendMessageW(text_, EM_SETRECT, 0, reinterpret_cast<LPARAM>(&inner));
}

}  // namespace tonadex::shell
