#include "app/pages/repertoire_page.h"

#include <algorithm>
#include <array>
#include <optional>
#include <system_error>
#include <utility>

#include "app/cls_open_save.h"
#include "app/form1.h"
#include "app/layout.h"
#include "app/print_sheet.h"
#include "app/result_file_name.h"
#include "app/words.h"
#include "core/melody_file.h"
#include "core/message_box.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"
#include "files/write.h"
#include "phones/catalogue.h"
#include "phones/conversion.h"
#include "phones/formats.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using F = Form1;

constexpr int kListWidth = 280, kWidestList = 400;
constexpr int kTempoWidth = 64, kSliderWidth = 120;
constexpr int kLowestDisplay = 120, kLowestNotices = 56, kTallestNotices = 320, kLowestSide = 104,
              kTallestSide = 160;

constexpr std::string_view kEmptyRepertoire =
    u8"Tu repertorio está vacío. Busca melodías en el servidor y descárgalas: aparecerán aquí."_w;
constexpr std::string_view kChoosePhoneFirst =
    u8"Elige tu móvil en Opciones; después podrás convertir tus melodías."_w;
constexpr std::string_view kConvertFirst =
    u8"Elige una melodía y pulsa Convertir: aquí verás lo que necesita tu móvil."_w;

constexpr auto kRows = std::to_array<ControlInfo>({
    Button(Look::kButton, "goToSearchButton", &F::goToSearchButton, words::kGoToSearch, "buscar",
           "", &F::cmdbuscar_Click),
    Button(Look::kButton, "picreproducir", &F::picreproducir, "Re&producir", "reproducir",
           u8"Escuchar la melodía elegida"_w, &F::picreproducir_Click),
    Button(Look::kPrimary, "picconvertir", &F::picconvertir, "&Convertir", "convertir",
           u8"Convertir la melodía elegida para tu móvil"_w, &F::picconvertir_Click),
    Button(Look::kButton, "picimprimir", &F::picimprimir, "I&mprimir", "imprimir",
           u8"Imprimir la melodía convertida"_w, &F::picimprimir_Click),
    Words("lbltextresult", &F::lbltextresult, "", Font::kTitle),
    View("repertoireView", &F::repertoireView, &F::repertoireDrawing, Sounding::kRepertoire),
    Row(Look::kDisplay, "textresultado", &F::textresultado, u8"Resultado de la conversión"_w),
    Button(Look::kButton, "copyButton", &F::copyButton, words::kCopy, "copiar", "",
           &F::copyButton_Click),
    Row(Look::kTimer, "copiedTimer", &F::copiedTimer, "", {Event::kTick, &F::copiedTimer_Timer}),
    Button(Look::kButton, "saveAsButton", &F::saveAsButton, words::kSaveAs, "guardar", "",
           &F::saveAsButton_Click),
    Words("smallType", &F::smallType, "A", Font::kSmall, Tone::kMuted),
    Row(Look::kSlider, "sizeSlider", &F::sizeSlider, words::kTextSize,
        {Event::kChange, &F::sizeSlider_Change}, {}, words::kTextSize),
    Words("largeType", &F::largeType, "A", Font::kTitle, Tone::kMuted),
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

// The result is the heart of the page; the drawing and the notices stand under it or beside it.
Part Arranged(bool wide) {
  Part list = Column({The(&F::List1).Weight(1), The(&F::goToSearchButton)})
                  .Weight(wide ? 2 : 0)
                  .Widths(kListWidth, wide ? kWidestList : kListWidth);
  Part drawing = The(&F::repertoireView).Weight(3).Heights(look::kLowestView, look::kTallestView);
  Part notices =
      Field(&F::Label2, The(&F::Textavisos).Weight(1).Heights(kLowestNotices, kTallestNotices));
  std::vector<Part> result;
  result.push_back(
      Row({The(&F::picreproducir), The(&F::picconvertir), The(&F::picimprimir), Stretch()}));
  result.push_back(Row({The(&F::lbltextresult).Weight(1), The(&F::Label1),
                        The(&F::texttempo).Widths(kTempoWidth, kTempoWidth), The(&F::tempoUnit)}));
  result.push_back(The(&F::textresultado).Weight(5).Heights(kLowestDisplay));
  result.push_back(
      Row({The(&F::copyButton), The(&F::saveAsButton), Stretch(), The(&F::smallType),
           The(&F::sizeSlider).Widths(kSliderWidth, kSliderWidth), The(&F::largeType)}));
  std::vector<Part> columns;
  columns.push_back(std::move(list));
  if (wide) {
    columns.push_back(Column(std::move(result)).Weight(6).Widths(0, look::kMeasure).Scrolls());
    columns.push_back(
        Column({std::move(drawing).Weight(300), std::move(notices).Weight(200), Stretch()})
            .Weight(3)
            .Widths(0, look::kMeasure)
            .Scrolls());
  } else {
    result.push_back(Row({std::move(drawing).Weight(1), std::move(notices).Weight(1)})
                         .Gap(look::kPageMargin)
                         .Weight(1)
                         .Heights(kLowestSide, kTallestSide));
    // Large fonts may need more height than the window has.
    columns.push_back(Column(std::move(result)).Weight(1).Scrolls());
  }
  return Row(std::move(columns))
      .Gap(look::kPageMargin)
      .Margins(look::kPageMargin, look::kGrid, look::kPageMargin);
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

Part RepertoirePage::Layout() {
  return Arranged(false);
}

Part RepertoirePage::WideLayout() {
  return Arranged(true);
}

RepertoirePage::RepertoirePage(SharedState& state) : state_(state) {
  picimprimir.enabled = false;
  copiedTimer.enabled = false;
  copiedTimer.interval = look::kCopiedMs;
}

void RepertoirePage::RefreshRepertoire() {
  const bool here = state_.paginaactual == kRepertoirePage;
  if (here) {
    state_.List1.invitation = kEmptyRepertoire;
  }
  goToSearchButton.visible = here && state_.List1.rows.empty();
  textresultado.invitation =
      phones::FindModel(state_.program.gPhoneModel) != nullptr ? kConvertFirst : kChoosePhoneFirst;
  repertoireView.invitation = words::kDrawing;
  copyButton.enabled = saveAsButton.enabled =
      !textresultado.text.empty() && !phones::SavesFile(resultModel_);
}

std::vector<ResultGroup> RepertoirePage::ResultGroupsShown() const {
  return ResultGroups(textresultado.text);
}

bool RepertoirePage::ResultIsCounted() const {
  const phones::Format* format = phones::FindFormat(resultModel_);
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
  const auto file = state_.program.services.fileDialogs.AskSaveAs(
      words::kSaveAs, SuggestedFileName(resultRow_, resultModel_), words::kFilterText);
  if (file && !core::SkipErrors([&] { files::WriteBytes(*file, textresultado.text); })) {
    core::MsgBox(words::kNotSaved, core::Icon::kExclamation);
  }
}

void RepertoirePage::sizeSlider_Change() {
  textresultado.value = sizeSlider.value;
}

// Failing steps are skipped until the first row has its number; after that the first failure ends
// the listing silently, and the rows so far stay.
void RepertoirePage::FillRepertoire() {
  state_.List1.Clear();
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
      const std::string formed = name + " (" + file;
      step([&] { stem = core::FormedStem(formed, name); });
      state_.List1.AddRow(core::RowText(name, stem));
      skipping = false;
      state_.List1.rows.SetLastData(core::FileNumber(formed));
    }
  });
}

std::filesystem::path RepertoirePage::SelectedFile() const {
  return state_.program.MelodyFolder() /
         files::PathFromText(
             core::MelodyFileName(state_.List1.SelectedText(), state_.List1.SelectedData()));
}

void RepertoirePage::List1_Click() {
  repertoireDrawing = {};
  if (state_.paginaactual == kRepertoirePage && !state_.List1.SelectedText().empty()) {
    core::SkipErrors([this] {
      repertoireDrawing = MelodyDrawing(
          core::UndoSharpEscape(files::ReadMelodyLine(SelectedFile())), state_.program.gPhoneModel);
    });
  }
}

void RepertoirePage::picreproducir_Click() {
  if (state_.List1.SelectedText().empty()) {
    return;
  }
  const std::string line = files::ReadMelodyLine(SelectedFile());
  core::SkipErrors([&] {
    state_.program.gMelody.Text = core::UndoSharpEscape(line);
    state_.Play(Sounding::kRepertoire);
  });
}

void RepertoirePage::ConvertSelectedMelody() {
  const std::string row(state_.List1.SelectedText());
  state_.program.gMelody.Text = core::UndoSharpEscape(files::ReadMelodyLine(SelectedFile()));
  SaveDialogQuestion question(state_.program);
  const auto page = phones::ConvertSelectedMelody(state_.program.gMelody,
                                                  state_.program.gPhoneModel, row, question)
                        .page;
  if (page) {
    lbltextresult.caption = page->title;
    textresultado.text = page->result;
    Textavisos.text = page->notices;
    texttempo.text = page->tempo;
    resultRow_ = row;
    resultModel_ = state_.program.gPhoneModel;
  }
}

void RepertoirePage::picconvertir_Click() {
  if (!state_.List1.SelectedText().empty()) {
    ConvertSelectedMelody();
    picimprimir.enabled = true;
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
