#include "app/form1.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "app/layout.h"
#include "app/words.h"
#include "core/message_box.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"
#include "import/recognise.h"
#include "midi/playback.h"
#include "net/addresses.h"
#include "phones/phone_description.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using F = Form1;

constexpr std::array<std::int16_t, 4> kHiddenAtStart = {kSearchPage, kRepertoirePage, kInternetPage,
                                                        kOptionsPage};
constexpr std::string_view kNotKept = u8"No se ha podido guardar la melodía: "_w;
constexpr std::string_view kNotOpened = u8"No se ha podido abrir la melodía: "_w;
constexpr std::string_view kNotOpenedFiles = u8"No se ha podido abrir:"_w;
constexpr std::string_view kOpenedWithRemarks = "Abierto, con estos avisos:";
constexpr std::string_view kAddTitle = u8"Abrir melodías de cualquier formato"_w;
constexpr std::string_view kRecoverTitle = u8"Recuperar melodías de la papelera"_w;
constexpr std::size_t kMostLines = 12;
constexpr std::string_view kMoreLines = u8"…"_w;
constexpr std::string_view kHelpFile = "TONADEX.HLP";
// Flag file of the separate updater, which only looks at which of the two names exists.
constexpr std::string_view kNoUpdateMark = "noactualiza.tdx";
constexpr std::string_view kUpdateMark = "actualiza.tdx";
constexpr std::uint32_t kSaveMs = 1800;  // from a change until it is written

// The mnemonics of the navigation row and of any page must be different.
constexpr ControlInfo Go(std::string_view name, Control F::*member, std::string_view caption,
                         const char* icon, std::string_view help, Handler click, std::int16_t page,
                         std::string_view shortcut) {
  ControlInfo button = Button(Look::kNavigation, name, member, caption, icon, help, click);
  button.leadsTo = page;
  return WithKeys(button, shortcut);
}

constexpr auto kRows = std::to_array<ControlInfo>({
    Go("cmdinicio", &F::cmdinicio, "&Inicio", "inicio",
       u8"Componer una melodía o pegarla en RTTTL, escucharla y subirla"_w, &F::cmdinicio_Click,
       kStartPage, "Ctrl+1"),
    Go("cmdbuscar", &F::cmdbuscar, "&Buscar", "buscar",
       u8"Buscar melodías en el servidor y descargarlas"_w, &F::cmdbuscar_Click, kSearchPage,
       "Ctrl+2"),
    Go("cmdrepertorio", &F::cmdrepertorio, "&Repertorio", "repertorio",
       u8"Escuchar, convertir e imprimir tus melodías"_w, &F::cmdrepertorio_Click, kRepertoirePage,
       "Ctrl+3"),
    Go("cmd906", &F::cmd906, "I&nternet", "internet", u8"La página del servidor de melodías"_w,
       &F::cmd906_Click, kInternetPage, "Ctrl+4"),
    Go("cmdopciones", &F::cmdopciones, "&Opciones", "opciones", u8"Elegir tu móvil"_w,
       &F::cmdopciones_Click, kOptionsPage, "Ctrl+5"),
    Button(Look::kLink, "phoneButton", &F::phoneButton, "", "movil", words::kChoosePhone,
           &F::cmdopciones_Click),
    Go("cmdayuda", &F::cmdayuda, "A&yuda", "ayuda", "El manual de Tonadex (F1)", &F::cmdayuda_Click,
       kNoPage, "F1"),
    Words("playingText", &F::playingText, "", Font::kTitle),
    Words("silentLabel", &F::silentLabel, words::kSilent, Font::kBody, Tone::kBad),
    Words("playingPosition", &F::playingPosition, ""),
    Button(Look::kPrimary, "stopButton", &F::stopButton, words::kAccept, "",
           "Dejar de reproducir (Intro, Esc o espacio)", &F::stopButton_Click),
    Button(Look::kBusyLine, "waitingLine", &F::waitingLine, words::kWaiting, "", "", nullptr),
    Row(Look::kTimer, "saveTimer", &F::saveTimer, {}, {Event::kTick, &F::saveTimer_Timer}),
});

constexpr auto kPages = std::to_array<Page>({
    {kSearchPage, &SearchPage::Layout, false, true},
    {kStartUpPage, &WebPage::Layout},
    {kRepertoirePage, &RepertoirePage::Layout, true},
    {kInternetPage, &WebPage::Layout},
    {kOptionsPage, &OptionsPage::Layout},
    {kStartPage, &StartPage::Layout, true},
    {kTypingPage, &TypingPage::Layout, true},
    {kMidiPage, &MidiPage::Layout},
});

// "1:05" for 65 seconds.
std::string TimeInWords(double seconds) {
  const auto whole = static_cast<std::int64_t>(std::max(0.0, seconds));
  const std::string rest = std::to_string(whole % 60);
  return std::to_string(whole / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

// As many lines as fit in a message box.
std::string FirstLines(std::string_view lines) {
  std::size_t end = 0;
  for (std::size_t i = 0; i < kMostLines && end != std::string_view::npos; ++i) {
    end = lines.find(core::kCrLf, end + 1);
  }
  std::string first(lines.substr(0, end));
  return end == std::string_view::npos ? first : first.append(core::kCrLf).append(kMoreLines);
}

void RenameMark(const std::filesystem::path& folder) {
  std::error_code ignored;
  if (!std::filesystem::exists(folder / kUpdateMark, ignored)) {
    std::filesystem::rename(folder / kNoUpdateMark, folder / kUpdateMark, ignored);
  }
}

}  // namespace

// ---- The table and the layout of all pages ------------------------------------------------------

std::span<const ControlInfo> Form1::Rows() {
  return kRows;
}

std::span<const ControlInfo> Controls() {
  static const std::vector<ControlInfo> all = [] {
    std::vector<ControlInfo> rows;
    for (const auto& part :
         {Form1::Rows(), WebPage::Rows(), SearchPage::Rows(), RepertoirePage::Rows(),
          OptionsPage::Rows(), StartPage::Rows(), TypingPage::Rows(), MidiPage::Rows()}) {
      rows.insert(rows.end(), part.begin(), part.end());
    }
    return rows;
  }();
  return all;
}

const ControlInfo& InfoOf(Control Form1::*member) {
  return *std::ranges::find(Controls(), member, &ControlInfo::member);
}

const ControlInfo* FindControl(std::string_view name) {
  const auto found = std::ranges::find(Controls(), name, &ControlInfo::name);
  return found == Controls().end() ? nullptr : &*found;
}

Handler HandlerOf(const ControlInfo& info, Event event) {
  for (const EventHandler& each : {info.on, info.also}) {
    if (each.handler != nullptr && each.event == event) {
      return each.handler;
    }
  }
  return nullptr;
}

std::span<const Page> Pages() {
  return kPages;
}

Part PageLayout(std::int16_t page, int width) {
  const auto found = std::ranges::find(kPages, page, &Page::number);
  return found == kPages.end() ? Column({}) : found->layout(found->IsWide(width));
}

Part WindowLayout(Part page) {
  Part bar =
      Row({The(&F::cmdinicio), The(&F::cmdbuscar), The(&F::cmdrepertorio), The(&F::cmd906),
           The(&F::cmdopciones), Stretch(), The(&F::phoneButton).Shrinks(), The(&F::cmdayuda)})
          .Gap(look::kFieldGap)
          .Margins(look::kGrid, 0, 0);
  bar.frame = Part::Frame::kBar;
  // The waiting line overlaps the top of the page.
  Part foot = Row({The(&F::playingText).Weight(1), The(&F::silentLabel), The(&F::playingPosition),
                   The(&F::stopButton)})
                  .Gap(look::kPageMargin)
                  .Margins(look::kPageMargin, look::kGrid, look::kGrid);
  foot.frame = Part::Frame::kBar;
  return Column({std::move(bar), The(&F::waitingLine).Heights(0, 0), WebPage::BannerLayout(),
                 std::move(page).Weight(1).Scrolls(), std::move(foot)})
      .Gap(0);
}

// ---- The window ---------------------------------------------------------------------------------

Form1::Form1(Program& theProgram)
    : SharedState(theProgram),
      StartPage(static_cast<SharedState&>(*this)),
      SearchPage(static_cast<SharedState&>(*this)),
      RepertoirePage(static_cast<SharedState&>(*this)),
      OptionsPage(static_cast<SharedState&>(*this)),
      TypingPage(static_cast<SharedState&>(*this)),
      MidiPage(static_cast<SharedState&>(*this)),
      WebPage(static_cast<SharedState&>(*this)),
      session_(theProgram.ProgramFolder() / kStateFile) {
  for (const ControlInfo& info : Controls()) {
    Control& control = this->*info.member;
    control.caption = info.caption;
    control.tone = info.tone;
    control.visible = info.look != Look::kStorage;
    control.checked = info.look == Look::kPrimary;
  }
  for (Control* control :
       {&waitingLine, &playingText, &silentLabel, &playingPosition, &stopButton}) {
    control->visible = false;
  }
  for (const std::int16_t page : {kStartPage, kTypingPage, kMidiPage}) {
    for (const auto member : PageControls(page)) {
      (this->*member).visible = false;
    }
  }
  saveTimer.enabled = false;
  saveTimer.interval = kSaveMs;
  session_.Restore(*this);
  UseVoice();
  txtmelodiacompo_Change();
  txtrtttlsube_Change();
}

Form1::~Form1() {
  saveTimer_Timer();
}

void Form1::saveTimer_Timer() {
  session_.Note(*this);
  session_.Save();
  saveTimer.enabled = false;
}

void SharedState::Play(Sounding what, core::RTTTLMelody& melody) {
  struct Scope {
    Sounding& sounding;
    ~Scope() { sounding = Sounding::kNothing; }
  } const scope{sounding};
  sounding = what;
  soundLength = MelodyDrawing(melody.Text).soundLength;
  midi::PlayMelody(melody, program.services.sequencer, program.voice);
}

void Form1::Form_Load() {
  for (const std::int16_t page : kHiddenAtStart) {
    paginaactual = page;
    ocultapagina();
  }
  paginaactual = kStartUpPage;
  Browse(net::StartPageAddress(program.gVersion));
  formReady_ = true;
}

void Form1::Form_QueryUnload() {
  if (paginaactual == kOptionsPage) {
    SaveModel();
  }
  saveTimer_Timer();
  if (playing_) {  // its handler has not returned
    program.closing = true;
    playing_ = false;
  } else if (program.busy) {
    program.closing = true;
    GiveUpRequest(program);
  } else {
    program.services.shell.End();
  }
}

void Form1::ocultapagina() {
  for (const auto member : PageControls(paginaactual)) {
    (this->*member).visible = false;
  }
  if (paginaactual == kOptionsPage) {
    CloseOptions(formReady_);
  }
  if (paginaactual == kTypingPage) {
    CloseGuide();
  }
  if (paginaactual == kMidiPage) {
    CloseMidi();
  }
}

// False when the page is already shown: a second click does nothing.
bool Form1::LeaveFor(std::int16_t page) {
  if (paginaactual == page) {
    return false;
  }
  NavigateBanner();
  return true;
}

void Form1::ShowPage(std::int16_t page) {
  ocultapagina();
  for (const auto member : PageControls(page)) {
    (this->*member).visible = true;
  }
  paginaactual = page;
  ShowBanner();
}

void Form1::cmdinicio_Click() {
  if (LeaveFor(kStartPage)) {
    ShowPage(kStartPage);
    core::SkipErrors([this] { Converter(); });
    txtmelodiacompo_Change();  // the phone may have changed
    CheckRtttlBox();
  }
}

void Form1::cmdbuscar_Click() {
  RenameMark(program.ProgramFolder());
  if (LeaveFor(kSearchPage)) {
    ShowPage(kSearchPage);
    ClearSearch();
  }
}

void Form1::cmdrepertorio_Click() {
  if (LeaveFor(kRepertoirePage)) {
    core::InitMelody(program.gMelody, program.services.shell.TempPath());
    FillRepertoire();
    ShowPage(kRepertoirePage);
    SelectLast();
  }
}

void Form1::ShowInRepertoire(const std::string& file) {
  if (!file.empty()) {
    cmdrepertorio_Click();
    ShowFile(file);
  }
}

void Form1::KeepMelody(std::string_view text) {
  std::string file;
  if (Try(kNotKept, [&] { file = Store().Save(text); })) {
    ShowInRepertoire(file);
  }
}

void Form1::saveComposed_Click() {
  if (BuildComposedMelody()) {
    KeepMelody(melodiasube);
  }
}

void Form1::keepNewest_Click() {
  if (const std::string text = NewestMelody(); !text.empty()) {
    KeepMelody(text);
  }
}

void Form1::FilesDropped(std::span<const std::filesystem::path> paths) {
  if (paths.size() == 1) {
    const auto bytes = files::ReadWhole(paths.front(), midi::kMaxSmfBytes);
    if (bytes && import::RecogniseFile(*bytes) == import::FileKind::kMidi) {
      return OpenMidiFile(*bytes, files::TextFromPath(paths.front().filename()));
    }
  }
  MelodyStore::Added added;
  Try(kNotKept, [&] { Store().Add(paths, added); });
  ShowInRepertoire(added.last);
  if (!added.remarks.empty()) {
    core::MsgBox(std::string(kOpenedWithRemarks) + FirstLines(added.remarks),
                 core::Icon::kInformation);
  }
  if (!added.refused.empty()) {
    core::MsgBox(std::string(kNotOpenedFiles) + FirstLines(added.refused),
                 core::Icon::kExclamation);
  }
}

void Form1::AskForFiles(std::string_view title, const std::filesystem::path& folder) {
  const auto files = program.services.fileDialogs.AskOpen(title, folder);
  if (!files.empty()) {
    FilesDropped(files);
  }
}

void Form1::addButton_Click() {
  AskForFiles(kAddTitle, {});
}

void Form1::recoverItem_Click() {
  AskForFiles(kRecoverTitle, program.BinFolder());
}

void Form1::editItem_Click() {
  std::string text;
  if (!SelectedName().empty() && Try(kNotOpened, [&] { text = SelectedMelody(); })) {
    cmdinicio_Click();
    EditRtttl(std::move(text));
  }
}

void Form1::cmd906_Click() {
  if (paginaactual == kInternetPage) {
    return;
  }
  if (paginaactual != kStartUpPage) {  // which shows WebBrowser1 already
    ocultapagina();
  }
  Browse(net::kInternetPagePath);
  paginaactual = kInternetPage;
}

void Form1::cmdopciones_Click() {
  if (LeaveFor(kOptionsPage)) {
    ShowPage(kOptionsPage);
    OpenOptions();
  }
}

void Form1::cmdayuda_Click() {
  program.services.shell.OpenHelp(program.ProgramFolder() / kHelpFile);
}

Control Form1::*Form1::ShowPlaying(const core::Message& message) {
  if (sounding == Sounding::kNothing || message.title != midi::kPlayingTitle) {
    return nullptr;
  }
  playing_ = true;
  playingText.caption = RowLine(message.text);
  FollowPlaying(0);
  return &Form1::stopButton;
}

bool Form1::FollowPlaying(double ms) {
  const double length = std::ceil(soundLength / 1000);
  const std::string position =
      TimeInWords(ms < soundLength ? ms / 1000 : length) + " de " + TimeInWords(length);
  const bool silent = program.services.sequencer.IsSilent();
  const bool changed = position != playingPosition.caption || silent != silentLabel.visible;
  playingPosition.caption = position;
  silentLabel.visible = silent;
  return MarkSounding(sounding == Sounding::kRepertoire ? ms : -1) || changed;
}

void Form1::teclearButton_Click() {
  if (const ShownResult* result = ResultToType(); result != nullptr && OpenGuide(*result)) {
    ShowPage(kTypingPage);
  }
}

void Form1::typeItem_Click() {
  picconvertir_Click();
  teclearButton_Click();
}

void Form1::OpenMidiFile(std::string_view bytes, std::string_view name) {
  if (paginaactual != kMidiPage) {
    beforeMidi_ = paginaactual;
  }
  if (Try(kNotOpened, [&] { ReadMidiFile(bytes, name); }) && paginaactual != kMidiPage) {
    ShowPage(kMidiPage);
  }
}

void Form1::useMidi_Click() {
  const std::string text = MidiMelody();
  cmdinicio_Click();
  EditRtttl(text);
}

void Form1::leaveMidi_Click() {
  const std::int16_t page = beforeMidi_;
  page == kRepertoirePage ? cmdrepertorio_Click() : cmdinicio_Click();
}

void Form1::List1_DblClick() {
  if (paginaactual == kRepertoirePage) {
    picreproducir_Click();
  } else {
    picdescargar_Click();
  }
}

bool Form1::Allows(const ControlInfo& list, const MenuItem& item) const {
  return paginaactual == list.menuPage && item.handler != nullptr &&
         (!item.needsRow || (this->*list.member).listIndex >= 0);
}

void Form1::Refresh() {
  // In the guide the repertoire's button stays marked.
  const std::int16_t shown = paginaactual == kTypingPage ? kRepertoirePage : paginaactual;
  const auto page = std::ranges::find(kPages, paginaactual, &Page::number);
  RefreshBanner(page != kPages.end() && page->banner);
  for (const ControlInfo& info : Rows()) {
    (this->*info.member).checked = info.leadsTo != kNoPage && info.leadsTo == shown;
  }
  phoneButton.caption = phones::PhoneName(ChosenModel());
  waitingLine.visible = waitingLine.checked = program.busy;
  playingText.visible = playingPosition.visible = stopButton.visible = playing_;
  if (!playing_) {
    silentLabel.visible = false;
    MarkSounding(-1);
  }
  saveTimer.enabled = session_.Note(*this);
  RefreshSearch();
  RefreshRepertoire();
  RefreshOptions();
  RefreshStart();
  RefreshTyping();
  RefreshMidi();
}

}  // namespace tonadex::app
