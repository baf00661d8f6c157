#include <algorithm>
#include <memory>

#include "app/form1.h"
#include "core/message_box.h"
#include "core/number.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "nokia3210/cnokia.h"
#include "phones/formats.h"

// The start page: composer and RTTTL box.
namespace tonadex::app {
namespace {

using namespace core::literals;

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

// The converter, made on first use.
nokia3210::CNokia& Form1::Converter() {
  if (converter_ == nullptr) {
    converter_ = std::make_unique<nokia3210::CNokia>();
    converter_->ShowType = nokia3210::NoteKind::kRTTTL;
    converter_->Folder = files::TextFromPath(program_.ProgramFolder());
  }
  return *converter_;
}

void Form1::convierteCompositor() {
  nokia3210::CNokia& converter = Converter();
  converter.ShowType = nokia3210::NoteKind::kRTTTL;
  converter.Convert();
  if (converter.NoteCount() > phones::kComposerNotes) {
    lblMsg.caption = kTooManyNotes;
  }
  rtf.text = converter.ConvertedNotes();
}

// Builds the RTTTL text of the composer into melodiasube; false after a refusal.
bool Form1::BuildComposedMelody() {
  const std::string& name = txtcomponombremelodia.text;
  const std::string& tempo = txtcompoTempo.text;
  lblMsg.caption.clear();
  if (name.empty() || !IsTempo(tempo)) {
    core::MsgBox(kNameOrTempoMissing);
    return false;
  }
  if (name.find_first_of("()") != std::string::npos) {
    core::MsgBox(kParenthesesMessage, core::Icon::kExclamation, kParenthesesTitle);
    return false;
  }
  nokia3210::CNokia& converter = Converter();
  converter.Clear();
  converter.SetOriginalText(txtmelodiacompo.text);
  convierteCompositor();
  const std::string_view errors = core::Trim(converter.ConversionErrors());
  if (!errors.empty()) {
    core::MsgBox(std::string(kErrorsMessage) + std::string(errors), core::Icon::kExclamation,
                 kErrorsTitle);
    return false;
  }
  converter.RingToneName = name;
  converter.Tempo = core::ToInt16(core::ToNumber(tempo));
  melodiasube = RtttlText(name, converter.Defaults, tempo, rtf.text);
  return true;
}

void Form1::cmdscuchacumpo_Click() {
  if (BuildComposedMelody()) {
    program_.gMelody.Text = melodiasube;
    Play(Sounding::kComposer);
  }
}

void Form1::cmdsubecompo_Click() {
  if (BuildComposedMelody()) {
    subemelodia(txtcomponombremelodia.text);
  }
}

void Form1::cmdscuchartttl_Click() {
  program_.gMelody.Text = txtrtttlsube.text;
  Play(Sounding::kRtttl);
}

void Form1::cmdsubirmelortttl_Click() {
  lblMsg.caption.clear();
  melodiasube = txtrtttlsube.text;
  // A text without ":" is an invalid argument here, which nothing catches.
  subemelodia(std::string(core::Left(melodiasube, core::InStr(melodiasube, ":") - 1)));
}

void Form1::txtcompoTempo_KeyPress(std::int16_t& KeyAscii) {
  const bool digit = KeyAscii >= '0' && KeyAscii <= '9';
  if (KeyAscii != kBackspace && (!digit || txtcompoTempo.text.size() >= kTempoDigits)) {
    KeyAscii = 0;
    program_.services.shell.Beep();
  }
}

void Form1::txtmelodiacompo_Change() {
  composerCheck = ComposerCheck(txtmelodiacompo.text);
  nokia3210::CNokia converter;
  converter.SetOriginalText(txtmelodiacompo.text);
  converter.Convert();
  const std::string tempo =
      IsTempo(txtcompoTempo.text) ? txtcompoTempo.text : std::string(kDrawnTempo);
  composerDrawing = MelodyDrawing(
      RtttlText("x", converter.Defaults, tempo, converter.ConvertedNotes()), program_.gPhoneModel);
}

void Form1::txtrtttlsube_Change() {
  rtttlCheck = RtttlCheck(txtrtttlsube.text);
  rtttlDrawing = MelodyDrawing(txtrtttlsube.text, program_.gPhoneModel);
}

}  // namespace tonadex::app
