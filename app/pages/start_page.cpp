#include "app/pages/start_page.h"

#include <algorithm>
#include <array>

#include "app/composer_keys.h"
#include "app/form1.h"
#include "app/layout.h"
#include "app/words.h"
#include "core/files.h"
#include "core/number.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "net/upload.h"
#include "nokia3210/cnokia.h"
#include "platform/message_box.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using F = Form1;

constexpr std::string_view kNameOrTempoMissing = u8"Introduce un nombre de melodía y un tempo."_w;
constexpr std::string_view kParenthesesMessage =
    u8"El nombre de la melodía no puede contener paréntesis"_w;
constexpr std::string_view kParenthesesTitle = u8"Nombre no válido"_w;
constexpr std::string_view kTooManyNotes = "ADVERTENCIA: La melodia tiene mas de 50 notas.";
// Both buttons speak of uploading: deliberate.
constexpr std::string_view kErrorsMessage =
    "La melodia no se ha subido pues ha habido algunos errores al leer la melodia:\r";
constexpr std::string_view kErrorsTitle = "Errores en la melodia";

constexpr std::size_t kTempoDigits = 3;
constexpr std::int16_t kBackspace = 8;
constexpr std::string_view kDrawnTempo = "125";  // while the tempo box holds no number
constexpr std::array<std::string_view, 10> kUsualTempos = {"63",  "80",  "100", "112", "125",
                                                           "140", "160", "180", "200", "225"};
constexpr std::string_view kFirstTempo = "125";
constexpr int kTempoWidth = 96, kLowestNotes = 56;

constexpr auto kRows = std::to_array<ControlInfo>({
    // Composer.
    {.name = "lbltitulocompo",
     .member = &F::lbltitulocompo,
     .look = Look::kLabel,
     .caption = "Compositor",
     .font = Font::kTitle},
    {.name = "lblporfacomprueba",
     .member = &F::lblporfacomprueba,
     .look = Look::kLabel,
     .caption = u8"Por favor, escucha la melodía antes de subirla."_w,
     .right = true,
     .font = Font::kSmall,
     .tone = Tone::kMuted},
    {.name = "lblnombremelodiasube",
     .member = &F::lblnombremelodiasube,
     .look = Look::kLabel,
     .caption = "No&mbre",
     .field = &F::txtcomponombremelodia},
    {.name = "txtcomponombremelodia",
     .member = &F::txtcomponombremelodia,
     .look = Look::kLine,
     .spoken = u8"Nombre de la melodía"_w},
    {.name = "lbltemposube",
     .member = &F::lbltemposube,
     .look = Look::kLabel,
     .caption = "&Tempo",
     .field = &F::txtcompoTempo},
    {.name = "txtcompoTempo",
     .member = &F::txtcompoTempo,
     .look = Look::kComboBox,
     .help = "Pulsos por minuto",
     .spoken = "Tempo en pulsos por minuto",
     .on = {Event::kChange, &F::txtmelodiacompo_Change}},
    {.name = "lblformatocompo",
     .member = &F::lblformatocompo,
     .look = Look::kLabel,
     .caption = u8"Not&as, como en el compositor de Nokia: 8c1 4.#f2 2-"_w,
     .field = &F::txtmelodiacompo},
    {.name = "txtmelodiacompo",
     .member = &F::txtmelodiacompo,
     .look = Look::kArea,
     .spoken = u8"Notas de la melodía"_w,
     .on = {Event::kChange, &F::txtmelodiacompo_Change}},
    {.name = "composerCheckLabel",
     .member = &F::composerCheckLabel,
     .look = Look::kLabel,
     .useMnemonic = false,
     .tone = Tone::kMuted},
    {.name = "keyRow", .member = &F::keyRow, .look = Look::kKeys},
    {.name = "composerView",
     .member = &F::composerView,
     .look = Look::kDrawing,
     .spoken = words::kDrawing,
     .drawing = &F::composerDrawing,
     .sounds = Sounding::kComposer},
    {.name = "lblMsg",
     .member = &F::lblMsg,
     .look = Look::kLabel,
     .useMnemonic = false,
     .tone = Tone::kBad},
    {.name = "cmdscuchacumpo",
     .member = &F::cmdscuchacumpo,
     .look = Look::kButton,
     .caption = "&Escuchar",
     .help = u8"Escuchar la melodía compuesta"_w,
     .spoken = u8"Escuchar la melodía compuesta"_w,
     .icon = "reproducir",
     .on = {Event::kClick, &F::cmdscuchacumpo_Click}},
    {.name = "cmdsubecompo",
     .member = &F::cmdsubecompo,
     .look = Look::kButton,
     .caption = "&Subir",
     .help = u8"Subir al servidor la melodía compuesta"_w,
     .spoken = u8"Subir al servidor la melodía compuesta"_w,
     .icon = "subir",
     .on = {Event::kClick, &F::cmdsubecompo_Click}},
    // RTTTL box.
    {.name = "lbltitulortttl",
     .member = &F::lbltitulortttl,
     .look = Look::kLabel,
     .caption = u8"Melodía en RTTTL"_w,
     .font = Font::kTitle},
    {.name = "labelformatortttl",
     .member = &F::labelformatortttl,
     .look = Look::kLabel,
     .caption = "Te&xto RTTTL",
     .field = &F::txtrtttlsube},
    {.name = "txtrtttlsube",
     .member = &F::txtrtttlsube,
     .look = Look::kArea,
     .spoken = "Texto RTTTL",
     .on = {Event::kChange, &F::txtrtttlsube_Change}},
    {.name = "rtttlCheckLabel",
     .member = &F::rtttlCheckLabel,
     .look = Look::kLabel,
     .useMnemonic = false,
     .tone = Tone::kMuted},
    {.name = "rtttlView",
     .member = &F::rtttlView,
     .look = Look::kDrawing,
     .spoken = words::kDrawing,
     .drawing = &F::rtttlDrawing,
     .sounds = Sounding::kRtttl},
    {.name = "cmdscuchartttl",
     .member = &F::cmdscuchartttl,
     .look = Look::kButton,
     .caption = "Esc&uchar",
     .help = "Escuchar el texto RTTTL",
     .spoken = "Escuchar el texto RTTTL",
     .icon = "reproducir",
     .on = {Event::kClick, &F::cmdscuchartttl_Click}},
    {.name = "cmdsubirmelortttl",
     .member = &F::cmdsubirmelortttl,
     .look = Look::kButton,
     .caption = "Subir RTTT&L",
     .help = "Subir al servidor el texto RTTTL",
     .spoken = "Subir al servidor el texto RTTTL",
     .icon = "subir",
     .on = {Event::kClick, &F::cmdsubirmelortttl_Click}},
    {.name = "rtf", .member = &F::rtf, .look = Look::kStorage},
});

void DrawCheck(Control& label, const Check& check) {
  label.caption = check.sentence;
  label.tone = check.verdict == Verdict::kGood  ? Tone::kGood
               : check.verdict == Verdict::kBad ? Tone::kBad
                                                : Tone::kMuted;
}

bool IsTempo(std::string_view text) {
  return !text.empty() && text.size() <= kTempoDigits && std::ranges::all_of(text, core::IsDigit);
}

// name:d=4,o=5,b=120:notes
std::string RtttlText(std::string_view name, const nokia3210::Defaults& defaults,
                      std::string_view tempo, std::string_view notes) {
  std::string text(name);
  text.append(":d=").append(defaults.Duration).append(",o=").append(defaults.Octave);
  return text.append(",b=").append(tempo).append(":").append(notes);
}

}  // namespace

std::span<const ControlInfo> StartPage::Rows() {
  return kRows;
}

Part StartPage::Layout() {
  const auto view = [](Control F::*drawing) {
    return The(drawing).Weight(3).Heights(look::kLowestView, look::kTallestView);
  };
  const auto notes = [](Control F::*label, Control F::*box) {
    return Field(label, The(box).Weight(2).Heights(kLowestNotes));
  };
  Part composer = Card({
      Row({The(&F::lbltitulocompo), The(&F::lblporfacomprueba).Weight(1)}).Gap(look::kPageMargin),
      Row({Field(&F::lblnombremelodiasube, The(&F::txtcomponombremelodia).Weight(1)),
           Field(&F::lbltemposube, The(&F::txtcompoTempo).Widths(kTempoWidth, kTempoWidth))})
          .Gap(look::kPageMargin),
      notes(&F::lblformatocompo, &F::txtmelodiacompo),
      The(&F::composerCheckLabel),
      The(&F::keyRow),
      view(&F::composerView),
      Row({The(&F::lblMsg).Weight(1), The(&F::cmdscuchacumpo), The(&F::cmdsubecompo)}),
  });
  Part rtttl = Card({
      The(&F::lbltitulortttl),
      notes(&F::labelformatortttl, &F::txtrtttlsube),
      The(&F::rtttlCheckLabel),
      view(&F::rtttlView),
      Row({Stretch(), The(&F::cmdscuchartttl), The(&F::cmdsubirmelortttl)}),
  });
  return Row({std::move(composer).Weight(5), std::move(rtttl).Weight(3)})
      .Gap(look::kPageMargin)
      .Margins(look::kPageMargin, look::kGrid, look::kPageMargin)
      .Scrolls();
}

StartPage::StartPage(SharedState& state) : state_(state) {
  for (const std::string_view tempo : kUsualTempos) {
    txtcompoTempo.AddRow(tempo);
  }
  txtcompoTempo.text = kFirstTempo;
  core::InitMelody(state_.program.gMelody, state_.program.services.shell.TempPath());
  txtmelodiacompo_Change();
  txtrtttlsube_Change();
}

StartPage::~StartPage() = default;

void StartPage::RefreshStart() {
  DrawCheck(composerCheckLabel, composerCheck);
  DrawCheck(rtttlCheckLabel, rtttlCheck);
  composerView.invitation = rtttlView.invitation = words::kDrawing;
}

void StartPage::keyRow_KeyPressed(std::string_view key, bool held) {
  ComposerText after = PressKey({txtmelodiacompo.text, txtmelodiacompo.cursor}, key, held);
  txtmelodiacompo.text = std::move(after.text);
  txtmelodiacompo.cursor = after.cursor;
  txtmelodiacompo_Change();
}

void StartPage::subemelodia(const std::string& nombre) {
  net::UploadMelody(state_.Fetch(), nombre, melodiasube, state_.Text1.text);
}

// The converter, made on first use.
nokia3210::CNokia& StartPage::Converter() {
  if (converter_ == nullptr) {
    converter_ = std::make_unique<nokia3210::CNokia>();
    converter_->ShowType = nokia3210::NoteKind::kRTTTL;
    converter_->Folder = core::TextFromPath(state_.program.ProgramFolder());
  }
  return *converter_;
}

void StartPage::convierteCompositor() {
  nokia3210::CNokia& converter = Converter();
  converter.ShowType = nokia3210::NoteKind::kRTTTL;
  converter.Convert();
  if (converter.NoteCount() > kComposerNotes) {
    lblMsg.caption = kTooManyNotes;
  }
  rtf.text = converter.ConvertedNotes();
}

// Builds the RTTTL text of the composer into melodiasube; false after a refusal.
bool StartPage::BuildComposedMelody() {
  const std::string& name = txtcomponombremelodia.text;
  const std::string& tempo = txtcompoTempo.text;
  lblMsg.caption.clear();
  if (name.empty() || !IsTempo(tempo)) {
    platform::MsgBox(kNameOrTempoMissing);
    return false;
  }
  if (name.find_first_of("()") != std::string::npos) {
    platform::MsgBox(kParenthesesMessage, platform::Icon::kExclamation, kParenthesesTitle);
    return false;
  }
  nokia3210::CNokia& converter = Converter();
  converter.Clear();
  converter.SetOriginalText(txtmelodiacompo.text);
  convierteCompositor();
  const std::string_view errors = core::Trim(converter.ConversionErrors());
  if (!errors.empty()) {
    platform::MsgBox(std::string(kErrorsMessage) + std::string(errors),
                     platform::Icon::kExclamation, kErrorsTitle);
    return false;
  }
  converter.RingToneName = name;
  converter.Tempo = core::ToInt16(core::ToNumber(tempo));
  melodiasube = RtttlText(name, converter.Defaults, tempo, rtf.text);
  return true;
}

void StartPage::cmdscuchacumpo_Click() {
  if (BuildComposedMelody()) {
    state_.program.gMelody.Text = melodiasube;
    state_.Play(Sounding::kComposer);
  }
}

void StartPage::cmdsubecompo_Click() {
  if (BuildComposedMelody()) {
    subemelodia(txtcomponombremelodia.text);
  }
}

void StartPage::cmdscuchartttl_Click() {
  state_.program.gMelody.Text = txtrtttlsube.text;
  state_.Play(Sounding::kRtttl);
}

void StartPage::cmdsubirmelortttl_Click() {
  lblMsg.caption.clear();
  melodiasube = txtrtttlsube.text;
  // A text without ":" is an invalid argument here, which nothing catches.
  subemelodia(std::string(core::Left(melodiasube, core::InStr(melodiasube, ":") - 1)));
}

void StartPage::txtcompoTempo_KeyPress(std::int16_t& KeyAscii) {
  const bool digit = KeyAscii >= '0' && KeyAscii <= '9';
  if (KeyAscii != kBackspace && (!digit || txtcompoTempo.text.size() >= kTempoDigits)) {
    KeyAscii = 0;
    state_.program.services.shell.Beep();
  }
}

void StartPage::txtmelodiacompo_Change() {
  composerCheck = ComposerCheck(txtmelodiacompo.text);
  nokia3210::CNokia converter;
  converter.SetOriginalText(txtmelodiacompo.text);
  converter.Convert();
  const std::string tempo =
      IsTempo(txtcompoTempo.text) ? txtcompoTempo.text : std::string(kDrawnTempo);
  composerDrawing =
      MelodyDrawing(RtttlText("x", converter.Defaults, tempo, converter.ConvertedNotes()),
                    state_.program.gPhoneModel);
}

void StartPage::txtrtttlsube_Change() {
  rtttlCheck = RtttlCheck(txtrtttlsube.text);
  rtttlDrawing = MelodyDrawing(txtrtttlsube.text, state_.program.gPhoneModel);
}

}  // namespace tonadex::app
