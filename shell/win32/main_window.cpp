#include "shell/win32/main_window.h"

#include <commctrl.h>
#include <commdlg.h>
#include <richedit.h>

#include <algorithm>
#include <array>
#include <utility>

#include "app/composer_keys.h"
#include "app/words.h"
#include "core/runtime_error.h"
#include "files/write.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"
#include "shell/win32/messages.h"
#include "shell/win32/widgets/button.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

namespace words = app::words;
using app::Event;
using app::Form1;
using app::Look;

constexpr wchar_t kClass[] = L"TonadexForm1";
constexpr UINT_PTR kFollowTimer = 1, kCopiedTimer = 2;
constexpr std::size_t kLongestPath = 32768;  // of the system's W functions

constexpr auto kTitles = std::to_array<app::Control Form1::*>(
    {&Form1::lbltitulocompo, &Form1::lbltitulortttl, &Form1::lbltextresult});
constexpr auto kSmallLabels =
    std::to_array<app::Control Form1::*>({&Form1::lblporfacomprueba, &Form1::lblMsg});

COLORREF ColourOfVerdict(app::Verdict verdict, const Theme& theme) {
  return verdict == app::Verdict::kGood  ? theme.colours.good
         : verdict == app::Verdict::kBad ? theme.colours.bad
                                         : theme.colours.muted;
}

void SetFont(HWND window, const Font& font) {
  SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
}

}  // namespace

MainWindow::MainWindow(app::Program& program, platform::WindowHooks& hooks,
                       MessageBoxes::Owner& boxes, Position position)
    : program_(program),
      hooks_(hooks),
      boxes_(boxes),
      position_(std::move(position)),
      form_(program),
      theme_(GetDpiForSystem()) {
  RegisterKind(kClass, ObjectProcedure<MainWindow>);
  window_ = CreateWindowExW(
      WS_EX_CONTROLPARENT, kClass, platform::ToWide(words::kWindowTitle).c_str(),
      WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT, theme_.Px(kFirstWidth),
      theme_.Px(kFirstHeight), nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
  ApplyTheme(window_, theme_);
  binding_ = std::make_unique<Binding>(form_, window_, theme_,
                                       [this](const Binding::Handler& handler) { Run(handler); });
  parts_ = MakeParts(*binding_, window_, theme_,
                     [this](std::string_view key, bool held) { PressKey(key, held); });
  SendMessageW(parts_.size, TBM_SETPOS, TRUE,
               binding_->Of(&Form1::textresultado).display->PixelSize());
  SetFonts();
  AddTooltips();
  FilterTempo();
  SetObject(window_, this);  // when everything that messages use is there

  hooks_.draw = [this] { Draw(); };
  boxes_.window = window_;
  boxes_.opening = [this] {
    Draw();
    if (form_.sounding != app::Sounding::kNothing) {
      SetTimer(window_, kFollowTimer, kFollowMs, nullptr);
    }
  };
  boxes_.place = [this](HWND box) { PlaceBox(box); };
  boxes_.closed = [this] {
    KillTimer(window_, kFollowTimer);
    for (const MelodyPart& melody : parts_.Melodies()) {
      melody.view->SetPosition(-1);
    }
  };
  program_.window = reinterpret_cast<std::intptr_t>(window_);
  program_.busyChanged = [this] { DrawBusy(); };
}

MainWindow::~MainWindow() {
  program_.busyChanged = nullptr;
  hooks_.draw = nullptr;
  boxes_ = {};
  SetObject<MainWindow>(window_, nullptr);
  parts_ = {};
  binding_.reset();  // the web controls go before their parent
  DestroyWindow(window_);
}

void MainWindow::Load() {
  app::RunHandler(program_, [this] { form_.Form_Load(); });
  loaded_ = true;
  Draw();
  ShowWindow(window_, SW_SHOWDEFAULT);
  FocusPage();
}

void MainWindow::Run(const Binding::Handler& handler) {
  if (!loaded_ || pumping_) {
    return;
  }
  // All of it: the system's own code, which calls us, lets no exception through.
  app::RunHandler(program_, [&] {
    binding_->CopyIn();
    handler();
  });
  app::RunHandler(program_, [this] { Draw(); });
}

// ---- Messages -----------------------------------------------------------------------------------

std::optional<LRESULT> MainWindow::Handle(UINT message, WPARAM wide, LPARAM data) {
  switch (message) {
    case WM_COMMAND:
      Command(LOWORD(wide), HIWORD(wide));
      return 0;
    case WM_TIMER:
      Tick(wide);
      return 0;
    case kBannerLeft:
      binding_->Raise(binding_->Of(&Form1::navbanner), Event::kNavigation);
      return 0;
    case WM_HSCROLL:
      if (reinterpret_cast<HWND>(data) == parts_.size) {
        binding_->Of(&Form1::textresultado)
            .display->SetPixelSize(static_cast<int>(SendMessageW(parts_.size, TBM_GETPOS, 0, 0)));
      }
      return 0;
    case WM_ACTIVATE:
      if (LOWORD(wide) == WA_INACTIVE) {
        focus_ = GetFocus();
        return 0;
      }
      [[fallthrough]];
    case WM_SETFOCUS:
      if (focus_ != nullptr && IsChild(window_, focus_) != 0) {
        SetFocus(focus_);
      }
      return 0;
    case WM_NEXTDLGCTL: {  // from a label's mnemonic: to the label, then on to its field
      const HWND next = LOWORD(data) != 0
                            ? reinterpret_cast<HWND>(wide)
                            : GetNextDlgTabItem(window_, GetFocus(), wide != 0 ? TRUE : FALSE);
      SetFocus(next);
      return 0;
    }
    case WM_CLOSE:
    case WM_QUERYENDSESSION:
      Close();
      return TRUE;
    default:
      return HandleLook(message, wide, data);
  }
}

// What has to do with size and looks.
std::optional<LRESULT> MainWindow::HandleLook(UINT message, WPARAM wide, LPARAM data) {
  switch (message) {
    case WM_DRAWITEM:
      DrawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(data), theme_);
      return TRUE;
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
      return ColourOf(reinterpret_cast<HDC>(wide), reinterpret_cast<HWND>(data), message);
    case WM_SIZE:
      layout_.clear();
      LayOutPage();
      return 0;
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(data)->ptMinTrackSize = {theme_.Px(kLeastWidth),
                                                             theme_.Px(kLeastHeight)};
      return 0;
    case WM_PAINT:
      Paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_DPICHANGED: {
      const RECT& place = *reinterpret_cast<const RECT*>(data);
      ChangeTheme(LOWORD(wide));
      SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left,
                   place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
      return 0;
    }
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
      ChangeTheme(theme_.dpi);
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

void MainWindow::Tick(UINT_PTR timer) {
  if (timer == kFollowTimer) {
    FollowMelody();
  } else if (timer == kCopiedTimer) {
    KillTimer(window_, kCopiedTimer);
    SetText(parts_.copy, words::kCopy);
  } else {
    binding_->Tick(timer);
  }
}

void MainWindow::Command(int id, int notification) {
  if (binding_->Command(id, notification) || notification != BN_CLICKED) {
    return;
  }
  switch (id) {
    case kPhoneId:
      return binding_->Raise(binding_->Of(&Form1::cmdopciones), Event::kClick);
    case kGoToSearchId:
      return binding_->Raise(binding_->Of(&Form1::cmdbuscar), Event::kClick);
    case kCopyId:
      return CopyResult();
    case kSaveAsId:
      return SaveResult();
    default:
      parts_.keys->Command(id);
  }
}

void MainWindow::Close() {
  if (pumping_ && !program_.busy) {
    program_.closing = true;  // between the end of a request and that of its handler
  } else {
    form_.Form_QueryUnload();
  }
}

// ---- Keyboard -----------------------------------------------------------------------------------

bool MainWindow::Translate(MSG& message) {
  if (message.hwnd != window_ && IsChild(window_, message.hwnd) == 0) {
    return false;
  }
  if (message.message == WM_KEYDOWN && Shortcut(message)) {
    return true;
  }
  for (const BoundControl& bound : binding_->Controls()) {
    if (bound.browser != nullptr && bound.browser->Translate(message)) {
      return true;
    }
  }
  return IsDialogMessageW(window_, &message) != 0;
}

bool MainWindow::Shortcut(const MSG& message) {
  // AltGr, which types signs, is Ctrl and Alt together.
  const bool control = GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0;
  for (const app::NavigationInfo& info : app::NavigationRow()) {
    const bool help = info.digit == '\0';
    const WPARAM key = help ? VK_F1 : static_cast<WPARAM>(info.digit);
    if (key == message.wParam && control != help) {
      binding_->Raise(binding_->Of(info.button), Event::kClick);
      return true;
    }
  }
  if (message.wParam == VK_ESCAPE) {
    for (const app::NavigationInfo& info : app::NavigationRow()) {
      if (&(form_.*info.button) == form_.NavigationButton()) {
        SetFocus(binding_->Window(info.button));
      }
    }
    return true;
  }
  return message.wParam == VK_RETURN && EnterKey();
}

bool MainWindow::EnterKey() {
  const HWND focus = GetFocus();
  const BoundControl* bound = binding_->Find(focus);
  if ((SendMessageW(focus, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) != 0) {
    SendMessageW(focus, BM_CLICK, 0, 0);
    return true;
  }
  for (const Event event : {Event::kEnter, Event::kActivate}) {
    if (bound != nullptr && binding_->Handles(*bound, event)) {
      binding_->Raise(*bound, event);
      return true;
    }
  }
  // Several lines may be typed into an area; elsewhere Enter does nothing.
  return bound == nullptr || bound->look != Look::kArea;
}

// Each typed character passes the model before the tempo box gets it.
void MainWindow::FilterTempo() {
  COMBOBOXINFO info{};
  info.cbSize = sizeof info;
  GetComboBoxInfo(binding_->Window(&Form1::txtcompoTempo), &info);
  HookWindow(
      info.hwndItem, [this](HWND, UINT message, WPARAM wide, LPARAM) -> std::optional<LRESULT> {
        if (message != WM_CHAR || (wide < ' ' && wide != VK_BACK)) {
          return std::nullopt;  // Ctrl+C and the like
        }
        const std::string typed = platform::FromWide(std::wstring(1, static_cast<wchar_t>(wide)));
        std::int16_t code = static_cast<unsigned char>(typed[0]);
        Run([this, &code] { form_.txtcompoTempo_KeyPress(code); });
        return code == 0 ? std::optional<LRESULT>(0) : std::nullopt;
      });
}

// ---- Drawing ------------------------------------------------------------------------------------

void MainWindow::Draw() {
  if (!loaded_) {
    return;
  }
  const bool newPage = pageDrawn_ != form_.paginaactual;
  const bool frozen = newPage && IsWindowVisible(window_) != 0;
  if (frozen) {
    SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
  }
  binding_->Draw();
  DrawParts();
  ShowParts(parts_, form_);
  LayOutPage();
  pageDrawn_ = form_.paginaactual;
  if (frozen) {
    SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
    RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
  }
  const HWND focus = GetFocus();
  if (newPage || (focus != nullptr && IsChild(window_, focus) != 0 &&
                  (IsWindowVisible(focus) == 0 || IsWindowEnabled(focus) == 0))) {
    FocusPage();
  }
}

void MainWindow::DrawParts() {
  for (const app::NavigationInfo& info : app::NavigationRow()) {
    SetChecked(binding_->Window(info.button), &(form_.*info.button) == form_.NavigationButton());
  }
  SetText(parts_.phone, form_.PhoneLabel());
  SetText(parts_.optionsSentence, form_.OptionsSentence());
  SetText(parts_.composerCheck, form_.composerCheck.sentence);
  SetText(parts_.rtttlCheck, form_.rtttlCheck.sentence);
  EnableWindow(parts_.copy, form_.ResultCanBeSaved());
  EnableWindow(parts_.saveAs, form_.ResultCanBeSaved());
  binding_->Of(&Form1::List1).list->SetInvitation(platform::ToWide(form_.EmptySentence()));
  auto& display = *binding_->Of(&Form1::textresultado).display;
  display.SetInvitation(form_.EmptyResultSentence());
  display.SetResult(form_.textresultado.text, form_.ResultGroupsShown(),
                    form_.ResultIsKeyPresses());
  for (const MelodyPart& melody : parts_.Melodies()) {
    melody.view->SetDrawing(form_.*melody.drawing, platform::ToWide(words::kDrawing));
  }
}

// Only when something has moved: a page, the banner, a text that takes more lines.
void MainWindow::LayOutPage() {
  if (!loaded_) {
    return;
  }
  RECT area{};
  GetClientRect(window_, &area);
  const std::string wanted =
      std::to_string(form_.paginaactual) + '/' + (form_.navbanner.visible ? 'b' : '-') +
      (form_.OffersSearch() ? 's' : '-') + form_.lbltextresult.caption + '/' + form_.PhoneLabel();
  if (wanted == layout_) {
    return;
  }
  layout_ = wanted;
  frames_ = LayOut(*binding_, parts_, theme_, form_, {area.right, area.bottom});
  InvalidateRect(window_, nullptr, FALSE);
}

void MainWindow::FocusPage() {
  for (const BoundControl& bound : binding_->Controls()) {
    if (!app::IsNavigation(bound.info->member) && bound.window != nullptr &&
        bound.browser == nullptr && (form_.*bound.info->member).visible &&
        IsWindowEnabled(bound.window) != 0 &&
        (GetWindowLongPtrW(bound.window, GWL_STYLE) & WS_TABSTOP) != 0) {
      focus_ = bound.window;
      break;
    }
  }
  if (focus_ == nullptr || IsWindowVisible(focus_) == 0) {
    focus_ = binding_->Window(&Form1::cmdinicio);
  }
  if (GetActiveWindow() == window_) {
    SetFocus(focus_);
  }
}

void MainWindow::Paint() {
  const BufferedPaint paint(window_);
  FillRect(paint.get(), &paint.area(), theme_.windowBrush.get());
  const Colours& c = theme_.colours;
  for (const Frame& frame : frames_) {
    const bool focus = frame.field != nullptr && GetFocus() == frame.field;
    const COLORREF edge = focus ? c.accent : c.border;
    switch (frame.kind) {
      case Frame::kBar:
        FillRect(paint.get(), &frame.box, theme_.cardBrush.get());
        break;
      case Frame::kCard:
        RoundedBox(paint.get(), frame.box, theme_.Px(8), c.card, c.border, theme_.Px(1));
        break;
      case Frame::kField:
        RoundedBox(paint.get(), frame.box, theme_.Px(kRadius), c.card, edge,
                   theme_.Px(focus ? 2 : 1));
        break;
      case Frame::kDisplay:
        RoundedBox(paint.get(), frame.box, theme_.Px(10), c.displayGround,
                   focus ? c.accent : c.displayFaint, theme_.Px(2));
        break;
    }
  }
}

LRESULT MainWindow::ColourOf(HDC context, HWND control, UINT message) const {
  const auto is = [&](app::Control Form1::*member) { return binding_->Window(member) == control; };
  COLORREF ink = theme_.colours.text;
  if (control == parts_.composerCheck) {
    ink = ColourOfVerdict(form_.composerCheck.verdict, theme_);
  } else if (control == parts_.rtttlCheck) {
    ink = ColourOfVerdict(form_.rtttlCheck.verdict, theme_);
  } else if (is(&Form1::lblMsg)) {
    ink = theme_.colours.bad;
  } else if (is(&Form1::lblporfacomprueba)) {
    ink = theme_.colours.muted;
  }
  const BoundControl* bound = binding_->Find(control);
  const bool label =
      message == WM_CTLCOLORSTATIC && (bound == nullptr || bound->look == Look::kLabel);
  // Labels stand on a card or on the window, all else on a ground of its own.
  RECT place{};
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&place), 2);
  const bool onCard = !label || std::ranges::any_of(frames_, [&place](const Frame& frame) {
    return frame.kind == Frame::kCard && PtInRect(&frame.box, {place.left, place.top}) != 0;
  });
  SetTextColor(context, ink);
  SetBkColor(context, onCard ? theme_.colours.card : theme_.colours.window);
  return reinterpret_cast<LRESULT>(onCard ? theme_.cardBrush.get() : theme_.windowBrush.get());
}

void MainWindow::SetFonts() {
  for (const auto member : kTitles) {
    SetFont(binding_->Window(member), theme_.title);
  }
  for (const auto member : kSmallLabels) {
    SetFont(binding_->Window(member), theme_.small);
  }
  SetFont(parts_.optionsTitle, theme_.title);
  SetFont(parts_.optionsSentence, theme_.body);
  for (const HWND label : {parts_.beats, parts_.composerCheck, parts_.rtttlCheck}) {
    SetFont(label, label == parts_.beats ? theme_.body : theme_.small);
  }
  ApplyTheme(parts_.size, theme_);
}

void MainWindow::ChangeTheme(UINT dotsPerInch) {
  theme_ = Theme(dotsPerInch);
  ApplyTheme(window_, theme_);
  binding_->ThemeChanged();
  SetFonts();
  layout_.clear();
  LayOutPage();
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void MainWindow::AddTooltips() {
  const HWND tips = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                                    WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0, window_,
                                    nullptr, GetModuleHandleW(nullptr), nullptr);
  const auto add = [&](HWND window, std::string_view words) {
    std::wstring text = platform::ToWide(words);
    TTTOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = window_;
    tool.uId = reinterpret_cast<UINT_PTR>(window);
    tool.lpszText = text.data();
    if (window != nullptr && !text.empty()) {
      SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    }
  };
  for (const BoundControl& bound : binding_->Controls()) {
    add(bound.window, bound.info->help);
  }
  add(parts_.phone, words::kChoosePhone);
  add(parts_.size, words::kTextSize);
  for (std::size_t i = 0; i < app::kKeyCount; ++i) {
    add(parts_.keys->windows()[i], app::ComposerKeys()[i].help);
  }
}

// ---- Waiting and sounding -----------------------------------------------------------------------

void MainWindow::DrawBusy() {
  SetCursor(LoadCursorW(nullptr, program_.busy ? IDC_WAIT : IDC_ARROW));
  if (program_.busy) {
    Draw();
  }
  parts_.busy->SetBusy(program_.busy);
  Wait();
}

void MainWindow::Wait() {
  const bool before = std::exchange(pumping_, true);
  parts_.busy->Step();
  platform::PumpPaint([this](const MSG& input) { GiveUpBy(input); });
  MSG message;
  // The task bar closes the window by a message that is no input.
  for (const UINT closing : {UINT{WM_SYSCOMMAND}, UINT{WM_CLOSE}}) {
    if (program_.busy && PeekMessageW(&message, window_, closing, closing, PM_REMOVE) != 0) {
      DispatchMessageW(&message);
    }
  }
  pumping_ = before;
}

void MainWindow::GiveUpBy(const MSG& input) {
  if (input.message == WM_KEYDOWN && input.wParam == VK_ESCAPE) {
    app::GiveUpRequest(program_);
  } else if ((input.message == WM_SYSKEYDOWN && input.wParam == VK_F4) ||
             (input.message == WM_NCLBUTTONUP && input.wParam == HTCLOSE)) {
    Close();
  }
}

void MainWindow::Navigate(platform::WebViewId view, std::string_view url) {
  binding_->Of(view == platform::WebViewId::kNavbanner ? &Form1::navbanner : &Form1::WebBrowser1)
      .browser->Navigate(url);
}

void MainWindow::FollowMelody() {
  const std::optional<double> position = position_ ? position_() : std::nullopt;
  for (const MelodyPart& melody : parts_.Melodies()) {
    melody.view->SetPosition(form_.sounding == melody.what ? position.value_or(-1) : -1);
  }
}

// Away from the drawing that is followed.
void MainWindow::PlaceBox(HWND box) const {
  const auto melodies = parts_.Melodies();
  const auto sounding = std::ranges::find(melodies, form_.sounding, &MelodyPart::what);
  if (sounding == melodies.end()) {
    return;
  }
  RECT window{}, drawing{}, size{};
  GetWindowRect(window_, &window);
  GetWindowRect(sounding->view->window(), &drawing);
  GetWindowRect(box, &size);
  const LONG width = size.right - size.left, height = size.bottom - size.top;
  const bool drawnAbove = drawing.top + drawing.bottom < window.top + window.bottom;
  const LONG edge = theme_.Px(3 * kGrid);
  SetWindowPos(box, nullptr, (window.left + window.right - width) / 2,
               drawnAbove ? window.bottom - height - edge : window.top + 2 * edge, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// ---- What the window does by itself -------------------------------------------------------------

void MainWindow::CopyResult() {
  PutOnClipboard(window_, form_.textresultado.text);
  SetText(parts_.copy, words::kCopied);
  SetTimer(window_, kCopiedTimer, kCopiedMs, nullptr);
}

void MainWindow::SaveResult() {
  Run([this] {
    std::wstring file = platform::ToWide(form_.SuggestedResultName());
    file.resize(kLongestPath);
    std::wstring filter = platform::ToWide(words::kFilterText);
    filter += std::wstring(L"\0*.txt\0*.*\0*.*\0", 15);
    const std::wstring title = platform::ToWide(words::kSaveAs);
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = window_;
    dialog.lpstrFilter = filter.c_str();
    dialog.nFilterIndex = 2;
    dialog.lpstrFile = file.data();
    dialog.nMaxFile = static_cast<DWORD>(file.size());
    dialog.lpstrTitle = title.c_str();
    dialog.Flags = OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR | OFN_HIDEREADONLY;
    if (GetSaveFileNameW(&dialog) == 0) {
      return;
    }
    if (!core::SkipErrors([&] { files::WriteBytes(file.c_str(), form_.textresultado.text); })) {
      platform::MsgBox(words::kNotSaved, platform::Icon::kExclamation);
    }
  });
}

void MainWindow::PressKey(std::string_view key, bool held) {
  const HWND notes = binding_->Window(&Form1::txtmelodiacompo);
  DWORD from = 0, to = 0;
  SendMessageW(notes, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
  const app::ComposerText before{TextOf(notes), to};
  const app::ComposerText after = app::PressKey(before, key, held);
  if (after == before) {
    return;
  }
  SendMessageW(notes, EM_SETSEL, 0, -1);
  SendMessageW(notes, EM_REPLACESEL, TRUE,
               reinterpret_cast<LPARAM>(platform::ToWide(after.text).c_str()));
  SendMessageW(notes, EM_SETSEL, after.cursor, static_cast<LPARAM>(after.cursor));
}

}  // namespace tonadex::shell
