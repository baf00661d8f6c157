#include "shell/win32/help_window.h"

#include <commctrl.h>
#include <commdlg.h>
#include <richedit.h>

#include <algorithm>

#include "app/words.h"
#include "core/runtime_error.h"
#include "files/paths.h"
#include "files/read.h"
#include "platform/win32/rich_edit.h"
#include "platform/win32/wide_text.h"
#include "rtf/rtf_reader.h"
#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"
#include "shell/win32/widgets/button.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

using namespace core::literals;

constexpr wchar_t kClass[] = L"TonadexAyuda";
constexpr int kWidth = 960, kHeight = 700, kContentsWidth = 260;
enum Id : int { kSearchId = 1, kNextId, kPreviousId, kContentsId, kTextId };

constexpr std::string_view kSearchWords = "Buscar en la ayuda";
constexpr std::string_view kNext = "&Siguiente", kPrevious = "&Anterior";
constexpr std::string_view kContentsWords = "Contenido";
constexpr std::string_view kNoHelp = u8"No se puede mostrar la ayuda. Falta el fichero "_w;
constexpr std::string_view kDeeper = "    ";

std::string PlainPage(const std::string& words) {
  return "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0 Segoe UI;}}\\f0\\fs22 " + words + "}";
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
  next_ = MakeButton(window_, kNextId, app::Look::kButton, {}, theme_);
  previous_ = MakeButton(window_, kPreviousId, app::Look::kButton, {}, theme_);
  SetText(next_, kNext);
  SetText(previous_, kPrevious);
  contents_ = std::make_unique<RowList>(window_, kContentsId, theme_);
  SetSpokenName(contents_->window(), kContentsWords);
  SendMessageW(contents_->window(), WM_SETFONT, reinterpret_cast<WPARAM>(theme_.body.get()), TRUE);
  text_ = platform::MakeRichEdit(
      window_, WS_TABSTOP | WS_VSCROLL | ES_READONLY | ES_AUTOVSCROLL | ES_NOHIDESEL);
  SetWindowLongPtrW(text_, GWLP_ID, kTextId);
  for (const HWND child : {next_, previous_, contents_->window(), text_}) {
    ShowWindow(child, SW_SHOW);
  }
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
  std::string source;
  core::SkipErrors([&] { source = files::ReadBytes(file); });
  if (!rtf::LooksLikeRtf(source)) {
    platform::SetRichEditSource(
        text_, PlainPage(std::string(kNoHelp) + files::TextFromPath(file.filename()) + "."));
    return;
  }
  file_ = file;
  platform::SetRichEditSource(text_, source);
  FillContents(source);
  GoTo(0);
}

void HelpWindow::FillContents(const std::string& source) {
  app::Control contents;
  headings_.clear();
  LONG at = 0;
  for (const rtf::Paragraph& paragraph : rtf::ReadRtf(source).paragraphs) {
    std::wstring title;
    for (const rtf::Run& run : paragraph.runs) {
      title.append(run.text.begin(), run.text.end());
    }
    if (paragraph.format.heading == 0 || title.empty()) {
      continue;
    }
    // The same words may stand in a sentence: a heading begins its line.
    LONG found = Find(title, at, -1, false);
    while (found >= 0 &&
           SendMessageW(text_, EM_LINEINDEX,
                        static_cast<WPARAM>(SendMessageW(text_, EM_EXLINEFROMCHAR, 0, found)),
                        0) != found) {
      found = Find(title, found + 1, -1, false);
    }
    if (found >= 0) {
      at = found + static_cast<LONG>(title.size());
      headings_.push_back(found);
      contents.AddRow(std::string(paragraph.format.heading > 1 ? kDeeper : "") +
                      platform::FromWide(title));
    }
  }
  contents_->Draw(contents);
}

LONG HelpWindow::Find(const std::wstring& text, LONG from, LONG to, bool backwards) const {
  FINDTEXTEXW wanted{{from, to}, text.c_str(), {}};
  return static_cast<LONG>(SendMessageW(text_, EM_FINDTEXTEXW, backwards ? 0 : FR_DOWN,
                                        reinterpret_cast<LPARAM>(&wanted)));
}

void HelpWindow::GoTo(LONG position) {
  const auto line = SendMessageW(text_, EM_EXLINEFROMCHAR, 0, position);
  const auto top = SendMessageW(text_, EM_GETFIRSTVISIBLELINE, 0, 0);
  CHARRANGE range{position, position};
  SendMessageW(text_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
  SendMessageW(text_, EM_LINESCROLL, 0, line - top);
}

void HelpWindow::Search(bool backwards) {
  const std::wstring words = WindowText(search_);
  CHARRANGE selection{};
  SendMessageW(text_, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selection));
  const LONG end = GetWindowTextLengthW(text_);
  LONG found =
      backwards ? Find(words, selection.cpMin, 0, true) : Find(words, selection.cpMax, -1, false);
  if (found < 0) {  // once more from the other end
    found = backwards ? Find(words, end, 0, true) : Find(words, 0, -1, false);
  }
  if (words.empty() || found < 0) {
    MessageBeep(MB_OK);
    return;
  }
  CHARRANGE hit{found, found + static_cast<LONG>(words.size())};
  SendMessageW(text_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&hit));
  SendMessageW(text_, EM_SCROLLCARET, 0, 0);
}

bool HelpWindow::Translate(MSG& message) {
  if (message.hwnd != window_ && IsChild(window_, message.hwnd) == 0) {
    return false;
  }
  if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) {
    ShowWindow(window_, SW_HIDE);
    return true;
  }
  if (message.message == WM_KEYDOWN &&
      (message.wParam == VK_F3 || (message.wParam == VK_RETURN && GetFocus() == search_))) {
    Search(GetKeyState(VK_SHIFT) < 0);
    return true;
  }
  return IsDialogMessageW(window_, &message) != 0;
}

std::optional<LRESULT> HelpWindow::Handle(UINT message, WPARAM wide, LPARAM data) {
  switch (message) {
    case WM_COMMAND:
      if (LOWORD(wide) == kNextId || LOWORD(wide) == kPreviousId) {
        Search(LOWORD(wide) == kPreviousId);
      } else if (LOWORD(wide) == kContentsId && HIWORD(wide) == LBN_SELCHANGE &&
                 contents_->Selected() >= 0) {
        GoTo(headings_[static_cast<std::size_t>(contents_->Selected())]);
      }
      return 0;
    case WM_DRAWITEM:
      return ReflectDraw(data);
    case WM_CTLCOLORBTN:
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
  const int next = ButtonSize(next_, theme_).cx, previous = ButtonSize(previous_, theme_).cx;
  MoveWindow(search_, gap, gap, left - 2 * gap, theme_.control, TRUE);
  MoveWindow(previous_, left, gap, previous, theme_.control, TRUE);
  MoveWindow(next_, left + previous + gap, gap, next, theme_.control, TRUE);
  MoveWindow(contents_->window(), gap, top, left - 2 * gap, height - gap, TRUE);
  MoveWindow(text_, left, top, std::max(1, static_cast<int>(area.right) - left), height, TRUE);
  const int margin = theme_.Px(3 * kGrid);
  RECT inner{margin, gap, area.right - left - margin, height - gap};
  SendMessageW(text_, EM_SETRECT, 0, reinterpret_cast<LPARAM>(&inner));
}

}  // namespace tonadex::shell
