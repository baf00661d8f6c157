#include "shell/win32/theme.h"

#include <dwmapi.h>
#include <uxtheme.h>

#include <array>

namespace tonadex::shell {
namespace {

constexpr wchar_t kBodyFont[] = L"Segoe UI";
constexpr std::array<const wchar_t*, 3> kMonoFonts = {L"Consolas", L"DejaVu Sans Mono",
                                                      L"Courier New"};
constexpr double kBodyPoints = 10, kSmallPoints = 9, kTitlePoints = 13;
constexpr DWORD kDarkTitleBar = 20;  // DWMWA_USE_IMMERSIVE_DARK_MODE

// The colours that go with the tones.
struct Grounds {
  Rgb window, card, border, hover, text, muted, accentWash, displayFaint;
};
constexpr Grounds kLight = {.window = 0xF4F6F3,
                            .card = 0xFFFFFF,
                            .border = 0xC9CFCB,
                            .hover = 0xEAEEEA,
                            .text = 0x1B211E,
                            .muted = 0x5A645E,
                            .accentWash = 0xDDECE4,
                            .displayFaint = 0x4C5E42};
constexpr Grounds kDark = {.window = 0x1B1F1D,
                           .card = 0x242926,
                           .border = 0x4A534E,
                           .hover = 0x2F3632,
                           .text = 0xE7EBE8,
                           .muted = 0xA3ADA7,
                           .accentWash = 0x264237,
                           .displayFaint = 0x7C976C};

Colours OwnColours(const Tones& tones, const Grounds& grounds) {
  return {.window = SystemColour(grounds.window),
          .card = SystemColour(grounds.card),
          .border = SystemColour(grounds.border),
          .hover = SystemColour(grounds.hover),
          .text = SystemColour(grounds.text),
          .muted = SystemColour(grounds.muted),
          .accent = SystemColour(tones.accent),
          .accentText = SystemColour(tones.accentText),
          .accentWash = SystemColour(grounds.accentWash),
          .good = SystemColour(tones.good),
          .bad = SystemColour(tones.bad),
          .displayGround = SystemColour(tones.displayGround),
          .displayInk = SystemColour(tones.displayInk),
          .displayFaint = SystemColour(grounds.displayFaint)};
}

// A contrast theme's colours are the user's own choice.
Colours ContrastColours() {
  const COLORREF window = GetSysColor(COLOR_WINDOW), text = GetSysColor(COLOR_WINDOWTEXT);
  const COLORREF mark = GetSysColor(COLOR_HIGHLIGHT), onMark = GetSysColor(COLOR_HIGHLIGHTTEXT);
  return {window, window, text, window, text,   text, mark,
          onMark, window, text, text,   window, text, text};
}

bool HasContrastTheme() {
  HIGHCONTRASTW contrast{};
  contrast.cbSize = sizeof contrast;
  return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) != 0 &&
         (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

bool WantsDark() {
  DWORD light = 1;
  DWORD size = sizeof light;
  RegGetValueW(HKEY_CURRENT_USER,
               L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
               L"AppsUseLightTheme", RRF_RT_REG_DWORD, nullptr, &light, &size);
  return light == 0;
}

Font MakeFont(const wchar_t* name, double points, UINT dpi, int weight = FW_NORMAL) {
  return Font(CreateFontW(-static_cast<int>(points * dpi / 72 + 0.5), 0, 0, 0, weight, FALSE, FALSE,
                          FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                          CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, name));
}

int CALLBACK Found(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM) {
  return 0;  // the first is enough, and 0 tells of it
}

bool HasFont(HDC context, const wchar_t* name) {
  LOGFONTW wanted{};
  wanted.lfCharSet = DEFAULT_CHARSET;
  lstrcpynW(wanted.lfFaceName, name, LF_FACESIZE);
  return EnumFontFamiliesExW(context, &wanted, Found, 0, 0) == 0;
}

int LineHeight(HDC context, const Font& font) {
  const HGDIOBJ previous = SelectObject(context, font.get());
  TEXTMETRICW metrics{};
  GetTextMetricsW(context, &metrics);
  SelectObject(context, previous);
  return metrics.tmHeight;
}

}  // namespace

Theme::Theme(UINT dotsPerInch)
    : dpi(dotsPerInch),
      dark(WantsDark() && !HasContrastTheme()),
      colours(HasContrastTheme() ? ContrastColours()
              : dark             ? OwnColours(kDarkTones, kDark)
                                 : OwnColours(kLightTones, kLight)),
      body(MakeFont(kBodyFont, kBodyPoints, dpi)),
      small(MakeFont(kBodyFont, kSmallPoints, dpi)),
      title(MakeFont(kBodyFont, kTitlePoints, dpi, FW_SEMIBOLD)),
      bold(MakeFont(kBodyFont, kBodyPoints, dpi, FW_SEMIBOLD)),
      windowBrush(CreateSolidBrush(colours.window)),
      cardBrush(CreateSolidBrush(colours.card)) {
  const HDC context = GetDC(nullptr);
  for (const wchar_t* name : kMonoFonts) {
    if (monoName.empty() && HasFont(context, name)) {
      monoName = name;
    }
  }
  mono = MakeFont(monoName.c_str(), kBodyPoints, dpi);
  line = LineHeight(context, body);
  smallLine = LineHeight(context, small);
  ReleaseDC(nullptr, context);
  control = line + 2 * Px(7);
}

COLORREF Blend(COLORREF over, COLORREF under, double part) {
  const auto mix = [part](int a, int b) { return static_cast<BYTE>(a * part + b * (1 - part)); };
  return RGB(mix(GetRValue(over), GetRValue(under)), mix(GetGValue(over), GetGValue(under)),
             mix(GetBValue(over), GetBValue(under)));
}

void ApplyTheme(HWND window, const Theme& theme) {
  if ((GetWindowLongPtrW(window, GWL_STYLE) & WS_CHILD) != 0) {
    SetWindowTheme(window, theme.dark ? L"DarkMode_Explorer" : nullptr, nullptr);
    return;
  }
  const BOOL dark = theme.dark ? TRUE : FALSE;
  DwmSetWindowAttribute(window, kDarkTitleBar, &dark, sizeof dark);
}

}  // namespace tonadex::shell
