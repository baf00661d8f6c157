#include "app/pages/start_page.h"

#include <algorithm>
#include <array>
#include <utility>

#include "app/composer_keys.h"
#include "app/form1.h"
#include "app/layout.h"
#include "app/words.h"
#include "core/melody_file.h"
#include "core/message_box.h"
#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "net/addresses.h"
#include "net/listing.h"
#include "net/upload.h"
#include "nokia3210/cnokia.h"
#include "phones/formats.h"
#include "phones/phone_description.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using F = Form1;

constexpr std::string_view kNameOrTempoMissing = u8"Introduce un nombre de melodía y un tempo."_w;
constexpr std::string_view kParenthesesMessage =
    u8"El nombre de la melodía no puede contener paréntesis"_w;
constexpr std::string_view kParenthesesTitle = u8"Nombre no válido"_w;
constexpr std::string_view kTooManyNotes = "ADVERTENCIA: La melodia tiene mas de 50 notas.";
// Also shown by the button that plays, although it uploads nothing: deliberate.
constexpr std::string_view kErrorsMessage =
    "La melodia no se ha subido pues ha habido algunos errores al leer la melodia:\r";
constexpr std::string_view kErrorsTitle = "Errores en la melodia";

constexpr std::string_view kNothingToRepair = u8"No se ha encontrado ninguna nota en el texto."_w;
constexpr std::string_view kNothingBad = "No hay nada que arreglar.";
constexpr std::string_view kSeveralFound = u8" melodías en el texto: ¿cuál quieres?"_w;
constexpr std::string_view kChangesFound = u8"Al aplicarlo cambia esto:"_w;

constexpr std::size_t kTempoDigits = 3;
constexpr std::int16_t kBackspace = 8;
constexpr std::string_view kDrawnTempo = "125";  // while the tempo box holds no number
constexpr std::array<std::string_view, 10> kUsualTempos = {"63",  "80",  "100", "112", "125",
                                                           "140", "160", "180", "200", "225"};
constexpr std::string_view kFirstTempo = "125";
constexpr int kTempoWidth = 96, kLowestNotes = 44, kTwoRows = 60, kLowestDrawing = 48;
constexpr int kLeastCard = 504, kLeastSide = 280, kLowestNews = 48, kLowestChanges = 80,
              kWidestSide = 600, kWidestNews = 480;

constexpr std::string_view kApplyHelp = u8"Poner en el cuadro la melodía arreglada"_w;

// A button that both boxes have; the accessible names of the two differ: they are the tooltips.
constexpr ControlInfo Action(std::string_view name, Control F::*member, std::string_view caption,
                             const char* icon, std::string_view help, Handler click,
                             Look look = Look::kButton) {
  return Button(look, name, member, caption, icon, help, click, help);
}

constexpr std::string_view kMelodyWays = u8"Búscala o escríbela aquí"_w;
constexpr std::string_view kResultWays = u8"Conviértela y pásala a tu móvil"_w;

constexpr std::string_view kNewest = u8"Lo último"_w;
constexpr std::string_view kNoNews = u8"Aquí verás las últimas melodías del servidor."_w;
constexpr std::string_view kNoServer = "El servidor no responde.";
constexpr std::string_view kNotFetched = u8"El servidor no ha dado esa melodía."_w;
constexpr std::size_t kNewestRows = 40;
constexpr std::uint32_t kNewsMs = 50;  // the page is painted first

constexpr MenuItem kNewsMenu[] = {
    {"&Escuchar", "", &F::hearNewest_Click, true, "reproducir"},
    {"&Descargar", "", &F::keepNewest_Click, true, "bajar"},
};

constexpr ControlInfo Newest() {
  ControlInfo list = Row(Look::kList, "newsList", &F::newsList, u8"Lo último del servidor"_w,
                         {Event::kActivate, &F::hearNewest_Click});
  list.menu = kNewsMenu;
  list.menuPage = kStartPage;
  return list;
}

constexpr auto kRows = std::to_array<ControlInfo>({
    Button(Look::kCard, "phoneCard", &F::phoneCard, u8"1. Tu móvil"_w, "movil", words::kChoosePhone,
           &F::cmdopciones_Click),
    Button(Look::kCard, "melodyCard", &F::melodyCard, u8"2. Una melodía"_w, "buscar",
           words::kGoToSearch, &F::cmdbuscar_Click),
    Button(Look::kCard, "resultCard", &F::resultCard, "3. El resultado", "convertir",
           "Abrir tu repertorio", &F::cmdrepertorio_Click),
    Words("lbltitulocompo", &F::lbltitulocompo, "Compositor", Font::kTitle),
    Words("lblporfacomprueba", &F::lblporfacomprueba,
          u8"Por favor, escucha la melodía antes de subirla."_w, Font::kSmall, Tone::kMuted, true),
    Label("lblnombremelodiasube", &F::lblnombremelodiasube, "No&mbre", &F::txtcomponombremelodia),
    Kept(Row(Look::kLine, "txtcomponombremelodia", &F::txtcomponombremelodia,
             u8"Nombre de la melodía"_w, {Event::kChange, &F::txtmelodiacompo_Change}),
         {"compositor.nombre"}),
    Label("lbltemposube", &F::lbltemposube, "&Tempo", &F::txtcompoTempo),
    Kept(Row(Look::kComboBox, "txtcompoTempo", &F::txtcompoTempo, "Tempo en pulsos por minuto",
             {Event::kChange, &F::txtmelodiacompo_Change}, {}, "Pulsos por minuto"),
         {"compositor.tempo"}),
    Label("lblformatocompo", &F::lblformatocompo,
          u8"Not&as, como en el compositor de Nokia: 8c1 4.#f2 2-"_w, &F::txtmelodiacompo),
    Kept(Row(Look::kArea, "txtmelodiacompo", &F::txtmelodiacompo, u8"Notas de la melodía"_w,
             {Event::kChange, &F::txtmelodiacompo_Change}),
         {"compositor.notas"}),
    Words("composerCheckLabel", &F::composerCheckLabel, ""),
    Row(Look::kKeys, "keyRow", &F::keyRow),
    View("composerView", &F::composerView, &F::composerDrawing, Sounding::kComposer),
    Words("lblMsg", &F::lblMsg, "", Font::kBody, Tone::kBad),
    Action("cmdscuchacumpo", &F::cmdscuchacumpo, "&Escuchar", "reproducir",
           u8"Escuchar la melodía compuesta"_w, &F::cmdscuchacumpo_Click),
    Action("cmdsubecompo", &F::cmdsubecompo, "&Subir", "subir",
           u8"Subir al servidor la melodía compuesta"_w, &F::cmdsubecompo_Click),
    Action("saveComposed", &F::saveComposed, "Guar&dar en mi repertorio", "guardar",
           u8"Guardar la melodía compuesta en mi repertorio; hacen falta notas"_w,
           &F::saveComposed_Click, Look::kPrimary),
    Words("lbltitulortttl", &F::lbltitulortttl, u8"Melodía en RTTTL"_w, Font::kTitle),
    Label("labelformatortttl", &F::labelformatortttl, "Te&xto RTTTL", &F::txtrtttlsube),
    Kept(Row(Look::kArea, "txtrtttlsube", &F::txtrtttlsube, "Texto RTTTL",
             {Event::kChange, &F::txtrtttlsube_Change}),
         {"rtttl"}),
    Words("rtttlCheckLabel", &F::rtttlCheckLabel, ""),
    Action("repairButton", &F::repairButton, "Arre&glar", "",
           u8"Ver qué se puede arreglar en el texto RTTTL"_w, &F::repairButton_Click),
    Action("undoRepairButton", &F::undoRepairButton, "Des&hacer", "",
           u8"Volver al texto que había antes"_w, &F::undoRepairButton_Click),
    Words("repairLabel", &F::repairLabel, "", Font::kBody, Tone::kText),
    Row(Look::kList, "repairList", &F::repairList, u8"Melodías encontradas en el texto"_w,
        {Event::kClick, &F::repairList_Click}, {Event::kActivate, &F::applyRepairButton_Click}),
    Row(Look::kNotices, "repairNotices", &F::repairNotices, "Lo que cambia al arreglar el texto"),
    Button(Look::kPrimary, "applyRepairButton", &F::applyRepairButton, "A&plicar", "", kApplyHelp,
           &F::applyRepairButton_Click, kApplyHelp),
    WithKeys(Action("cancelRepairButton", &F::cancelRepairButton, "&Cancelar", "",
                    u8"Dejar el texto como está (Esc)"_w, &F::cancelRepairButton_Click),
             "Esc"),
    View("rtttlView", &F::rtttlView, &F::rtttlDrawing, Sounding::kRtttl),
    Action("cmdscuchartttl", &F::cmdscuchartttl, "Esc&uchar", "reproducir",
           "Escuchar el texto RTTTL", &F::cmdscuchartttl_Click),
    Action("cmdsubirmelortttl", &F::cmdsubirmelortttl, "Subir RTTT&L", "subir",
           "Subir al servidor el texto RTTTL", &F::cmdsubirmelortttl_Click),
    Action("saveRtttl", &F::saveRtttl, "Guardar en mi repertorio", "guardar",
           u8"Guardar el texto RTTTL en mi repertorio; hace falta una melodía sin faltas"_w,
           &F::saveRtttl_Click, Look::kPrimary),
    Words("newsTitle", &F::newsTitle, kNewest, Font::kTitle),
    Newest(),
    Row(Look::kTimer, "newsTimer", &F::newsTimer, "", {Event::kTick, &F::newsTimer_Timer}),
    Open(Look::kMark, "openButton", &F::openButton, u8"Abrir…"_w, &F::addButton_Click),
    Row(Look::kStorage, "rtf", &F::rtf),
});

void DrawCheck(Control& label, Verdict verdict, const std::string& sentence) {
  label.caption = sentence;
  label.tone = verdict == Verdict::kGood  ? Tone::kGood
               : verdict == Verdict::kBad ? Tone::kBad
                                          : Tone::kMuted;
}

// What applying would do: the changes, a line each, and the melody.
std::string RepairWords(const phones::RepairedMelody& melody) {
  std::string words;
  for (const std::string& change : melody.changes) {
    words.append(change).append(core::kCrLf);
  }
  return words.append(words.empty() ? "" : core::kCrLf).append(melody.text);
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

Part StartPage::Layout(bool wide) {
  const auto view = [](Control F::*drawing, int lowest) {
    return The(drawing).Weight(3).Heights(lowest, look::kTallestView);
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
      Row({The(&F::composerCheckLabel), The(&F::lblMsg).Weight(1)}).Gap(look::kPageMargin),
      The(&F::keyRow),
      view(&F::composerView, kLowestDrawing),
      Row({Stretch(), The(&F::cmdscuchacumpo), The(&F::cmdsubecompo), The(&F::saveComposed)})
          .Wraps(),
  });
  Part rtttl = Card({
      Row({The(&F::lbltitulortttl).Weight(1), The(&F::openButton)}),
      notes(&F::labelformatortttl, &F::txtrtttlsube),
      Row({The(&F::rtttlCheckLabel).Weight(1), The(&F::repairButton), The(&F::undoRepairButton)}),
      The(&F::repairLabel),
      The(&F::repairList).Weight(2).Heights(kTwoRows),
      The(&F::repairNotices).Weight(8).Heights(kLowestChanges),
      Row({Stretch(), The(&F::cancelRepairButton), The(&F::applyRepairButton)}).Wraps(),
      view(&F::rtttlView, kLowestDrawing),
      Row({Stretch(), The(&F::cmdscuchartttl), The(&F::cmdsubirmelortttl), The(&F::saveRtttl)})
          .Wraps(),
  });
  Part news = Card({The(&F::newsTitle), The(&F::newsList).Weight(1).Heights(kLowestNews)});
  std::vector<Part> columns;
  if (wide) {
    columns.push_back(std::move(composer).Weight(10).Widths(kLeastCard, look::kMeasure));
    columns.push_back(std::move(rtttl).Weight(6).Widths(0, kWidestSide));
    columns.push_back(std::move(news).Weight(5).Widths(0, kWidestNews));
  } else {
    columns.push_back(std::move(composer).Weight(6).Widths(kLeastCard, Part::kUnbounded));
    columns.push_back(Column({std::move(rtttl).Weight(5), std::move(news).Weight(2)})
                          .Weight(5)
                          .Widths(kLeastSide, Part::kUnbounded));
  }
  const int gap = wide ? look::kPageMargin : look::kGrid;
  Part cards = Row(std::move(columns)).Gap(gap).Wraps();
  Part ways = Row({The(&F::phoneCard).Weight(1), The(&F::melodyCard).Weight(1),
                   The(&F::resultCard).Weight(1)})
                  .Gap(gap)
                  .Wraps();
  return Centred(Column({std::move(ways), std::move(cards).Weight(1)}).Gap(gap),
                 look::kMeasure + kWidestSide + kWidestNews + 2 * gap)
      .Margins(look::kPageMargin, look::kGrid, look::kGrid)
      .Scrolls();
}

StartPage::StartPage(SharedState& state) : state_(state) {
  newsTimer.enabled = false;
  newsTimer.interval = kNewsMs;
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
  DrawCheck(composerCheckLabel, composerCheck.verdict, composerCheck.sentence);
  DrawCheck(rtttlCheckLabel, rtttlCheck.verdict, rtttlCheck.sentence);
  const bool here = state_.paginaactual == kStartPage;
  const bool proposed = here && !repairs_.empty();
  repairButton.visible = here && !proposed && unrepaired_.empty();
  undoRepairButton.visible = here && !proposed && !unrepaired_.empty();
  repairList.visible = proposed && repairs_.size() > 1;
  // While repairs are proposed, the box offers only to accept or reject them.
  for (Control* control : {&rtttlCheckLabel, &cmdscuchartttl, &cmdsubirmelortttl}) {
    control->visible = here && !proposed;
  }
  rtttlView.visible = here && !proposed && !txtrtttlsube.text.empty();
  for (Control* control : {&repairLabel, &repairNotices, &applyRepairButton, &cancelRepairButton}) {
    control->visible = proposed;
  }
  phoneCard.text = phones::PhoneName(state_.program.gPhoneModel);
  melodyCard.text = kMelodyWays;
  resultCard.text = kResultWays;
  newsTimer.enabled = here && (!newsAsked_ || newsRuns_);
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
  newsAsked_ = false;
}

void StartPage::newsTimer_Timer() {
  const Program& program = state_.program;
  net::BackgroundGet& newest = program.services.newest;
  if (!std::exchange(newsAsked_, true)) {
    newest.Start(program.serverBase + net::SearchAddress({}));
    newsRuns_ = true;
  }
  const auto reply = newest.Take();
  if (!reply) {
    return;
  }
  newsRuns_ = false;
  newsList.Clear();
  newsList.invitation = reply->came ? kNoNews : kNoServer;
  net::ReadListing(reply->body, true, [this](std::string_view text, std::int32_t number) {
    if (newsList.rows.size() < kNewestRows) {
      newsList.AddRow(text, number);
    }
  });
  newsList.shown = ShownRows(newsList.rows);
}

std::string StartPage::NewestMelody() {
  const ListRow row = newsList.Selected();
  std::string text;
  if (row.text.empty()) {
    return text;
  }
  core::SkipErrors([&] {
    const std::string file = core::MelodyFileName(row.text, row.itemData);
    text = Request(state_.program, net::MelodyAddress(file));
    text = core::UndoSharpEscape(text.substr(0, text.find_first_of(core::kCrLf)));
  });
  if (MelodyDrawing(text).notes.empty()) {
    core::MsgBox(kNotFetched, core::Icon::kExclamation);
    text.clear();
  }
  return text;
}

void StartPage::hearNewest_Click() {
  if (std::string text = NewestMelody(); !text.empty()) {
    state_.program.gMelody.Text = std::move(text);
    state_.Play(Sounding::kTrial, state_.program.gMelody);
  }
}

nokia3210::CNokia& StartPage::Converter() {
  if (converter_ == nullptr) {
    converter_ = std::make_unique<nokia3210::CNokia>();
    converter_->ShowType = nokia3210::NoteKind::kRTTTL;
    converter_->Folder = files::TextFromPath(state_.program.ProgramFolder());
  }
  return *converter_;
}

void StartPage::convierteCompositor() {
  nokia3210::CNokia& converter = Converter();
  converter.ShowType = nokia3210::NoteKind::kRTTTL;
  converter.Convert();
  if (converter.NoteCount() > phones::kComposerNotes) {
    lblMsg.caption = kTooManyNotes;
  }
  rtf.text = converter.ConvertedNotes();
}

bool StartPage::BuildComposedMelody() {
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

void StartPage::cmdscuchacumpo_Click() {
  if (BuildComposedMelody()) {
    state_.program.gMelody.Text = melodiasube;
    state_.Play(Sounding::kComposer, state_.program.gMelody);
  }
}

void StartPage::cmdsubecompo_Click() {
  if (BuildComposedMelody()) {
    subemelodia(txtcomponombremelodia.text);
  }
}

void StartPage::cmdscuchartttl_Click() {
  state_.program.gMelody.Text = txtrtttlsube.text;
  state_.Play(Sounding::kRtttl, state_.program.gMelody);
}

void StartPage::cmdsubirmelortttl_Click() {
  lblMsg.caption.clear();
  melodiasube = txtrtttlsube.text;
  // Without a ":" this throws an invalid argument, which ends the program: deliberate.
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
  saveComposed.enabled = !composerDrawing.notes.empty();
}

void StartPage::txtrtttlsube_Change() {
  repairs_.clear();
  unrepaired_.clear();
  CheckRtttlBox();
}

void StartPage::CheckRtttlBox() {
  const std::string& text = txtrtttlsube.text;
  rtttlCheck = RtttlCheck(text);
  rtttlDrawing = MelodyDrawing(text, state_.program.gPhoneModel);
  txtrtttlsube.faults.clear();
  for (const phones::RtttlFault& fault : rtttlCheck.faults) {
    if (fault.where.length > 0) {
      txtrtttlsube.faults.push_back(fault.where);
    }
  }
  std::ranges::sort(txtrtttlsube.faults, {}, &core::TextRange::start);
  repairButton.enabled = rtttlCheck.verdict == Verdict::kBad;
  // Without a ":" its handler throws, which ends the program.
  cmdsubirmelortttl.enabled = core::Contains(text, ":");
  // The repertoire also takes melodies that the server would refuse.
  saveRtttl.enabled = phones::CheckRtttl(text).verdict == Verdict::kGood;
  cmdsubirmelortttl.whyDisabled = rtttlCheck.sentence;
  repairButton.whyDisabled = kNothingBad;
}

void StartPage::repairButton_Click() {
  repairs_ = phones::RepairRtttl(txtrtttlsube.text);
  if (repairs_.empty()) {
    core::MsgBox(kNothingToRepair, core::Icon::kInformation);
    return;
  }
  repairList.Clear();
  for (const phones::RepairedMelody& melody : repairs_) {
    repairList.AddRow(melody.name);
  }
  repairLabel.caption = repairs_.size() > 1
                            ? std::to_string(repairs_.size()) + std::string(kSeveralFound)
                            : std::string(kChangesFound);
  repairList.Select(0);
  repairList_Click();
  state_.focusNext = repairs_.size() > 1 ? &F::repairList : &F::applyRepairButton;
}

void StartPage::repairList_Click() {
  if (const auto* repair = repairList.SelectedOf(repairs_)) {
    repairNotices.text = RepairWords(*repair);
  }
}

void StartPage::applyRepairButton_Click() {
  if (auto* repair = repairList.SelectedOf(repairs_)) {
    EditRtttl(std::move(repair->text));
    state_.focusNext = saveRtttl.enabled ? &F::saveRtttl : &F::txtrtttlsube;
  }
}

void StartPage::EditRtttl(std::string text) {
  state_.focusNext = &F::txtrtttlsube;
  std::string before = txtrtttlsube.text;
  SetRtttl(std::move(text));
  unrepaired_ = before == txtrtttlsube.text ? std::string() : std::move(before);
}

void StartPage::cancelRepairButton_Click() {
  repairs_.clear();
  state_.focusNext = &F::txtrtttlsube;
}

void StartPage::undoRepairButton_Click() {
  if (!unrepaired_.empty()) {
    SetRtttl(std::exchange(unrepaired_, {}));
  }
}

void StartPage::SetRtttl(std::string text) {
  txtrtttlsube.text = std::move(text);
  txtrtttlsube_Change();
}

}  // namespace tonadex::app
