#include "shell/win32/splash.h"

#include <algorithm>
#include <utility>

#include "app/words.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"

namespace tonadex::shell {
namespace {

constexpr wchar_t kClass[] = L"TonadexInicio";
constexpr UINT_PTR kTimer = 1;
constexpr COLORREF kGround = SystemColour(kSplash.ground), kInk = SystemColour(kSplash.ink);

}  // namespace

Splash::Splash(app::Program& program, std::function<void()> finished)
    : program_(program),
      model_(program),
      finished_(std::move(finished)),
      theme_(GetDpiForSystem()),
      pattern_(app::SplashBars()) {
  const SIZE size{theme_.Px(kSplash.width), theme_.Px(kSplash.height)};
  RegisterKind(kClass, ObjectProcedure<Splash>, 0, IDC_APPSTARTING);
  window_ = MakeTopWindow(kClass, app::words::kWindowTitle, WS_POPUP, size);
  SetWindowPos(window_, nullptr, (GetSystemMetrics(SM_CXSCREEN) - size.cx) / 2,
               (GetSystemMetrics(SM_CYSCREEN) - size.cy) / 2, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  SetObject(window_, this);
}

Splash::~Splash() {
  Close();
}

void Splash::Start() {
  app::RunHandler(program_, [this] { model_.Form_Load(reinterpret_cast<std::intptr_t>(window_)); });
  ShowWindow(window_, SW_SHOW);
  Draw();
}

void Splash::Close() {
  if (window_ != nullptr) {
    DestroyWindow(std::exchange(window_, nullptr));
  }
}

void Splash::Tick() {
  app::RunHandler(program_, [this] { model_.Timer1_Timer(); });
  Draw();
  if (model_.finished) {
    finished_();
  }
}

void Splash::Draw() {
  if (model_.Timer().enabled) {
    SetTimer(window_, kTimer, model_.Timer().interval, nullptr);
  } else {
    KillTimer(window_, kTimer);
  }
  InvalidateRect(window_, nullptr, FALSE);
}

std::optional<LRESULT> Splash::Handle(UINT message, WPARAM, LPARAM) {
  if (message == WM_PAINT) {
    Paint();
    return 0;
  }
  if (message == WM_TIMER) {
    Tick();
    return 0;
  }
  return std::nullopt;
}

void Splash::Paint() {
  const BufferedPaint paint(window_);
  Fill(paint.get(), paint.area(), kGround);
  const double scale = theme_.dpi / 96.0;
  const auto pixels = [scale](const app::Box& box) {
    return RECT{static_cast<LONG>(box.x * scale), static_cast<LONG>(box.y * scale),
                static_cast<LONG>(box.right() * scale), static_cast<LONG>(box.bottom() * scale)};
  };
  for (const app::Box& bar : pattern_) {
    const int radius = static_cast<int>(std::min(bar.width, bar.height) / 2 * scale);
    RoundedBox(paint.get(), pixels(bar), radius, Blend(kInk, kGround, kSplash.pattern), 0, 0);
  }
  const auto words = [&](std::string_view text, const app::Box& place, const Font& font) {
    Words(paint.get(), platform::ToWide(text), pixels(place), font.get(), kInk,
          DT_LEFT | DT_WORDBREAK | DT_NOPREFIX);
  };
  const Font large(CreateFontW(-theme_.Px(52), 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE,
                               DEFAULT_CHARSET, 0, 0, CLEARTYPE_QUALITY, DEFAULT_PITCH,
                               L"Segoe UI"));
  words(app::words::kWindowTitle, {36, 36, 350, 68}, large);
  for (const auto& [name, label, place, type] : app::inicio::Lines()) {
    if ((model_.*label).visible) {
      words((model_.*label).caption, place, theme_.FontOf(type));
    }
  }
}

}  // namespace tonadex::shell
