#include "shell/win32/theme.h"

#include <dwmapi.h>
#include <uxtheme.h>

#include <array>

#include "shell/win32/drawing.h"
#include "shell/win32/hook.h"

namespace tonadex::shell {
namespace {

constexpr wchar_t kBodyFont[] = L"Segoe UI";
constexpr std::array<const wchar_t*, 3> kMonoFonts = {L"Consolas", L"DejaVu Sans Mono",
                                                      L"Courier New"};
constexpr DWORD kDarkTitleBar = 20;  // DWMWA_USE_IMMERSIVE_DARK_MODE

Colours OwnColours(bool dark) {
  return MixColours(dark ? kDarkGrounds : kLightGrounds, dark ? kDarkTones : kLightTones,
                    dark ? kDarkShares : kLightShares, SystemColour);
}

Colours ContrastColours() {
  const Rgb window = GetSysColor(COLOR_WINDOW);
  const Grounds grounds{window, window, GetSysColor(COLOR_WINDOWTEXT)};
  const Tones tones =
      ContrastTones(grounds, GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_HIGHLIGHTTEXT));
  Colours colours =
      MixColours(grounds, tones, kContrastShares, [](Rgb colour) { return COLORREF{colour}; });
  colours.faint = GetSysColor(COLOR_GRAYTEXT);
  return colours;
}

bool HasContrastTheme() {
  auto contrast = Sized<HIGHCONTRASTW>();
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

Font MakeFont(const wchar_t* name, app::Font size, UINT dpi, int weight = FW_NORMAL) {
  const int pixels = kType[static_cast<std::size_t>(size)];
  return Font(CreateFontW(-MulDiv(pixels, static_cast<int>(dpi), 96), 0, 0, 0, weight, FALSE, FALSE,
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

}  // namespace

Theme::Theme(UINT dotsPerInch)
    : dpi(dotsPerInch),
      dark(WantsDark() && !HasContrastTheme()),
      colours(HasContrastTheme() ? ContrastColours() : OwnColours(dark)),
      body(MakeFont(kBodyFont, app::Font::kBody, dpi)),
      small(MakeFont(kBodyFont, app::Font::kSmall, dpi)),
      title(MakeFont(kBodyFont, app::Font::kTitle, dpi, FW_SEMIBOLD)),
      heading(MakeFont(kBodyFont, app::Font::kHeading, dpi, FW_SEMIBOLD)),
      bold(MakeFont(kBodyFont, app::Font::kBody, dpi, FW_SEMIBOLD)),
      windowBrush(CreateSolidBrush(colours.window)),
      cardBrush(CreateSolidBrush(colours.card)) {
  const HDC context = GetDC(nullptr);
  for (const wchar_t* name : kMonoFonts) {
    if (monoName.empty() && HasFont(context, name)) {
      monoName = name;
    }
  }
  mono = MakeFont(monoName.c_str(), app::Font::kBody, dpi);
  ReleaseDC(nullptr, context);
  line = LineOf(app::Font::kBody);
  smallLine = LineOf(app::Font::kSmall);
  control = line + 2 * Px(7);
}

const Font& Theme::FontOf(app::Font font) const {
  return font == app::Font::kSmall     ? small
         : font == app::Font::kTitle   ? title
         : font == app::Font::kHeading ? heading
                                       : body;
}

int Theme::LineOf(app::Font font) const {
  return TextSize(FontOf(font).get(), L"X", kAnyWidth).cy;
}

void PaintCard(HWND view, HDC context, const Theme& theme) {
  const RECT area = ClientArea(view);
  FillRect(context, &area, GroundUnder(view, context));
  const bool focus = GetFocus() == view;
  RoundedBox(context, area, theme.Px(kRadius), theme.colours.card,
             focus ? theme.colours.accent : theme.colours.border, theme.Px(focus ? 2 : 1));
}

void ApplyTheme(HWND window, const Theme& theme) {
  SetWindowTheme(window, theme.dark ? L"DarkMode_Explorer" : nullptr, nullptr);  // scroll bars
  if ((GetWindowLongPtrW(window, GWL_STYLE) & WS_CHILD) == 0) {
    const BOOL dark = theme.dark ? TRUE : FALSE;
    DwmSetWindowAttribute(window, kDarkTitleBar, &dark, sizeof dark);
  }
}

}  // namespace tonadex::shell
