#include "app/pages/repertoire_page.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>
#include <optional>
#include <system_error>
#include <utility>

#include "app/cls_open_save.h"
#include "app/form1.h"
#include "app/layout.h"
#include "app/look.h"
#include "app/print_sheet.h"
#include "app/save_melody.h"
#include "app/words.h"
#include "core/error_words.h"
#include "core/melody_file.h"
#include "core/message_box.h"
#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"
#include "phones/catalogue.h"
#include "phones/conversion.h"
#include "phones/formats.h"
#include "phones/keypads.h"
#include "phones/transpose.h"
#include "phones/typing_steps.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using F = Form1;

constexpr int kListWidth = 280, kWidestList = 400;
constexpr int kTempoWidth = 64, kSliderWidth = 120, kLeastTitle = 160, kLeastSide = 200;
constexpr int kLowestDisplay = 120, kLowestNotices = 56, kTallestNotices = 320, kLowestSide = 104;

constexpr std::string_view kEmptyRepertoire =
    u8"Tu repertorio está vacío. Busca melodías en el servidor y descárgalas: aparecerán aquí."_w;
constexpr std::string_view kChoosePhoneFirst =
    u8"Elige tu móvil en Opciones; después podrás convertir tus melodías."_w;
constexpr std::string_view kConvertFirst =
    u8"Elige una melodía y pulsa Convertir: aquí verás lo que necesita tu móvil."_w;

constexpr std::string_view kNothingFiltered = u8"Ninguna melodía tiene esas palabras."_w;
constexpr std::string_view kFilter = u8"Filtrar (Ctrl+F)"_w;
constexpr std::string_view kNotRenamed = "No se ha podido cambiar el nombre: ";
constexpr std::string_view kNotCopied = "No se ha podido hacer la copia: ";
constexpr std::string_view kNotDeleted = u8"No se ha podido borrar la melodía: "_w;
constexpr std::string_view kNotRestored = u8"No se ha podido recuperar la melodía: "_w;
constexpr std::string_view kNoSemitones = u8"hace falta un número de -36 a 36, y no 0"_w;
constexpr std::string_view kSaved = "Guardado: ";
constexpr std::string_view kNewName = "Nombre nuevo";
constexpr std::string_view kHowManySemitones = u8"Semitonos, de -36 a 36 (12 son una octava)"_w;
constexpr std::uint32_t kFolderMs = 1000;

constexpr MenuItem kMenu[] = {
    {"&Reproducir", "", &F::picreproducir_Click},
    {"&Convertir", "", &F::picconvertir_Click},
    {"&Teclear", "", &F::typeItem_Click},
    {},
    {"&Editar", "", &F::editItem_Click},
    {"Cambiar &nombre", "F2", &F::renameItem_Click},
    {"&Duplicar", "", &F::duplicateItem_Click},
    {"&Subir una octava", "", &F::octaveUpItem_Click},
    {"&Bajar una octava", "", &F::octaveDownItem_Click},
    {u8"Trans&portar…"_w, "", &F::transposeItem_Click},
    {},
    {"B&orrar", "Del", &F::deleteItem_Click},
    {u8"Rec&uperar de la papelera…"_w, "", &F::recoverItem_Click, false},
    {"&Abrir la carpeta", "", &F::openFolderItem_Click, false},
};

constexpr ControlInfo Melodies() {
  ControlInfo list = Row(Look::kList, "List1", &F::List1, u8"Melodías"_w,
                         {Event::kClick, &F::List1_Click}, {Event::kActivate, &F::List1_DblClick});
  list.menu = kMenu;
  list.menuPage = kRepertoirePage;
  return list;
}

constexpr ControlInfo Filter() {
  ControlInfo box = Row(
      Look::kLine, "repertoireFilter", &F::repertoireFilter, "Palabras que buscar en el repertorio",
      {Event::kChange, &F::repertoireFilter_Change}, {Event::kEnter, &F::repertoireFilter_Enter});
  box.shortcut = "Ctrl+F";
  box.below = &F::List1;
  return box;
}

constexpr auto kRows = std::to_array<ControlInfo>({
    Filter(),
    Melodies(),
    Words("entryLabel", &F::entryLabel, ""),
    Row(Look::kLine, "entryBox", &F::entryBox, "Nombre nuevo o semitonos",
        {Event::kEnter, &F::entryButton_Click}),
    Button(Look::kButton, "entryButton", &F::entryButton, "Aceptar", "", "", &F::entryButton_Click),
    WithKeys(Button(Look::kButton, "cancelEntryButton", &F::cancelEntryButton, "Cancelar", "",
                    "Dejarlo como estaba (Esc)", &F::cancelEntryButton_Click),
             "Esc"),
    Open(Look::kButton, "addButton", &F::addButton, u8"&Abrir…"_w, &F::addButton_Click),
    Button(Look::kButton, "undoDeleteButton", &F::undoDeleteButton, "Des&hacer", "",
           u8"Recuperar la melodía borrada"_w, &F::undoDeleteButton_Click),
    Row(Look::kTimer, "folderTimer", &F::folderTimer, "", {Event::kTick, &F::MelodyFolderChanged}),
    Button(Look::kButton, "staleButton", &F::staleButton, "", "convertir",
           u8"Convertir la melodía elegida para tu móvil"_w, &F::picconvertir_Click),
    Button(Look::kButton, "goToSearchButton", &F::goToSearchButton, words::kGoToSearch, "buscar",
           "", &F::cmdbuscar_Click),
    Button(Look::kButton, "picreproducir", &F::picreproducir, "Re&producir", "reproducir",
           u8"Escuchar la melodía elegida"_w, &F::picreproducir_Click),
    Button(Look::kPrimary, "picconvertir", &F::picconvertir, "&Convertir", "convertir",
           u8"Convertir la melodía elegida para tu móvil"_w, &F::picconvertir_Click),
    WithKeys(
        Button(Look::kPrimary, "teclearButton", &F::teclearButton, "T&eclear", "movil",
               u8"Teclear el resultado en el móvil, paso a paso (F5)"_w, &F::teclearButton_Click),
        "F5"),
    Button(Look::kButton, "picimprimir", &F::picimprimir, "I&mprimir", "imprimir",
           u8"Imprimir la melodía convertida"_w, &F::picimprimir_Click),
    Words("lbltextresult", &F::lbltextresult, "", Font::kTitle),
    View("repertoireView", &F::repertoireView, &F::repertoireDrawing, Sounding::kRepertoire),
    Kept(Row(Look::kDisplay, "textresultado", &F::textresultado, u8"Resultado de la conversión"_w),
         {"resultado.letra", look::kSmallestType, look::kLargestType}),
    Button(Look::kButton, "copyButton", &F::copyButton, words::kCopy, "copiar", "",
           &F::copyButton_Click),
    Row(Look::kTimer, "copiedTimer", &F::copiedTimer, "", {Event::kTick, &F::copiedTimer_Timer}),
    Button(Look::kButton, "saveAsButton", &F::saveAsButton, words::kSaveAs, "guardar", "",
           &F::saveAsButton_Click),
    Words("savedText", &F::savedText, "", Font::kBody, Tone::kGood),
    Words("smallType", &F::smallType, "A", Font::kSmall, Tone::kMuted),
    Row(Look::kSlider, "sizeSlider", &F::sizeSlider, words::kTextSize,
        {Event::kChange, &F::sizeSlider_Change}, {}, words::kTextSize),
    Words("largeType", &F::largeType, "A", Font::kTitle, Tone::kMuted),
    Mark("limitMark", &F::limitMark, u8"Mostrar en el dibujo las notas que no caben en el móvil"_w,
         &F::limitMark_Click),
    Mark("rangeMark", &F::rangeMark, u8"Mostrar en el dibujo las notas que el móvil no alcanza"_w,
         &F::rangeMark_Click),
    Mark("wordsMark", &F::wordsMark,
         u8"Teclear te lleva por las teclas; para verlas aquí, elige Pulsaciones en Opciones"_w,
         &F::cmdopciones_Click),
    Mark("foldButton", &F::foldButton, words::kFoldHelp, &F::foldButton_Click),
    Label("Label2", &F::Label2, "Instrucciones y a&visos", &F::Textavisos),
    Label("Label1", &F::Label1, "&Tempo", &F::texttempo),
    Row(Look::kReading, "texttempo", &F::texttempo, "Tempo en pulsos por minuto"),
    Words("tempoUnit", &F::tempoUnit, words::kBeatsPerMinute, Font::kBody, Tone::kMuted),
    Row(Look::kNotices, "Textavisos", &F::Textavisos, "Instrucciones y avisos"),
});

// The names of the regular files in the repertoire, sorted. Hidden files are left out, and those
// whose name Windows-1252 cannot represent, because their row would not lead back to the file.
std::vector<std::string> MelodyFiles(const Program& program) {
  std::vector<std::string> names;
  std::error_code failed;
  for (std::filesystem::directory_iterator at(program.MelodyFolder(), failed), end;
       !failed && at != end; at.increment(failed)) {
    std::string name = files::TextFromPath(at->path().filename());
    std::error_code unknown;
    if (at->is_regular_file(unknown) && !program.services.shell.IsHidden(at->path()) &&
        files::PathFromText(name) == at->path().filename()) {
      names.push_back(std::move(name));
    }
  }
  std::ranges::sort(names, {},
                    [](const std::string& name) { return std::pair(core::Fold(name), name); });
  return names;
}

// The group of each note of the melody in a result for this model, -1 for a note without one.
// `melody` is as the conversion left it.
std::vector<int> NoteGroups(std::string_view model, std::string_view result,
                            const core::RTTTLMelody& melody) {
  const std::vector<ResultGroup> groups = ResultGroups(result);
  std::vector<int> found(
      static_cast<std::size_t>(std::distance(melody.Notes.begin(), melody.Notes.end())), -1);
  const phones::Format* format = phones::FindFormat(model);
  if (format != nullptr && format->code == phones::kComposerCode &&
      groups.size() == found.size()) {  // it has a group for each note
    std::iota(found.begin(), found.end(), 0);
    return found;
  }
  std::size_t at = 0, group = 0;
  for (const phones::TypingStep& step : phones::TypingSteps(model, result, melody)) {
    while (group + 1 < groups.size() && groups[group + 1].text.from <= at) {
      ++group;
    }
    if (step.note >= 0 && found[static_cast<std::size_t>(step.note)] < 0) {
      found[static_cast<std::size_t>(step.note)] = static_cast<int>(group);
    }
    at += step.group.size() + step.after.size();
  }
  return found;
}

int Semitones(std::string_view text) {
  const std::int32_t number = core::FindInt32(text).value_or(0);
  if (number == 0 || std::abs(number) > phones::kMostSemitones) {
    throw core::RunTimeError(core::ErrorNumber::kInvalidArgument, std::string(kNoSemitones));
  }
  return number;
}

class SaveDialogQuestion : public phones::SaveFileQuestion {
 public:
  explicit SaveDialogQuestion(Program& program) : program_(program) {}

  std::optional<std::string> AskSaveFile(const phones::SaveRequest& request) override {
    clsOpenSave dialog(program_.services.fileDialogs);
    dialog.hWnd = static_cast<std::int32_t>(program_.window);
    dialog.DefaultExt = request.DefaultExt;
    dialog.DialogTitle = request.DialogTitle;
    dialog.SetFilter(request.Filter);
    dialog.InitDir = files::TextFromPath(program_.ProgramFolder());
    dialog.FilterIndex = request.FilterIndex;
    dialog.CancelError = request.CancelError;
    return dialog.ShowSave() == kDialogCancelled ? std::nullopt : std::optional(dialog.FileName);
  }

 private:
  Program& program_;
};

}  // namespace

std::span<const ControlInfo> RepertoirePage::Rows() {
  return kRows;
}

// The result gets the most room; the drawing and the notices are below it or, if `wide`, beside it.
Part RepertoirePage::Layout(bool wide) {
  Part list = Column({
                         The(&F::repertoireFilter),
                         The(&F::List1).Weight(1),
                         The(&F::entryLabel),
                         The(&F::entryBox),
                         Row({Stretch(), The(&F::entryButton), The(&F::cancelEntryButton)}).Wraps(),
                         Row({The(&F::addButton), Stretch(), The(&F::undoDeleteButton)}).Wraps(),
                         The(&F::goToSearchButton),
                     })
                  .Weight(wide ? 2 : 0)
                  .Widths(kListWidth, wide ? kWidestList : kListWidth);
  Part drawing = The(&F::repertoireView).Weight(3).Heights(look::kLowestView, look::kTallestView);
  Part notices = Column({Row({The(&F::Label2).Weight(1), The(&F::foldButton)}),
                         The(&F::Textavisos)
                             .Weight(1000)
                             .Heights(kLowestNotices, wide ? Part::kUnbounded : kTallestNotices),
                         Stretch()})
                     .Gap(look::kFieldGap)
                     .Weight(1);
  std::vector<Part> result;
  result.push_back(Row({The(&F::picreproducir), The(&F::picconvertir), The(&F::teclearButton),
                        The(&F::picimprimir), Stretch()})
                       .Wraps());
  result.push_back(The(&F::staleButton).Shrinks());
  Part tempo = Row(
      {The(&F::Label1), The(&F::texttempo).Widths(kTempoWidth, kTempoWidth), The(&F::tempoUnit)});
  result.push_back(Row({The(&F::lbltextresult).Weight(1).Widths(kLeastTitle, Part::kUnbounded),
                        std::move(tempo)})
                       .Wraps());
  result.push_back(
      Row({The(&F::limitMark), The(&F::rangeMark), The(&F::wordsMark), Stretch()}).Wraps());
  result.push_back(The(&F::textresultado).Weight(5).Heights(kLowestDisplay));
  result.push_back(Row({The(&F::copyButton), The(&F::saveAsButton), Stretch(), The(&F::smallType),
                        The(&F::sizeSlider).Widths(kSliderWidth, kSliderWidth), The(&F::largeType)})
                       .Wraps());
  result.push_back(The(&F::savedText));
  std::vector<Part> columns;
  columns.push_back(std::move(list));
  if (wide) {
    columns.push_back(Column(std::move(result)).Weight(6).Widths(0, look::kMeasure).Scrolls());
    columns.push_back(
        Column({std::move(drawing).Weight(300), std::move(notices).Weight(400), Stretch()})
            .Weight(3)
            .Widths(0, look::kMeasure)
            .Scrolls());
  } else {
    const auto side = [](Part part) {
      return std::move(part).Weight(1).Widths(kLeastSide, Part::kUnbounded).Heights(kLowestSide);
    };
    result.push_back(
        Row({side(std::move(drawing)), side(std::move(notices))}).Gap(look::kPageMargin).Wraps());
    // Large fonts may need more height than the window has.
    columns.push_back(Column(std::move(result)).Weight(1).Scrolls());
  }
  return Row(std::move(columns))
      .Gap(look::kPageMargin)
      .Margins(look::kPageMargin, look::kGrid, look::kPageMargin);
}

RepertoirePage::RepertoirePage(SharedState& state) : state_(state) {
  picimprimir.enabled = false;
  copiedTimer.enabled = false;
  copiedTimer.interval = look::kCopiedMs;
  folderTimer.enabled = false;
  folderTimer.interval = kFolderMs;
}

void RepertoirePage::RefreshRepertoire() {
  const bool here = state_.paginaactual == kRepertoirePage;
  if (here) {
    state_.List1.invitation = all_.empty() ? kEmptyRepertoire : kNothingFiltered;
  }
  folderTimer.enabled = here;
  goToSearchButton.visible = here && all_.empty();
  repertoireFilter.invitation = kFilter;
  undoDeleteButton.visible = here && !deleted_.empty();
  if (asked_ != Entry::kNone && (!here || SelectedName() != askedFile_)) {
    asked_ = Entry::kNone;
  }
  for (Control* control : {&entryLabel, &entryBox, &entryButton, &cancelEntryButton}) {
    control->visible = asked_ != Entry::kNone;
  }
  const bool stale = IsStale();
  const bool selected = !state_.List1.SelectedText().empty();
  staleButton.visible = here && stale;
  staleButton.enabled = selected;
  const phones::CatalogueRow* phone = phones::FindModel(result_.model);
  staleButton.caption =
      "De " + result_.name + (phone == nullptr ? "" : ", para " + std::string(phone->brand)) +
      (selected ? ". Convertir de nuevo" : std::string(u8". Elige una melodía"_w));
  for (Control* control : {&lbltextresult, &textresultado, &Textavisos, &texttempo}) {
    control->enabled = !stale;
  }
  picimprimir.enabled = converted_ && !stale;
  textresultado.invitation =
      phones::FindModel(state_.program.gPhoneModel) != nullptr ? kConvertFirst : kChoosePhoneFirst;
  repertoireView.invitation = words::kDrawing;
  RefreshMarks();
  Textavisos.visible = here && !folded_;
  foldButton.tone = Tone::kMuted;
  foldButton.caption = folded_ ? words::kUnfold : words::kFold;
  copyButton.enabled = !stale && !textresultado.text.empty() && !phones::SavesFile(result_.model);
  saveAsButton.enabled = selected && !line_.empty();
  savedText.visible = here && !savedText.caption.empty();
  teclearButton.enabled = teclearButton.checked =
      !stale && !textresultado.text.empty() &&
      phones::FindKeypad(phones::TypedModel(result_.model)) != nullptr;
  picconvertir.checked = !teclearButton.checked;
}

int RepertoirePage::NoteLimit() const {
  const phones::Format* format = phones::FindFormat(state_.program.gPhoneModel);
  return format == nullptr ? 0 : static_cast<int>(format->noteLimit);
}

void RepertoirePage::RefreshMarks() {
  const bool here = state_.paginaactual == kRepertoirePage;
  const phones::Format* format = phones::FindFormat(state_.program.gPhoneModel);
  const int limit = NoteLimit();
  const int beyond = limit == 0 ? 0 : repertoireDrawing.written - limit;
  limitMark.visible = here && beyond > 0;
  limitMark.caption = core::Counted(static_cast<std::size_t>(std::max(beyond, 0)), "nota no cabe",
                                    "notas no caben");
  const auto outside = std::ranges::count(repertoireDrawing.notes, true, &DrawnNote::outside);
  rangeMark.visible = here && outside > 0;
  rangeMark.caption = std::to_string(outside) + " fuera de alcance";
  limitMark.tone = rangeMark.tone = Tone::kBad;
  wordsMark.visible = here && format != nullptr && format->code == phones::kComposerCode;
  wordsMark.caption = u8"No son las teclas: es lo que se ve"_w;
  wordsMark.tone = Tone::kGood;
}

void RepertoirePage::ShowNext(const std::function<bool(const DrawnNote&)>& meant) {
  const auto& notes = repertoireDrawing.notes;
  const auto next = std::find_if(notes.begin() + repertoireDrawing.shown + 1, notes.end(), meant);
  repertoireDrawing.shown = next == notes.end() ? -1 : static_cast<int>(next - notes.begin());
}

void RepertoirePage::limitMark_Click() {
  ShowNext([limit = NoteLimit()](const DrawnNote& note) { return note.number >= limit; });
}

void RepertoirePage::rangeMark_Click() {
  ShowNext([](const DrawnNote& note) { return note.outside; });
}

const ShownResult* RepertoirePage::ResultToType() {
  RefreshRepertoire();
  return teclearButton.enabled ? &result_ : nullptr;
}

bool RepertoirePage::MarkSounding(double ms) {
  const int index = NoteAt(repertoireDrawing, ms);
  int group = -1;
  if (index >= 0 && !IsStale()) {
    const auto note =
        static_cast<std::size_t>(repertoireDrawing.notes[static_cast<std::size_t>(index)].number);
    group = note < result_.groups.size() ? result_.groups[note] : -1;
  }
  return std::exchange(textresultado.marked, group) != group;
}

bool RepertoirePage::ResultIsCounted() const {
  const phones::Format* format = phones::FindFormat(result_.model);
  return format != nullptr &&
         (format->kind == phones::Kind::kKeys || format->kind == phones::Kind::kNotes);
}

void RepertoirePage::copyButton_Click() {
  state_.program.services.shell.CopyText(textresultado.text);
  copyButton.caption = words::kCopied;
  copiedTimer.enabled = true;
}

void RepertoirePage::copiedTimer_Timer() {
  copyButton.caption = words::kCopy;
  copiedTimer.enabled = false;
}

void RepertoirePage::saveAsButton_Click() {
  const auto file =
      SaveMelodyAs(state_.program.services.fileDialogs, line_, state_.program.gPhoneModel);
  savedText.caption =
      file ? std::string(kSaved) + files::TextFromPath(file->filename()) : std::string();
}

// Failing steps are skipped until the first row has its number; after that the first failure ends
// the listing silently, and the rows so far stay.
void RepertoirePage::FillRepertoire() {
  state_.List1.Clear();
  repertoireFilter.text.clear();
  folder_ = LookAtFolder();
  bool skipping = true;
  const auto step = [&skipping](const auto& work) {
    if (skipping) {
      core::SkipErrors(work);
    } else {
      work();
    }
  };
  core::SkipErrors([&] {
    for (const std::string& file : MelodyFiles(state_.program)) {
      std::string line;
      std::string stem;
      step([&] {
        line = files::ReadMelodyLine(state_.program.MelodyFolder() / files::PathFromText(file));
      });
      const std::string name = core::ScanName(line);
      const std::string formed = core::Joined({name, " (", file});
      step([&] { stem = core::FormedStem(formed, name); });
      state_.List1.AddRow(core::RowText(name, stem));
      skipping = false;
      state_.List1.rows.SetLastData(core::FileNumber(formed));
    }
  });
  ShowNames();
}

void RepertoirePage::ShowNames() {
  all_ = state_.List1.rows;
  allShown_ = ShownRows(all_);
  state_.List1.shown = allShown_;
}

void RepertoirePage::FilterRows() {
  const std::string filter = core::Fold(repertoireFilter.text);
  const auto words = core::SplitText(filter, ' ');
  Control& list = state_.List1;
  list.Clear();
  for (std::size_t i = 0; i < all_.size(); ++i) {
    const std::string line =
        core::Fold(std::string(allShown_[i].text) + ' ' + std::string(all_[i].text));
    if (std::ranges::all_of(words, [&line](auto word) { return core::Contains(line, word); })) {
      list.rows.push_back(all_[i]);
      list.shown.push_back(allShown_[i]);
    }
  }
}

void RepertoirePage::repertoireFilter_Change() {
  const std::string before = SelectedName();
  FilterRows();
  SelectName(before);
  List1_Click();
}

void RepertoirePage::repertoireFilter_Enter() {
  if (!state_.List1.rows.empty()) {
    state_.List1.Select(std::max(0, state_.List1.listIndex));
    List1_Click();
    state_.focusNext = &F::List1;
  }
}

RepertoirePage::FolderState RepertoirePage::LookAtFolder() const {
  FolderState state;
  std::error_code failed;
  for (std::filesystem::directory_iterator at(state_.program.MelodyFolder(), failed), end;
       !failed && at != end; at.increment(failed)) {
    std::error_code gone;
    state.emplace_back(at->path().filename(), at->last_write_time(gone));
  }
  return state;
}

void RepertoirePage::MelodyFolderChanged() {
  if (state_.paginaactual != kRepertoirePage || LookAtFolder() == folder_) {
    return;
  }
  const std::string filter = repertoireFilter.text;
  const std::string before = SelectedName();
  FillRepertoire();
  repertoireFilter.text = filter;
  FilterRows();
  SelectName(before);
  List1_Click();
}

void RepertoirePage::ShowFile(const std::string& file) {
  FillRepertoire();
  SelectName(file);
  List1_Click();
  state_.focusNext = &F::List1;
}

void RepertoirePage::SelectLast() {
  SelectName(last_);
  List1_Click();
  if (!all_.empty()) {
    state_.focusNext = &F::List1;
  }
}

void RepertoirePage::SelectName(const std::string& file) {
  Control& list = state_.List1;
  int at = 0;
  list.Select(-1);
  for (const ListRow& row : list.rows) {
    if (core::MelodyFileName(row.text, row.itemData) == file) {
      return list.Select(at);
    }
    ++at;
  }
}

std::string RepertoirePage::SelectedName() const {
  const ListRow row = state_.List1.Selected();
  return row.text.empty() ? "" : core::MelodyFileName(row.text, row.itemData);
}

std::filesystem::path RepertoirePage::SelectedFile() const {
  return state_.program.MelodyFolder() / files::PathFromText(SelectedName());
}

std::string RepertoirePage::SelectedMelody() const {
  return core::UndoSharpEscape(files::ReadMelodyLine(SelectedFile()));
}

void RepertoirePage::List1_Click() {
  repertoireDrawing = {};
  savedText.caption.clear();
  if (state_.paginaactual != kRepertoirePage) {
    return;
  }
  last_ = SelectedName();
  line_.clear();
  if (!last_.empty()) {
    core::SkipErrors([this] {
      line_ = SelectedMelody();
      repertoireDrawing = MelodyDrawing(line_, state_.program.gPhoneModel);
    });
  }
}

bool RepertoirePage::IsStale() const {
  return !result_.file.empty() &&
         (SelectedName() != result_.file || state_.program.gPhoneModel != result_.model ||
          (last_ == result_.file && line_ != result_.line));
}

// ---- The menu on a row --------------------------------------------------------------------------

MelodyStore RepertoirePage::Store() const {
  return {state_.program.MelodyFolder(), state_.program.BinFolder()};
}

bool RepertoirePage::Try(std::string_view failure, const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception& error) {
    core::MsgBox(std::string(failure) + core::ErrorWords(error) + ".", core::Icon::kExclamation);
    return false;
  }
  return true;
}

void RepertoirePage::Copy(int semitones) {
  const std::string file = SelectedName();
  std::string copy;
  if (!file.empty() && Try(kNotCopied, [&] { copy = Store().Duplicate(file, semitones); })) {
    ShowFile(copy);
  }
}

void RepertoirePage::Ask(Entry what) {
  askedFile_ = SelectedName();
  if (askedFile_.empty()) {
    return;
  }
  asked_ = what;
  entryLabel.caption = what == Entry::kName ? kNewName : kHowManySemitones;
  entryBox.text = what == Entry::kName ? line_.substr(0, line_.find(':')) : "";
  state_.focusNext = &F::entryBox;
}

void RepertoirePage::entryButton_Click() {
  const std::string text(core::Trim(entryBox.text));
  std::string file;
  const bool done =
      asked_ == Entry::kName
          ? Try(kNotRenamed, [&] { file = Store().Rename(askedFile_, text); })
          : Try(kNotCopied, [&] { file = Store().Duplicate(askedFile_, Semitones(text)); });
  if (done) {
    asked_ = Entry::kNone;
    ShowFile(file);
  }
}

void RepertoirePage::cancelEntryButton_Click() {
  asked_ = Entry::kNone;
  state_.focusNext = &F::List1;
}

void RepertoirePage::deleteItem_Click() {
  const std::string file = SelectedName();
  const int row = state_.List1.listIndex;
  if (file.empty() ||
      !Try(kNotDeleted, [&] { deleted_.emplace_back(Store().Delete(file), file); })) {
    return;
  }
  MelodyFolderChanged();
  const int last = static_cast<int>(state_.List1.rows.size()) - 1;
  state_.List1.Select(std::min(row, last));
  List1_Click();
}

void RepertoirePage::undoDeleteButton_Click() {
  if (deleted_.empty()) {
    return;
  }
  const auto last = deleted_.back();
  std::string file;
  if (Try(kNotRestored, [&] { file = Store().Restore(last.first, last.second); })) {
    deleted_.pop_back();
    ShowFile(file);
  }
}

void RepertoirePage::openFolderItem_Click() {
  state_.program.services.shell.OpenFolder(state_.program.MelodyFolder());
}

// ---- Playing and converting ---------------------------------------------------------------------

void RepertoirePage::picreproducir_Click() {
  if (state_.List1.SelectedText().empty()) {
    return;
  }
  const std::string line = files::ReadMelodyLine(SelectedFile());
  core::SkipErrors([&] {
    state_.program.gMelody.Text = core::UndoSharpEscape(line);
    state_.Play(Sounding::kRepertoire, state_.program.gMelody);
  });
}

void RepertoirePage::ConvertSelectedMelody() {
  const std::string row(state_.List1.SelectedText());
  const std::string file = SelectedName(), shown = ShownName(row, false);
  const std::string line = SelectedMelody();
  state_.program.gMelody.Text = line;
  SaveDialogQuestion question(state_.program);
  const auto page = phones::ConvertSelectedMelody(state_.program.gMelody,
                                                  state_.program.gPhoneModel, row, question)
                        .page;
  if (page) {
    lbltextresult.caption = page->title;
    textresultado.text = page->result;
    Textavisos.text = page->notices;
    texttempo.text = page->tempo;
    last_ = file;
    line_ = line;
    const std::string& model = state_.program.gPhoneModel;
    result_ = {row,  model, shown,
               file, line,  NoteGroups(model, page->result, state_.program.gMelody)};
  }
}

void RepertoirePage::picconvertir_Click() {
  if (!state_.List1.SelectedText().empty()) {
    ConvertSelectedMelody();
    picimprimir.enabled = converted_ = true;
    copiedTimer_Timer();
  }
}

void RepertoirePage::picimprimir_Click() {
  PrintSheet(state_.program.services.RichTextBox1, state_.program.ProgramFolder() / kSheetTemplate,
             {.title = std::string(state_.List1.SelectedText()),
              .instructions = Textavisos.text,
              .tempo = texttempo.text,
              .melody = textresultado.text,
              .model = state_.program.gPhoneModel});
}

}  // namespace tonadex::app
