#include "shell/win32/splash.h"

#include <algorithm>

#include "app/words.h"
#include "core/rtttl.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/drawing.h"

namespace tonadex::shell {
namespace {

constexpr wchar_t kClass[] = L"TonadexInicio";
constexpr int kWidth = 420, kHeight = 240;
constexpr UINT_PTR kTimer = 1;
constexpr COLORREF kGround = RGB(0x12, 0x50, 0x39), kInk = RGB(0xF2, 0xF8, 0xE9);

app::Drawing BuiltInMelody() {
  core::RTTTLMelody melody;
  core::InitMelody(melody, {});
  return app::MelodyDrawing(melody.Text);
}

}  // namespace

Splash::Splash(app::Program& program, std::function<void()> finished)
    : program_(program),
      model_(program),
      finished_(std::move(finished)),
      theme_(GetDpiForSystem()),
      pattern_(BuiltInMelody()) {
  WNDCLASSW kind{};
  kind.lpfnWndProc = WindowProcedure;
  kind.hInstance = GetModuleHandleW(nullptr);
  kind.hCursor = LoadCursorW(nullptr, IDC_APPSTARTING);
  kind.lpszClassName = kClass;
  RegisterClassW(&kind);
  const int width = theme_.Px(kWidth), height = theme_.Px(kHeight);
  window_ = CreateWindowExW(0, kClass, platform::ToWide(app::words::kWindowTitle).c_str(), WS_POPUP,
                            (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
                            (GetSystemMetrics(SM_CYSCREEN) - height) / 2, width, height, nullptr,
                            nullptr, kind.hInstance, nullptr);
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
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
  if (model_.Timer1.enabled) {
    SetTimer(window_, kTimer, model_.Timer1.interval, nullptr);
  } else {
    KillTimer(window_, kTimer);
  }
  InvalidateRect(window_, nullptr, FALSE);
}

LRESULT CALLBACK Splash::WindowProcedure(HWND window, UINT message, WPARAM wide, LPARAM data) {
  auto* self = reinterpret_cast<Splash*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self != nullptr && message == WM_PAINT) {
    self->Paint();
    return 0;
  }
  if (self != nullptr && message == WM_TIMER) {
    self->Tick();
    return 0;
  }
  return DefWindowProcW(window, message, wide, data);
}

void Splash::Paint() {
  const BufferedPaint paint(window_);
  const Brush ground(CreateSolidBrush(kGround));
  FillRect(paint.get(), &paint.area(), ground.get());
  const double scale = theme_.dpi / 96.0, pixelsPerMs = 0.05 * scale;
  const int spread = std::max(1, pattern_.highest - pattern_.lowest);
  for (const app::DrawnNote& note : pattern_.notes) {
    const auto left = static_cast<LONG>(36 * scale + note.start * pixelsPerMs);
    if (note.pause || left > paint.area().right) {
      continue;
    }
    const auto top =
        static_cast<LONG>(scale * (216 - (note.pitch - pattern_.lowest) * 72.0 / spread));
    const auto width = static_cast<LONG>(std::max(4 * scale, note.length * pixelsPerMs - 3));
    RoundedBox(paint.get(), {left, top, left + width, top + theme_.Px(7)},
               std::min(theme_.Px(3), static_cast<int>(width / 2)), Blend(kInk, kGround, 0.22), 0,
               0);
  }
  const auto words = [&](const std::string& text, int top, int height, HFONT font) {
    Words(paint.get(), platform::ToWide(text),
          {theme_.Px(36), theme_.Px(top), theme_.Px(kWidth - 32), theme_.Px(top + height)}, font,
          kInk, DT_LEFT | DT_WORDBREAK | DT_NOPREFIX);
  };
  const Font large(CreateFontW(-theme_.Px(52), 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE,
                               DEFAULT_CHARSET, 0, 0, CLEARTYPE_QUALITY, DEFAULT_PITCH,
                               L"Segoe UI"));
  words(std::string(app::words::kWindowTitle), 36, 68, large.get());
  words(model_.Label1.caption, 106, 24, theme_.body.get());
  if (model_.Frame1.visible) {
    words(model_.Frame1.caption, 176, 60, theme_.small.get());
  }
}

}  // namespace tonadex::shell
