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

constexpr Colours kLight = {
    .window = RGB(0xF4, 0xF6, 0xF3),
    .card = RGB(0xFF, 0xFF, 0xFF),
    .border = RGB(0xC9, 0xCF, 0xCB),
    .hover = RGB(0xEA, 0xEE, 0xEA),
    .text = RGB(0x1B, 0x21, 0x1E),
    .muted = RGB(0x5A, 0x64, 0x5E),
    .accent = RGB(0x17, 0x68, 0x4A),
    .accentText = RGB(0xFF, 0xFF, 0xFF),
    .accentWash = RGB(0xDD, 0xEC, 0xE4),
    .good = RGB(0x17, 0x68, 0x4A),
    .bad = RGB(0xA8, 0x32, 0x1F),
    .displayGround = RGB(0xC9, 0xDA, 0xB2),
    .displayInk = RGB(0x10, 0x1F, 0x10),
    .displayFaint = RGB(0x4C, 0x5E, 0x42),
};
constexpr Colours kDark = {
    .window = RGB(0x1B, 0x1F, 0x1D),
    .card = RGB(0x24, 0x29, 0x26),
    .border = RGB(0x4A, 0x53, 0x4E),
    .hover = RGB(0x2F, 0x36, 0x32),
    .text = RGB(0xE7, 0xEB, 0xE8),
    .muted = RGB(0xA3, 0xAD, 0xA7),
    .accent = RGB(0x5C, 0xC4, 0x9A),
    .accentText = RGB(0x0A, 0x1F, 0x16),
    .accentWash = RGB(0x26, 0x42, 0x37),
    .good = RGB(0x5C, 0xC4, 0x9A),
    .bad = RGB(0xF0, 0x91, 0x7F),
    .displayGround = RGB(0x0F, 0x1A, 0x10),
    .displayInk = RGB(0xC2, 0xE2, 0xAB),
    .displayFaint = RGB(0x7C, 0x97, 0x6C),
};

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
              : dark             ? kDark
                                 : kLight),
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
