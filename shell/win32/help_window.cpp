#include "shell/win32/help_window.h"

#include <commctrl.h>
#include <richedit.h>

#include <algorithm>
#include <cmath>
#include <ranges>

#include "app/words.h"
#include "platform/win32/rich_edit.h"
#include "platform/win32/send.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"
#include "shell/win32/widgets/button.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

using platform::Send;

constexpr wchar_t kClass[] = L"TonadexAyuda";
constexpr int kWidth = 960, kHeight = 700, kContentsWidth = 260, kHitsWidth = 96;
enum Id : int { kSearchId = 1, kHitsId, kContentsId, kTextId, kFirstButtonId };

constexpr std::string_view kSearchWords = "Buscar en la ayuda";
constexpr std::string_view kContentsWords = "Contenido";
constexpr std::string_view kTextWords = "Texto de la ayuda";
constexpr std::string_view kDeeper = "    ";
constexpr double kMark = 0.3;             // of the accent on the page
constexpr std::size_t kMarkedHits = 300;  // each mark splits a run of text, which is slow

bool Down(int key) {
  return GetKeyState(key) < 0;
}

// The command of a key together with the modifiers held now.
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

}  // namespace

HelpWindow::HelpWindow() : theme_(GetDpiForSystem()) {
  RegisterKind(kClass, ObjectProcedure<HelpWindow>);
  window_ = MakeTopWindow(kClass, app::words::kHelpTitle, WS_OVERLAPPEDWINDOW,
                          {theme_.Px(kWidth), theme_.Px(kHeight)});
  search_ = Add(MakeChild(L"EDIT", WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL, window_, kSearchId),
                kSearchWords);
  Send(search_, EM_SETCUEBANNER, TRUE, platform::ToWide(kSearchWords).c_str());
  for (const app::HelpButton& row : app::HelpButtons()) {
    const int id = kFirstButtonId + static_cast<int>(buttons_.size());
    buttons_.push_back(Add(MakeButton(window_, id, app::Look::kButton, {}, theme_), row.meaning));
  }
  hitCount_ = Add(MakeChild(L"STATIC", SS_CENTERIMAGE, window_, kHitsId), {});
  contents_ = std::make_unique<RowList>(window_, kContentsId, theme_);
  Add(contents_->window(), kContentsWords);
  text_ = platform::MakeRichEdit(
      window_, WS_TABSTOP | WS_VSCROLL | ES_READONLY | ES_AUTOVSCROLL | ES_NOHIDESEL);
  SetWindowLongPtrW(text_, GWLP_ID, kTextId);
  SetSpokenName(text_, kTextWords);
  ShowWindow(text_, SW_SHOW);
  Send(text_, EM_SETEVENTMASK, 0, ENM_SCROLL);
  DrawButtons();
  // Last: from here on messages use the members.
  SetObject(window_, this);
  ApplyTheme(window_, theme_);
  LayOut();
}

HelpWindow::~HelpWindow() {
  SetObject<HelpWindow>(window_, nullptr);
  DestroyWindow(window_);
}

HWND HelpWindow::Add(HWND part, std::string_view spoken) {
  SetSpokenName(part, spoken);
  Send(part, WM_SETFONT, theme_.body.get(), TRUE);
  ShowWindow(part, SW_SHOW);
  return part;
}

void HelpWindow::Open(const std::filesystem::path& file) {
  book_.Open(file);
  ShowWindow(window_, IsIconic(window_) != 0 ? SW_RESTORE : SW_SHOW);
  SetForegroundWindow(window_);
  SetFocus(text_);
}

std::u16string HelpWindow::DrawManual() {
  constexpr int kWhole = 100;
  constexpr UINT kUtf16 = 1200;  // number of the code page
  platform::SetRichEditSource(text_, book_.source());
  Send(text_, EM_SETZOOM, std::lround(kWhole * book_.Zoom()), kWhole);
  GETTEXTLENGTHEX length{GTL_NUMCHARS, kUtf16};
  std::u16string text(static_cast<std::size_t>(Send(text_, EM_GETTEXTLENGTHEX, &length)) + 1, 0);
  GETTEXTEX wanted{static_cast<DWORD>(text.size() * sizeof(char16_t)), GT_DEFAULT, kUtf16, nullptr,
                   nullptr};
  text.resize(static_cast<std::size_t>(Send(text_, EM_GETTEXTEX, &wanted, text.data())));
  return text;
}

void HelpWindow::DrawContents() {
  rows_ = {};
  for (const app::HelpBook::Heading& heading : book_.headings()) {
    rows_.AddRow(std::string(heading.level > 1 ? kDeeper : "") +
                 platform::FromWide(std::wstring(heading.text.begin(), heading.text.end())));
  }
  contents_->Draw(rows_);
}

void HelpWindow::DrawSection(int section) {
  if (section != rows_.listIndex) {
    rows_.listIndex = section;
    contents_->Draw(rows_);
  }
}

// The control formats only its selection, so selection and scroll position are restored.
void HelpWindow::DrawHits() {
  CHARRANGE selected{};
  POINT place{};
  Send(text_, EM_EXGETSEL, 0, &selected);
  Send(text_, EM_GETSCROLLPOS, 0, &place);
  Send(text_, WM_SETREDRAW, FALSE);
  auto format = Sized<CHARFORMAT2W>();
  format.dwMask = CFM_BACKCOLOR;
  format.dwEffects = CFE_AUTOBACKCOLOR;
  Send(text_, EM_SETCHARFORMAT, SCF_ALL, &format);
  format.dwEffects = 0;
  format.crBackColor = Blend(theme_.colours.accent, GetSysColor(COLOR_WINDOW), kMark);
  for (const std::size_t hit : book_.hits() | std::views::take(kMarkedHits)) {
    Select(hit, hit + book_.HitLength());
    Send(text_, EM_SETCHARFORMAT, SCF_SELECTION, &format);
  }
  Send(text_, EM_EXSETSEL, 0, &selected);
  Send(text_, EM_SETSCROLLPOS, 0, &place);
  Send(text_, WM_SETREDRAW, TRUE);
  InvalidateRect(text_, nullptr, TRUE);
}

void HelpWindow::DrawHit() {
  Select(*book_.Hit(), *book_.Hit() + book_.HitLength());
  Send(text_, EM_SCROLLCARET);
  book_.Scrolled();
}

void HelpWindow::DrawButtons() {
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const app::HelpButton& row = app::HelpButtons()[i];
    const std::u16string caption = book_.Caption(row);
    EnableWindow(buttons_[i], book_.Can(row.command) ? TRUE : FALSE);
    SetWords(buttons_[i], {caption.begin(), caption.end()});
  }
  SetText(hitCount_, book_.HitsInWords());
}

std::size_t HelpWindow::Top() const {
  return static_cast<std::size_t>(Send(text_, EM_LINEINDEX, Send(text_, EM_GETFIRSTVISIBLELINE)));
}

void HelpWindow::ScrollTo(std::size_t position) {
  const auto line = Send(text_, EM_EXLINEFROMCHAR, 0, position);
  const auto top = Send(text_, EM_GETFIRSTVISIBLELINE);
  Select(position, position);
  Send(text_, EM_LINESCROLL, 0, line - top);
}

void HelpWindow::Select(std::size_t from, std::size_t to) {
  CHARRANGE range{static_cast<LONG>(from), static_cast<LONG>(to)};
  Send(text_, EM_EXSETSEL, 0, &range);
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
    book_.Run(*command);
    return true;
  }
  return IsDialogMessageW(window_, &message) != 0;
}

void HelpWindow::Command(int id, int notice) {
  if (id >= kFirstButtonId) {
    book_.Run(app::HelpButtons()[static_cast<std::size_t>(id - kFirstButtonId)].command);
  } else if (id == kSearchId && notice == EN_CHANGE) {
    const std::wstring words = WindowText(search_);
    book_.Search(std::u16string(words.begin(), words.end()));
  } else if (id == kTextId && notice == EN_VSCROLL) {
    book_.Scrolled();
  } else if (id == kContentsId && notice == LBN_SELCHANGE && contents_->Selected() >= 0) {
    rows_.listIndex = contents_->Selected();
    book_.GoTo(static_cast<std::size_t>(contents_->Selected()));
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
    case WM_ERASEBKGND:
      Fill(reinterpret_cast<HDC>(wide), ClientArea(window_), theme_.colours.window);
      return 1;
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
  const RECT area = ClientArea(window_);
  const int gap = theme_.Px(kGrid), left = theme_.Px(kContentsWidth);
  const int top = 2 * gap + theme_.control,
            height = std::max(1, static_cast<int>(area.bottom) - top);
  // From the left: back and forward, the search with its arrows and hits; the zoom last.
  int x = gap;
  const auto place = [&](HWND part, int width, int high) {
    MoveWindow(part, x, gap + (theme_.control - high) / 2, width, high, TRUE);
    x += width + gap;
  };
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const app::HelpCommand command = app::HelpButtons()[i].command;
    if (command == app::HelpCommand::kPrevious) {
      place(search_, left, theme_.line + theme_.Px(4));  // a field writes at its top
    } else if (command == app::HelpCommand::kSmaller) {
      place(hitCount_, theme_.Px(kHitsWidth), theme_.control);
    }
    place(buttons_[i], ButtonSize(buttons_[i], theme_).width, theme_.control);
  }
  MoveWindow(contents_->window(), gap, top, left - 2 * gap, height - gap, TRUE);
  MoveWindow(text_, left, top, std::max(1, static_cast<int>(area.right) - left), height, TRUE);
  const int margin = theme_.Px(3 * kGrid);
  RECT inner{margin, gap, area.right - left - margin, height - gap};
  Send(text_, EM_SETRECT, 0, &inner);
}

}  // namespace tonadex::shell
