#include "shell/win32/pages.h"

#include <commctrl.h>

#include <algorithm>
#include <array>

#include "app/words.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/drawing.h"
#include "shell/win32/widgets/button.h"
#include "shell/win32/window_text.h"

namespace tonadex::shell {
namespace {

using app::Control;
using app::Form1;
namespace words = app::words;
using Member = Control Form1::*;

constexpr int kBusyHeight = 3;
constexpr int kWidestCard = 760, kTallestCard = 480;
constexpr int kViewHeight = 104, kNoticesHeight = 84, kTempoWidth = 96;

// ---- Making -------------------------------------------------------------------------------------

HWND Label(HWND parent) {
  return CreateWindowExW(0, L"STATIC", L"", WS_CHILD | SS_LEFT | SS_NOPREFIX, 0, 0, 1, 1, parent,
                         nullptr, GetModuleHandleW(nullptr), nullptr);
}

HWND CommandButton(HWND parent, int id, std::string_view caption, std::string_view icon) {
  const HWND button = MakeButton(parent, id, ButtonLook::kCommand, icon);
  SetText(button, caption);
  return button;
}

HWND SizeSlider(HWND parent) {
  const HWND slider = CreateWindowExW(
      0, TRACKBAR_CLASSW, L"", WS_CHILD | WS_TABSTOP | TBS_HORZ | TBS_NOTICKS, 0, 0, 1, 1, parent,
      reinterpret_cast<HMENU>(LONG_PTR{kSizeId}), GetModuleHandleW(nullptr), nullptr);
  SendMessageW(slider, TBM_SETRANGE, TRUE,
               MAKELPARAM(PhoneDisplay::kSmallestPixels, PhoneDisplay::kLargestPixels));
  SetSpokenName(slider, words::kTextSize);
  return slider;
}

// The windows of our own behind the control of the model that they follow.
std::vector<HWND> Followers(const PageParts& parts, Member member) {
  if (member == &Form1::cmdopciones) {
    return {parts.phone};
  }
  if (member == &Form1::List1) {
    return {parts.goToSearch};
  }
  if (member == &Form1::lbltextresult) {
    return {parts.repertoireView->window()};
  }
  if (member == &Form1::textresultado) {
    return {parts.copy, parts.saveAs, parts.size};
  }
  if (member == &Form1::txtmelodiacompo) {
    std::vector<HWND> row(parts.keys->windows().begin(), parts.keys->windows().end());
    row.push_back(parts.composerView->window());
    return row;
  }
  if (member == &Form1::txtrtttlsube) {
    return {parts.rtttlView->window()};
  }
  return {};
}

void PutInOrder(const Binding& binding, const PageParts& parts) {
  HWND last = HWND_TOP;
  const auto follow = [&last](HWND window) {
    SetWindowPos(window, last, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    last = window;
  };
  for (const BoundControl& bound : binding.Controls()) {
    if (bound.window != nullptr) {
      follow(bound.window);
      for (const HWND part : Followers(parts, bound.info->member)) {
        follow(part);
      }
    }
  }
}

// ---- Places -------------------------------------------------------------------------------------

// A rectangle from which pieces are cut.
struct Area : RECT {
  int width() const { return right - left; }
  int height() const { return bottom - top; }
  Area CutTop(int size, int gap = 0) {
    Area piece = *this;
    piece.bottom = std::min(bottom, top + size);
    top = std::min(bottom, top + size + gap);
    return piece;
  }
  Area CutBottom(int size, int gap = 0) {
    Area piece = *this;
    piece.top = std::max(top, bottom - size);
    bottom = std::max(top, bottom - size - gap);
    return piece;
  }
  Area CutLeft(int size, int gap = 0) {
    Area piece = *this;
    piece.right = std::min(right, left + size);
    left = std::min(right, left + size + gap);
    return piece;
  }
  Area CutRight(int size, int gap = 0) {
    Area piece = *this;
    piece.left = std::max(left, right - size);
    right = std::max(left, right - size - gap);
    return piece;
  }
  Area Inset(int x, int y) const {
    Area inner = *this;
    InflateRect(&inner, -x, -y);
    return inner;
  }
};

class Layouter {
 public:
  Layouter(const Binding& binding, const PageParts& parts, const Theme& theme, const Form1& form)
      : binding_(binding), parts_(parts), theme_(theme), form_(form) {}

  std::vector<Frame> Run(SIZE client) {
    Area page{{0, 0, client.cx, client.cy}};
    NavigationRow(page.CutTop(Px(kGrid + 24 + 2 + 9) + theme_.line));
    Place(parts_.busy->window(), page.CutTop(Px(kBusyHeight)));
    if (form_.navbanner.visible) {
      Place(Of(&Form1::navbanner), page.CutTop(Px(kBannerHeight)));
    }
    if (form_.WebBrowser1.visible) {
      Place(Of(&Form1::WebBrowser1), page);
    }
    if (form_.txtbuscar.visible) {
      SearchPage(page.Inset(Px(kPageMargin), Px(kPageMargin)));
    } else if (form_.textresultado.visible) {
      RepertoirePage(page.Inset(Px(kPageMargin), Px(kPageMargin)));
    } else if (form_.cmbmarcas.visible) {
      OptionsPage(page.Inset(Px(kPageMargin), Px(kPageMargin)));
    } else if (form_.txtmelodiacompo.visible) {
      StartPage(page.Inset(Px(kPageMargin), Px(kGrid)));
    }
    Apply();
    return std::move(frames_);
  }

 private:
  int Px(int distance) const { return theme_.Px(distance); }
  HWND Of(Member member) const { return binding_.Window(member); }

  void Place(HWND window, const Area& area) { places_.push_back({window, area}); }

  // A field with the frame that is painted around it.
  void Field(HWND window, const Area& area, int insetX, int insetY,
             Frame::Kind kind = Frame::kField) {
    frames_.push_back({kind, area, window});
    Place(window, area.Inset(Px(insetX), Px(insetY)));
  }
  void Line(Member member, const Area& area) {
    Area inner = area;
    frames_.push_back({Frame::kField, area, Of(member)});
    inner.top += (area.height() - theme_.line) / 2;
    inner.bottom = inner.top + theme_.line;
    Place(Of(member), inner.Inset(Px(kGrid), 0));
  }
  void Button(HWND button, Area& row, bool fromRight = false) {
    const int width = ButtonWidth(button, theme_);
    Place(button, fromRight ? row.CutRight(width, Px(kGrid)) : row.CutLeft(width, Px(kGrid)));
  }
  // One line of words in the middle of a row's height.
  void Middle(HWND label, const Area& row, int height) {
    Area words = row;
    words.top += std::max(0, (row.height() - height) / 2);
    words.bottom = words.top + height;
    Place(label, words);
  }

  void NavigationRow(Area bar) {
    frames_.push_back({Frame::kBar, bar});
    bar.CutLeft(Px(kGrid));
    bar.CutRight(Px(kGrid));
    for (const app::NavigationInfo& info : app::NavigationRow()) {
      const HWND button = Of(info.button);
      const int width = std::max(Px(84), ButtonWidth(button, theme_));
      const bool apart = info.page == app::kNoPage;
      Place(button, apart ? bar.CutRight(width, Px(kGrid)) : bar.CutLeft(width));
    }
    Area phone = bar.CutRight(std::min(bar.width(), ButtonWidth(parts_.phone, theme_)));
    Middle(parts_.phone, phone, theme_.control);
  }

  void SearchPage(Area page) {
    Area row = page.CutTop(theme_.control, Px(kGrid));
    Button(Of(&Form1::picazar), row, true);
    Button(Of(&Form1::picabuscar), row, true);
    Line(&Form1::txtbuscar, row);
    Area foot = page.CutBottom(theme_.control, Px(kGrid));
    Button(Of(&Form1::picdescargar), foot);
    Field(Of(&Form1::List1), page, 2, 2);
  }

  void RepertoirePage(Area page) {
    Area left = page.CutLeft(Px(kListWidth), Px(kPageMargin));
    if (form_.OffersSearch()) {
      Area foot = left.CutBottom(theme_.control, Px(kGrid));
      Place(parts_.goToSearch, foot);
    }
    Field(Of(&Form1::List1), left, 2, 2);

    Area head = page.CutTop(theme_.control, Px(kGrid));
    Button(Of(&Form1::picreproducir), head);
    Button(Of(&Form1::picconvertir), head);
    Button(Of(&Form1::picimprimir), head);
    const HFONT body = theme_.body.get();
    Middle(parts_.beats, head.CutRight(TextWidth(body, WindowText(parts_.beats)) + Px(2), Px(6)),
           theme_.line);
    Line(&Form1::texttempo, head.CutRight(Px(46), Px(6)));
    const HWND tempo = Of(&Form1::Label1);
    Middle(tempo, head.CutRight(TextWidth(body, PlainWords(WindowText(tempo))) + Px(2)),
           theme_.line);

    // A low window keeps room for the result.
    const int view = std::clamp(page.height() / 5, Px(76), Px(kViewHeight));
    const int notices = std::clamp(page.height() / 7, Px(50), Px(kNoticesHeight));
    const HWND title = Of(&Form1::lbltextresult);
    const int height = TextHeight(theme_.title.get(), WindowText(title), page.width());
    Place(title, page.CutTop(std::max(height, theme_.line + Px(6)), Px(4)));
    Place(parts_.repertoireView->window(), page.CutTop(view, Px(kGrid)));
    Field(Of(&Form1::Textavisos), page.CutBottom(notices, Px(4)), 8, 6);
    Place(Of(&Form1::Label2), page.CutBottom(theme_.line, Px(kGrid)));
    Area foot = page.CutBottom(theme_.control, Px(kGrid));
    Button(parts_.copy, foot);
    Button(parts_.saveAs, foot);
    Middle(parts_.size, foot.CutRight(Px(140)), Px(28));
    Field(Of(&Form1::textresultado), page, 6, 6, Frame::kDisplay);
  }

  void Labelled(Member label, HWND field, Area area) {
    Place(Of(label), area.CutTop(theme_.line, Px(4)));
    Field(field, area, 2, 2);
  }

  void OptionsPage(Area page) {
    const int width = std::min(page.width(), Px(kWidestCard));
    Area card = page.CutTop(std::min(page.height(), Px(kTallestCard)));
    card.left += (card.width() - width) / 2;
    card.right = card.left + width;
    frames_.push_back({Frame::kCard, card});
    Area inner = card.Inset(Px(3 * kGrid), Px(2 * kGrid));
    Place(parts_.optionsTitle, inner.CutTop(theme_.line + Px(8), Px(kGrid)));
    Place(parts_.optionsSentence, inner.CutBottom(2 * theme_.line + Px(4), Px(kPageMargin)));
    Area makes = inner.CutLeft(inner.width() * 2 / 5, Px(kPageMargin));
    Labelled(&Form1::Label3, Of(&Form1::cmbmarcas), makes);
    Labelled(&Form1::Label4, Of(&Form1::cmbformatos), inner);
  }

  void StartPage(Area page) {
    Area composer = page.CutLeft(page.width() * 3 / 5, Px(kPageMargin));
    frames_.push_back({Frame::kCard, composer});
    frames_.push_back({Frame::kCard, page});
    ComposerCard(composer.Inset(Px(12), Px(10)));
    RtttlCard(page.Inset(Px(12), Px(10)));
  }

  void Actions(Area row, Member listen, Member upload, HWND check) {
    Button(Of(upload), row, true);
    Button(Of(listen), row, true);
    Middle(check, row, 2 * theme_.smallLine);
  }

  void ComposerCard(Area card) {
    Place(Of(&Form1::lbltitulocompo), card.CutTop(theme_.line + Px(6), Px(4)));
    Area head = card.CutTop(theme_.line + Px(3) + theme_.control, Px(6));
    Area tempo = head.CutRight(Px(kTempoWidth), Px(kPageMargin));
    Place(Of(&Form1::lbltemposube), tempo.CutTop(theme_.line, Px(3)));
    // A combo box's height counts the list that it drops.
    Place(Of(&Form1::txtcompoTempo),
          Area{{tempo.left, tempo.top + Px(2), tempo.right, tempo.top + 11 * theme_.line}});
    Place(Of(&Form1::lblnombremelodiasube), head.CutTop(theme_.line, Px(3)));
    Line(&Form1::txtcomponombremelodia, head);

    Actions(card.CutBottom(theme_.control, Px(6)), &Form1::cmdscuchacumpo, &Form1::cmdsubecompo,
            parts_.composerCheck);
    Place(Of(&Form1::lblporfacomprueba), card.CutBottom(theme_.smallLine, Px(2)));
    Place(Of(&Form1::lblMsg), card.CutBottom(theme_.smallLine, Px(4)));
    Place(Of(&Form1::lblformatocompo), card.CutTop(theme_.line, Px(3)));
    const int fixed = theme_.line + theme_.smallLine + Px(8) + 2 * Px(6);
    Area notes =
        card.CutTop(std::max(2 * theme_.line + Px(12), (card.height() - fixed) * 2 / 5), Px(6));
    Field(Of(&Form1::txtmelodiacompo), notes, 8, 6);
    Keys(card.CutTop(KeyRows(card.width()) * (KeyHeight() + Px(4)) - Px(4), Px(6)));
    Place(parts_.composerView->window(), card);
  }

  int KeyHeight() const { return theme_.line + theme_.smallLine + Px(7); }

  // One row where every key's word has room, else two.
  int KeyRows(int width) const {
    int widest = 0;
    for (const app::ComposerKey& key : app::ComposerKeys()) {
      widest = std::max(widest, TextWidth(theme_.small.get(), platform::ToWide(key.word)));
    }
    return (widest + Px(10)) * static_cast<int>(app::kKeyCount) <= width ? 1 : 2;
  }

  void Keys(const Area& area) {
    const int rows = KeyRows(area.width());
    const int inRow = static_cast<int>(app::kKeyCount) / rows;
    const int gap = Px(4);
    for (int i = 0; i < static_cast<int>(app::kKeyCount); ++i) {
      const int column = i % inRow;
      Area key = area;
      key.top += i / inRow * (KeyHeight() + gap);
      key.bottom = key.top + KeyHeight();
      key.left = area.left + (area.width() + gap) * column / inRow;
      key.right = area.left + (area.width() + gap) * (column + 1) / inRow - gap;
      Place(parts_.keys->windows()[static_cast<std::size_t>(i)], key);
    }
  }

  void RtttlCard(Area card) {
    Place(Of(&Form1::lbltitulortttl), card.CutTop(theme_.line + Px(6), Px(4)));
    const HWND format = Of(&Form1::labelformatortttl);
    Place(format,
          card.CutTop(TextHeight(theme_.body.get(), PlainWords(WindowText(format)), card.width()),
                      Px(3)));
    Actions(card.CutBottom(theme_.control, Px(6)), &Form1::cmdscuchartttl,
            &Form1::cmdsubirmelortttl, nullptr);
    Place(parts_.rtttlCheck, card.CutBottom(2 * theme_.smallLine, Px(6)));
    Area text = card.CutTop(card.height() * 3 / 5, Px(6));
    Field(Of(&Form1::txtrtttlsube), text, 8, 6);
    Place(parts_.rtttlView->window(), card);
  }

  void Apply() {
    HDWP moves = BeginDeferWindowPos(static_cast<int>(places_.size()));
    for (const auto& [window, area] : places_) {
      if (window != nullptr && moves != nullptr) {
        moves =
            DeferWindowPos(moves, window, nullptr, area.left, area.top, std::max(0, area.width()),
                           std::max(0, area.height()), SWP_NOZORDER | SWP_NOACTIVATE);
      }
    }
    if (moves != nullptr) {
      EndDeferWindowPos(moves);
    }
  }

  const Binding& binding_;
  const PageParts& parts_;
  const Theme& theme_;
  const Form1& form_;
  std::vector<std::pair<HWND, Area>> places_;
  std::vector<Frame> frames_;
};

void Show(HWND window, bool shown) {
  if (((GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0) != shown) {
    ShowWindow(window, shown ? SW_SHOWNA : SW_HIDE);
  }
}

}  // namespace

std::array<MelodyPart, 3> PageParts::Melodies() const {
  return {{{app::Sounding::kRepertoire, &Form1::repertoireDrawing, repertoireView.get()},
           {app::Sounding::kComposer, &Form1::composerDrawing, composerView.get()},
           {app::Sounding::kRtttl, &Form1::rtttlDrawing, rtttlView.get()}}};
}

PageParts MakeParts(const Binding& binding, HWND parent, const Theme& theme,
                    KeyRow::Pressed pressed) {
  PageParts parts;
  parts.phone = MakeButton(parent, kPhoneId, ButtonLook::kLink, "movil");
  parts.goToSearch = CommandButton(parent, kGoToSearchId, words::kGoToSearch, "buscar");
  parts.copy = CommandButton(parent, kCopyId, words::kCopy, "copiar");
  parts.saveAs = CommandButton(parent, kSaveAsId, words::kSaveAs, "guardar");
  parts.size = SizeSlider(parent);
  parts.beats = Label(parent);
  SetText(parts.beats, words::kBeatsPerMinute);
  parts.composerCheck = Label(parent);
  parts.rtttlCheck = Label(parent);
  parts.optionsTitle = Label(parent);
  SetText(parts.optionsTitle, words::kChoosePhone);
  parts.optionsSentence = Label(parent);
  parts.busy = std::make_unique<BusyLine>(parent, theme);
  parts.repertoireView = std::make_unique<MelodyView>(parent, theme);
  parts.composerView = std::make_unique<MelodyView>(parent, theme);
  parts.rtttlView = std::make_unique<MelodyView>(parent, theme);
  parts.keys = std::make_unique<KeyRow>(parent, kFirstKeyId, std::move(pressed));
  PutInOrder(binding, parts);
  return parts;
}

void ShowParts(const PageParts& parts, const Form1& form) {
  Show(parts.phone, true);
  Show(parts.goToSearch, form.OffersSearch());
  for (const HWND part : {parts.copy, parts.saveAs, parts.size, parts.repertoireView->window()}) {
    Show(part, form.textresultado.visible);
  }
  Show(parts.beats, form.texttempo.visible);
  for (const HWND part : {parts.optionsTitle, parts.optionsSentence}) {
    Show(part, form.cmbformatos.visible);
  }
  for (const HWND part : {parts.composerCheck, parts.composerView->window()}) {
    Show(part, form.txtmelodiacompo.visible);
  }
  for (const HWND key : parts.keys->windows()) {
    Show(key, form.txtmelodiacompo.visible);
  }
  for (const HWND part : {parts.rtttlCheck, parts.rtttlView->window()}) {
    Show(part, form.txtrtttlsube.visible);
  }
}

std::vector<Frame> LayOut(const Binding& binding, const PageParts& parts, const Theme& theme,
                          const Form1& form, SIZE client) {
  return Layouter(binding, parts, theme, form).Run(client);
}

}  // namespace tonadex::shell
