#include "shell/win32/main_window.h"

#include <commctrl.h>
#include <imm.h>
#include <shellapi.h>
#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "app/layout.h"
#include "app/words.h"
#include "platform/win32/send.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"
#include "shell/win32/messages.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

namespace words = app::words;
using app::Event;
using app::Look;
using platform::Send;

constexpr wchar_t kClass[] = L"TonadexForm1";
constexpr UINT_PTR kFollowTimer = 1;

struct NamedKey {
  std::string_view name;
  WPARAM key;
};
constexpr NamedKey kNamedKeys[] = {{"Esc", VK_ESCAPE}, {"Return", VK_RETURN},  {"Space", VK_SPACE},
                                   {"Left", VK_LEFT},  {"Right", VK_RIGHT},    {"Home", VK_HOME},
                                   {"End", VK_END},    {"Backspace", VK_BACK}, {"Del", VK_DELETE}};

void RedrawAll(HWND window) {
  RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

WPARAM KeyOf(std::string_view name) {
  const auto named = std::ranges::find(kNamedKeys, name, &NamedKey::name);
  return named != std::end(kNamedKeys) ? named->key
         : name.size() == 1            ? static_cast<WPARAM>(name[0])
                                       : static_cast<WPARAM>(VK_F1 + name[1] - '1');
}

// Whether a key is one of a row's shortcuts, such as "Ctrl+1" or "Left Backspace".
bool IsShortcut(std::string_view shortcuts, bool control, WPARAM key) {
  constexpr std::string_view kCtrl = "Ctrl+";
  while (!shortcuts.empty()) {
    const std::size_t end = std::min(shortcuts.find(' '), shortcuts.size());
    const std::string_view each = shortcuts.substr(0, end);
    const bool withControl = each.starts_with(kCtrl);
    if (withControl == control && KeyOf(each.substr(withControl ? kCtrl.size() : 0)) == key) {
      return true;
    }
    shortcuts.remove_prefix(std::min(end + 1, shortcuts.size()));
  }
  return false;
}

// Whether the window with the focus wants a key for itself: a text box what it types and moves
// with, a button what presses it.
bool KeepsKey(HWND focus, WPARAM key) {
  if (key == VK_ESCAPE || (key >= VK_F1 && key <= VK_F24)) {
    return false;
  }
  const auto code = Send(focus, WM_GETDLGCODE);
  return (code & DLGC_HASSETSEL) != 0 ||
         ((code & DLGC_BUTTON) != 0 && (key == VK_SPACE || key == VK_RETURN));
}

// A menu's entry with its key as keyboards name it.
std::wstring EntryText(const app::MenuItem& item) {
  const std::string_view key = item.shortcut == "Del" ? "Supr" : item.shortcut;
  return platform::ToWide(item.caption) + (key.empty() ? L"" : L"\t" + platform::ToWide(key));
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
  window_ = MakeTopWindow(kClass, words::kWindowTitle, WS_OVERLAPPEDWINDOW | WS_VSCROLL,
                          {theme_.Px(kFirstWidth), theme_.Px(kFirstHeight)});
  ApplyTheme(window_, theme_);
  RestorePlace();
  binding_ = std::make_unique<Binding>(form_, window_, theme_,
                                       [this](const Binding::Handler& handler) { Run(handler); });
  AddTooltips();
  FilterTempo();
  DragAcceptFiles(window_, TRUE);
  SetObject(window_, this);  // last: from here on messages use the members

  hooks_.draw = [this] { Draw(); };
  boxes_.window = window_;
  boxes_.opening = [this] { Draw(); };
  boxes_.showInWindow = [this](const core::Message& message) { return ShowPlaying(message); };
  program_.window = reinterpret_cast<std::intptr_t>(window_);
  program_.busyChanged = [this] { DrawBusy(); };
}

MainWindow::~MainWindow() {
  program_.busyChanged = nullptr;
  hooks_.draw = nullptr;
  boxes_ = {};
  SetObject<MainWindow>(window_, nullptr);
  binding_.reset();  // the web controls must be closed before their parent is destroyed
  DestroyWindow(window_);
}

void MainWindow::Load() {
  app::RunHandler(program_, [this] { form_.Form_Load(); });
  loaded_ = true;
  Draw();
  ShowWindow(window_, form_.windowPlace.maximised ? SW_SHOWMAXIMIZED : SW_SHOWDEFAULT);
  FocusPage();
}

void MainWindow::RestorePlace() {
  const app::Rect& known = form_.windowPlace.rect;
  if (known.width == 0) {
    return;
  }
  const RECT box{known.left, known.top, known.left + known.width, known.top + known.height};
  auto screen = Sized<MONITORINFO>();
  GetMonitorInfoW(MonitorFromRect(&box, MONITOR_DEFAULTTONEAREST), &screen);
  const RECT& area = screen.rcWork;
  const app::Rect areas[] = {{area.left, area.top, area.right - area.left, area.bottom - area.top}};
  const app::Rect place = app::OnScreen(known, areas);
  SetWindowPos(window_, nullptr, place.left, place.top, place.width, place.height,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

// The model writes it down by its timer, which drawing starts.
void MainWindow::NotePlace() {
  WINDOWPLACEMENT place{};
  place.length = sizeof place;
  GetWindowPlacement(window_, &place);
  const bool minimised = place.showCmd == SW_SHOWMINIMIZED;
  if (!loaded_ || minimised) {
    return;
  }
  const RECT& box = place.rcNormalPosition;
  form_.windowPlace = {{box.left, box.top, box.right - box.left, box.bottom - box.top},
                       place.showCmd == SW_SHOWMAXIMIZED};
  if (!form_.SavesSoon()) {
    Run([] {});
  }
}

void MainWindow::Run(const Binding::Handler& handler) {
  if (!loaded_ || pumping_) {
    return;
  }
  // Drawing too: no exception may pass through the system's code, which calls this.
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
      binding_->Command(LOWORD(wide), HIWORD(wide));
      return 0;
    case WM_CONTEXTMENU:
      if (const BoundControl* list = binding_->Find(reinterpret_cast<HWND>(wide));
          list != nullptr && !list->info->menu.empty()) {
        ShowMenu(*list, {GET_X_LPARAM(data), GET_Y_LPARAM(data)});
        return 0;
      }
      return std::nullopt;
    case WM_DROPFILES:
      Open(DroppedFiles(reinterpret_cast<HDROP>(wide)));
      return 0;
    case WM_NOTIFY:
      return TellTip(*reinterpret_cast<NMHDR*>(data));
    case WM_TIMER:
      wide == kFollowTimer ? FollowMelody() : binding_->Tick(wide);
      return 0;
    case kBannerLeft:
      binding_->Raise(binding_->The(Look::kBanner), Event::kNavigation);
      return 0;
    case WM_HSCROLL:
      if (const BoundControl* slider = binding_->Find(reinterpret_cast<HWND>(data))) {
        binding_->Raise(*slider, Event::kChange);
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
    case WM_CLOSE:
    case WM_QUERYENDSESSION:
      Close();
      return TRUE;
    default:
      return HandleLook(message, wide, data);
  }
}

// Messages about size and look.
std::optional<LRESULT> MainWindow::HandleLook(UINT message, WPARAM wide, LPARAM data) {
  switch (message) {
    case WM_DRAWITEM:
      return ReflectDraw(data);
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
      return ColourOf(reinterpret_cast<HDC>(wide), reinterpret_cast<HWND>(data), message);
    case WM_VSCROLL:
      ScrollBy(wide);
      return 0;
    case WM_MOUSEWHEEL:
      ScrollTo(scrolled_ - GET_WHEEL_DELTA_WPARAM(wide) * theme_.control / WHEEL_DELTA);
      return 0;
    case WM_SIZE:
      LayOutPage();
      NotePlace();
      return 0;
    case WM_MOVE:
      NotePlace();
      return 0;
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(data)->ptMinTrackSize = {
          std::min(theme_.Px(kLeastWidth), GetSystemMetrics(SM_CXMAXIMIZED)),
          std::min(theme_.Px(kLeastHeight), GetSystemMetrics(SM_CYMAXIMIZED))};
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

void MainWindow::Close() {
  if (pumping_ && !program_.busy) {
    program_.closing = true;  // the request has ended, its handler has not
  } else {
    form_.Form_QueryUnload();
  }
}

// ---- Keyboard -----------------------------------------------------------------------------------

bool MainWindow::Translate(MSG& message) {
  if (message.hwnd != window_ && IsChild(window_, message.hwnd) == 0) {
    return false;
  }
  if ((message.message == WM_KEYDOWN && Shortcut(message)) ||
      (message.message == WM_SYSCHAR && GoToField(message.wParam))) {
    return true;
  }
  for (const BoundControl& bound : binding_->Controls()) {
    if (bound.browser != nullptr && bound.browser->Translate(message)) {
      return true;
    }
  }
  const bool taken = IsDialogMessageW(window_, &message) != 0;
  if (message.message == WM_KEYDOWN && message.wParam == VK_TAB) {
    ShowFocus();
  }
  return taken;
}

bool MainWindow::Shortcut(const MSG& message) {
  // AltGr, which types characters, is reported as Ctrl and Alt together.
  const bool control = GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0;
  const bool escape = message.wParam == VK_ESCAPE;
  if (IsShortcut(app::kOpenKeys, control, message.wParam)) {
    Run([this] { form_.addButton_Click(); });
    return true;
  }
  for (const BoundControl& bound : binding_->Controls()) {
    if (IsShortcut(bound.info->shortcut, control, message.wParam) &&
        IsWindowVisible(bound.window) != 0 && IsWindowEnabled(bound.window) != 0 &&
        (control || !KeepsKey(GetFocus(), message.wParam))) {
      bound.info->look == Look::kLine ? Focus(bound.window) : binding_->Raise(bound, Event::kClick);
      return true;
    }
    for (const app::MenuItem& item : bound.info->menu) {
      if (IsShortcut(item.shortcut, control, message.wParam) && GetFocus() == bound.window &&
          form_.Allows(*bound.info, item)) {
        Run([&] { (form_.*item.handler)(); });
        return true;
      }
    }
    if (escape && bound.info->look == Look::kNavigation && (form_.*bound.info->member).checked) {
      SetFocus(bound.window);
    }
  }
  return escape || (message.wParam == VK_RETURN && EnterKey()) ||
         (message.wParam == VK_DOWN && GoToList());
}

// The Down key moves from a line to the list below it.
bool MainWindow::GoToList() {
  const BoundControl* line = binding_->Find(GetFocus());
  if (line == nullptr || line->info->below == nullptr) {
    return false;
  }
  const BoundControl& list = binding_->Of(line->info->below);
  SetFocus(list.window);
  if (list.list->Selected() < 0) {
    list.list->SelectAt({1, 1});
  }
  return true;
}

// The system would focus the next window in tab order, which need not be the label's field.
bool MainWindow::GoToField(WPARAM mnemonic) {
  const auto upper = [](WPARAM character) {
    return CharUpperW(reinterpret_cast<wchar_t*>(LOWORD(character)));
  };
  for (const BoundControl& bound : binding_->Controls()) {
    const std::wstring words = WindowText(bound.window);
    const std::size_t mark = words.find(L'&');
    if (bound.info->field != nullptr && IsWindowVisible(bound.window) != 0 &&
        mark != std::wstring::npos && upper(words[mark + 1]) == upper(mnemonic)) {
      SetFocus(binding_->Window(bound.info->field));
      return true;
    }
  }
  return false;
}

// ---- The menu on a list's row -------------------------------------------------------------------

// `place` on the screen; both -1 for the keyboard's menu key.
void MainWindow::ShowMenu(const BoundControl& list, POINT place) {
  if (form_.paginaactual != list.info->menuPage) {
    return;
  }
  if (place.x == -1 && place.y == -1) {
    place = list.list->MenuPlace();
  } else {
    POINT inside = place;
    ScreenToClient(list.window, &inside);
    list.list->SelectAt(inside);
  }
  const HMENU menu = CreatePopupMenu();
  UINT id = 0;
  for (const app::MenuItem& item : list.info->menu) {
    const UINT state = item.caption.empty()             ? MF_SEPARATOR
                       : form_.Allows(*list.info, item) ? 0
                                                        : MF_GRAYED;
    AppendMenuW(menu, state, ++id, EntryText(item).c_str());
  }
  const int chosen =
      TrackPopupMenu(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, place.x, place.y, 0, window_, nullptr);
  DestroyMenu(menu);
  if (chosen > 0) {
    Run([&] { (form_.*list.info->menu[static_cast<std::size_t>(chosen) - 1].handler)(); });
  }
}

std::vector<std::filesystem::path> DroppedFiles(HDROP dropped) {
  std::vector<std::filesystem::path> paths;
  for (UINT i = 0, count = DragQueryFileW(dropped, 0xFFFFFFFF, nullptr, 0); i < count; ++i) {
    std::wstring path(DragQueryFileW(dropped, i, nullptr, 0) + std::size_t{1}, L'\0');
    DragQueryFileW(dropped, i, path.data(), static_cast<UINT>(path.size()));
    path.pop_back();
    paths.emplace_back(path);
  }
  DragFinish(dropped);
  return paths;
}

void MainWindow::Open(const std::vector<std::filesystem::path>& files) {
  if (!files.empty()) {
    Run([&] { form_.FilesDropped(files); });
  }
}

bool MainWindow::EnterKey() {
  const HWND focus = GetFocus();
  const BoundControl* bound = binding_->Find(focus);
  if ((Send(focus, WM_GETDLGCODE) & DLGC_BUTTON) != 0) {
    Send(focus, BM_CLICK);
    return true;
  }
  for (const Event event : {Event::kEnter, Event::kActivate}) {
    if (bound != nullptr && app::HandlerOf(*bound->info, event) != nullptr) {
      binding_->Raise(*bound, event);
      return true;
    }
  }
  // Only areas take line breaks; elsewhere Enter does nothing.
  return bound == nullptr || bound->info->look != Look::kArea;
}

// The model filters each typed character before the tempo box gets it.
void MainWindow::FilterTempo() {
  auto info = Sized<COMBOBOXINFO>();
  GetComboBoxInfo(binding_->The(Look::kComboBox).window, &info);
  ImmAssociateContext(info.hwndItem, nullptr);  // an input method would bypass the filter
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
    Send(window_, WM_SETREDRAW, FALSE);
  }
  form_.Refresh();
  binding_->Draw();
  scrolled_ = newPage ? 0 : scrolled_;
  LayOutPage();
  pageDrawn_ = form_.paginaactual;
  if (frozen) {
    Send(window_, WM_SETREDRAW, TRUE);
    RedrawAll(window_);
  }
  const HWND focus = GetFocus();
  if (newPage || (focus != nullptr && IsChild(window_, focus) != 0 &&
                  (IsWindowVisible(focus) == 0 || IsWindowEnabled(focus) == 0))) {
    FocusPage();
  }
  if (const auto member = std::exchange(form_.focusNext, nullptr)) {
    Focus(binding_->Window(member));
  }
}

// Its whole text is selected, to be typed over.
void MainWindow::Focus(HWND window) {
  constexpr LONG_PTR kTakes = WS_TABSTOP | WS_VISIBLE;
  if ((GetWindowLongPtrW(window, GWL_STYLE) & (kTakes | WS_DISABLED)) != kTakes) {
    return;
  }
  focus_ = window;
  if (GetActiveWindow() == window_) {
    SetFocus(window);
    if (binding_->Find(window)->info->look == Look::kLine) {
      SendMessageW(window, EM_SETSEL, 0, -1);
    }
  }
}

void MainWindow::LayOutPage() {
  if (!loaded_ || layingOut_) {
    return;
  }
  layingOut_ = true;  // a scroll bar that comes or goes changes the size
  RECT area = ClientArea(window_);
  const LONG needed = NeededHeight(*binding_, theme_, form_, static_cast<int>(area.right));
  scrolled_ = std::clamp(scrolled_, 0, static_cast<int>(std::max(LONG{0}, needed - area.bottom)));
  auto bar = Sized<SCROLLINFO>();
  bar.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  bar.nMax = static_cast<int>(needed) - 1;
  bar.nPage = static_cast<UINT>(area.bottom);
  bar.nPos = scrolled_;
  SetScrollInfo(window_, SB_VERT, &bar, TRUE);
  area = ClientArea(window_);
  auto frames = LayOut(*binding_, theme_, form_, {area.right, area.bottom}, scrolled_);
  layingOut_ = false;
  if (frames != frames_) {
    frames_ = std::move(frames);
    // What lies on a card has its ground.
    RedrawAll(window_);
  }
  DrawHints();
  const int size = binding_->The(Look::kDisplay).display->PixelSize();
  Send(binding_->The(Look::kSlider).window, TBM_SETPOS, TRUE, size);
}

void MainWindow::ScrollTo(int top) {
  scrolled_ = top;
  LayOutPage();
  RedrawAll(window_);
}

void MainWindow::ScrollBy(WPARAM request) {
  auto bar = Sized<SCROLLINFO>();
  bar.fMask = SIF_ALL;
  GetScrollInfo(window_, SB_VERT, &bar);
  const int line = theme_.control, page = static_cast<int>(bar.nPage) - line;
  switch (LOWORD(request)) {
    case SB_LINEUP:
      return ScrollTo(scrolled_ - line);
    case SB_LINEDOWN:
      return ScrollTo(scrolled_ + line);
    case SB_PAGEUP:
      return ScrollTo(scrolled_ - page);
    case SB_PAGEDOWN:
      return ScrollTo(scrolled_ + page);
    case SB_THUMBTRACK:
      return ScrollTo(bar.nTrackPos);
    default:
      return;
  }
}

// Scrolls to the control that has the focus.
void MainWindow::ShowFocus() {
  const BoundControl* bound = binding_->Find(GetFocus());
  if (bound == nullptr) {
    return;
  }
  const RECT area = ClientArea(window_);
  if (const int hidden =
          HiddenPart(*binding_, theme_, form_, {area.right, area.bottom}, scrolled_, *bound)) {
    ScrollTo(scrolled_ + hidden);
  }
}

void MainWindow::FocusPage() {
  for (const auto member : app::PageControls(form_.paginaactual)) {
    const HWND window = binding_->Window(member);
    if (app::InfoOf(member).look != Look::kCard &&
        (GetWindowLongPtrW(window, GWL_STYLE) & (WS_TABSTOP | WS_VISIBLE | WS_DISABLED)) ==
            (WS_TABSTOP | WS_VISIBLE)) {
      focus_ = window;
      break;
    }
  }
  if (focus_ == nullptr || IsWindowVisible(focus_) == 0) {
    focus_ = binding_->The(Look::kNavigation).window;
  }
  if (GetActiveWindow() == window_) {
    SetFocus(focus_);
  }
}

void MainWindow::Paint() {
  const BufferedPaint paint(window_);
  const Colours& c = theme_.colours;
  Fill(paint.get(), paint.area(), c.window);
  for (const Frame& frame : frames_) {
    const bool focus = frame.field != nullptr && GetFocus() == frame.field;
    const COLORREF edge = focus ? c.accent : c.border;
    RECT box = frame.Box();
    const int saved = SaveDC(paint.get());
    const RECT view = AsRect(frame.view);
    IntersectClipRect(paint.get(), view.left, view.top, view.right, view.bottom);
    switch (frame.kind) {
      case Frame::kBar:
        Fill(paint.get(), box, c.card);
        box.top = std::exchange(box.bottom, box.bottom + theme_.Px(1));
        Fill(paint.get(), box, c.border);
        break;
      case Frame::kCard:
        RoundedBox(paint.get(), box, theme_.Px(8), c.card, c.border, theme_.Px(1));
        break;
      case Frame::kField:
        RoundedBox(paint.get(), box, theme_.Px(kRadius), c.card, edge, theme_.Px(focus ? 2 : 1));
        break;
      case Frame::kDisplay:
        RoundedBox(paint.get(), box, theme_.Px(10), c.displayGround,
                   focus ? c.accent : c.displayEdge, theme_.Px(2));
        break;
    }
    RestoreDC(paint.get(), saved);
  }
}

LRESULT MainWindow::ColourOf(HDC context, HWND control, UINT message) const {
  const BoundControl* bound = binding_->Find(control);
  const bool label = bound != nullptr && bound->info->look == Look::kLabel;
  const Colours& colours = theme_.colours;
  const COLORREF inks[] = {colours.text, colours.muted, colours.good, colours.bad};
  const COLORREF ink =
      label ? inks[static_cast<std::size_t>((form_.*bound->info->member).tone)] : colours.text;
  // Fields have the card's background, everything else that of its bar, card or window.
  const bool field = !label && message != WM_CTLCOLORBTN &&
                     (bound == nullptr || bound->info->look != Look::kSlider);
  const RECT place = PlaceIn(window_, control);
  const bool onCard = field || std::ranges::any_of(frames_, [&place](const Frame& frame) {
                        const RECT box = frame.Box();
                        return (frame.kind == Frame::kCard || frame.kind == Frame::kBar) &&
                               PtInRect(&box, {place.left, place.top}) != 0;
                      });
  SetTextColor(context, ink);
  SetBkColor(context, onCard ? theme_.colours.card : theme_.colours.window);
  return reinterpret_cast<LRESULT>(onCard ? theme_.cardBrush.get() : theme_.windowBrush.get());
}

void MainWindow::ChangeTheme(UINT dotsPerInch) {
  theme_ = Theme(dotsPerInch);
  ApplyTheme(window_, theme_);
  binding_->ThemeChanged();
  LayOutPage();
  RedrawAll(window_);
}

TTTOOLINFOW MainWindow::Tool(UINT_PTR id, UINT flags) const {
  auto tool = Sized<TTTOOLINFOW>();
  tool.uFlags = TTF_SUBCLASS | flags;
  tool.hwnd = window_;
  tool.uId = id;
  return tool;
}

void MainWindow::AddTooltips() {
  tips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                          WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0, window_, nullptr,
                          GetModuleHandleW(nullptr), nullptr);
  const auto add = [this](HWND window, wchar_t* text) {
    TTTOOLINFOW tool = Tool(reinterpret_cast<UINT_PTR>(window), TTF_IDISHWND);
    tool.lpszText = text;
    Send(tips_, TTM_ADDTOOLW, 0, &tool);
  };
  const auto addWords = [&add](HWND window, std::string_view words) {
    if (window != nullptr && !words.empty()) {
      add(window, platform::ToWide(words).data());
    }
  };
  for (const BoundControl& bound : binding_->Controls()) {
    addWords(bound.window, bound.info->help);
    if (bound.list != nullptr) {
      bound.list->SetTips(tips_);
      add(bound.window, LPSTR_TEXTCALLBACKW);
    }
  }
  binding_->The(Look::kKeys).keys->ForEachKey(addWords);
}

// The row under the mouse, in the list whose tooltip asks.
std::optional<LRESULT> MainWindow::TellTip(NMHDR& about) {
  const BoundControl* bound = binding_->Find(reinterpret_cast<HWND>(about.idFrom));
  if (about.code != TTN_GETDISPINFOW || bound == nullptr || bound->list == nullptr) {
    return std::nullopt;
  }
  tip_ = bound->list->HelpUnderMouse();
  reinterpret_cast<NMTTDISPINFOW&>(about).lpszText = tip_.data();
  return 0;
}

// ---- Waiting and sounding -----------------------------------------------------------------------

void MainWindow::DrawBusy() {
  SetCursor(LoadCursorW(nullptr, program_.busy ? IDC_WAIT : IDC_ARROW));
  Draw();
  Wait();
}

void MainWindow::Wait() {
  const bool before = std::exchange(pumping_, true);
  InvalidateRect(binding_->The(Look::kBusyLine).window, nullptr, FALSE);
  platform::PumpPaint([this](const MSG& input) { GiveUpBy(input); });
  MSG message;
  // The task bar closes the window by a posted message, which is not input.
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

// A disabled window hears of no mouse; its parent does, and says why it is disabled.
void MainWindow::DrawHints() {
  for (const BoundControl& bound : binding_->Controls()) {
    const app::Control& control = form_.*bound.info->member;
    if (control.whyDisabled.empty()) {
      continue;
    }
    TTTOOLINFOW tool = Tool(static_cast<UINT_PTR>(bound.Id()));
    Send(tips_, TTM_DELTOOLW, 0, &tool);
    if (!control.enabled && control.visible) {
      std::wstring text = platform::ToWide(control.whyDisabled);
      tool.lpszText = text.data();
      tool.rect = PlaceIn(window_, bound.window);
      Send(tips_, TTM_ADDTOOLW, 0, &tool);
    }
  }
}

void MainWindow::Navigate(app::WebViewId view, std::string_view url) {
  binding_->The(view == app::WebViewId::kNavbanner ? Look::kBanner : Look::kPage)
      .browser->Navigate(url);
}

// Returns when the bar was dismissed. False for a message that is to be a box.
bool MainWindow::ShowPlaying(const core::Message& message) {
  const auto button = loaded_ ? form_.ShowPlaying(message) : nullptr;
  if (button == nullptr) {
    return false;
  }
  const HWND focus = GetFocus(), stop = binding_->Window(button);
  Draw();
  SetFocus(stop);
  SetTimer(window_, kFollowTimer, kFollowMs, nullptr);
  MSG next;
  while (form_.playing()) {
    if (GetMessageW(&next, nullptr, 0, 0) <= 0) {  // the program ends
      PostQuitMessage(static_cast<int>(next.wParam));
      form_.stopButton_Click();
    } else if (!BarInput(next, stop)) {
      DispatchMessageW(&next);
    }
  }
  KillTimer(window_, kFollowTimer);
  FollowMelody();
  Draw();
  if (focus != nullptr && IsWindowVisible(focus) != 0) {
    SetFocus(focus);
  }
  return true;
}

// Of the input in the window the bar takes the keys that dismiss it and the mouse on its button;
// the rest is lost. True when the message is done.
bool MainWindow::BarInput(const MSG& message, HWND stop) {
  if (message.hwnd != window_ && IsChild(window_, message.hwnd) == 0) {
    return false;
  }
  const bool key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
  if (message.message == WM_KEYDOWN &&
      (message.wParam == VK_RETURN || message.wParam == VK_ESCAPE || message.wParam == VK_SPACE)) {
    Run([this] { form_.stopButton_Click(); });
  } else if (message.message == WM_SYSKEYDOWN && message.wParam == VK_F4) {
    Close();
  }
  const bool mouse = message.message >= WM_MOUSEFIRST && message.message <= WM_MOUSELAST;
  return key || (mouse && message.message != WM_MOUSEMOVE && message.hwnd != stop);
}

void MainWindow::FollowMelody() {
  const double position = position_ ? position_().value_or(0) : 0;
  if (form_.playing() && form_.FollowPlaying(position)) {
    binding_->Draw();
    LayOutPage();
  }
  for (const BoundControl& bound : binding_->Controls()) {
    if (bound.view != nullptr && bound.info->sounds != app::Sounding::kNothing) {
      const bool sounds = form_.playing() && form_.sounding == bound.info->sounds;
      bound.view->SetPosition(sounds ? position : -1);
    }
  }
}

}  // namespace tonadex::shell
