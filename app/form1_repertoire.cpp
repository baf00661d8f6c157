#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

#include "app/cls_open_save.h"
#include "app/form1.h"
#include "app/print_sheet.h"
#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "files/paths.h"
#include "files/read.h"
#include "midi/playback.h"
#include "phones/conversion.h"

// The repertoire page: listing, playing, converting, printing.
namespace tonadex::app {
namespace {

// The ordinary files of the repertoire in the order in which it yields them, none when it cannot be
// read. Left out: hidden ones, and those whose name cannot be a row's text, so that no row could
// find them again.
std::vector<std::filesystem::path> MelodyFiles(const Program& program) {
  std::vector<std::filesystem::path> files;
  std::error_code failed;
  for (std::filesystem::directory_iterator at(program.MelodyFolder(), failed), end;
       !failed && at != end; at.increment(failed)) {
    const std::filesystem::path name = at->path().filename();
    std::error_code unknown;
    if (at->is_regular_file(unknown) && !program.services.shell.IsHidden(at->path()) &&
        files::PathFromText(files::TextFromPath(name)) == name) {
      files.push_back(at->path());
    }
  }
  return files;
}

// The conversion's question for a file, asked in the system's save dialog.
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

// Steps that fail are skipped until the first row has its number; from there on the first failure
// ends the filling, without a message, and the rows so far stay.
void Form1::FillRepertoire() {
  List1.Clear();
  bool skipping = true;
  const auto step = [&skipping](const auto& work) {
    if (skipping) {
      core::SkipErrors(work);
    } else {
      work();
    }
  };
  core::SkipErrors([&] {
    for (const std::filesystem::path& file : MelodyFiles(program_)) {
      std::string line;
      std::string stem;
      step([&] { line = files::ReadMelodyLine(file); });
      const std::string name = core::ScanName(line);
      const std::string formed = name + " (" + files::TextFromPath(file.filename());
      step([&] { stem = core::FormedStem(formed, name); });
      List1.AddRow(core::RowText(name, stem));
      skipping = false;
      List1.rows.SetLastData(core::FileNumber(formed));
    }
  });
}

std::filesystem::path Form1::SelectedFile() const {
  return program_.MelodyFolder() /
         files::PathFromText(core::MelodyFileName(List1.SelectedText(), List1.SelectedData()));
}

void Form1::List1_Click() {
  repertoireDrawing = {};
  if (paginaactual == kRepertoirePage && !List1.SelectedText().empty()) {
    core::SkipErrors([this] {
      repertoireDrawing =
          MelodyDrawing(files::ReadMelodyLine(SelectedFile()), program_.gPhoneModel);
    });
  }
}

void Form1::List1_DblClick() {
  if (paginaactual == kRepertoirePage) {
    picreproducir_Click();
  } else {
    picdescargar_Click();
  }
}

void Form1::Play(Sounding what) {
  struct Scope {
    Sounding& sounding;
    ~Scope() { sounding = Sounding::kNothing; }
  } const scope{sounding};
  sounding = what;
  midi::PlayMelody(program_.gMelody, program_.services.sequencer);
}

void Form1::picreproducir_Click() {
  if (List1.SelectedText().empty()) {
    return;
  }
  const std::string line = files::ReadMelodyLine(SelectedFile());
  core::SkipErrors([&] {
    program_.gMelody.Text = core::UndoSharpEscape(line);
    Play(Sounding::kRepertoire);
  });
}

void Form1::ConvertSelectedMelody() {
  const std::string row(List1.SelectedText());
  program_.gMelody.Text = core::UndoSharpEscape(files::ReadMelodyLine(SelectedFile()));
  SaveDialogQuestion question(program_);
  const auto page =
      phones::ConvertSelectedMelody(program_.gMelody, program_.gPhoneModel, row, question).page;
  if (page) {
    lbltextresult.caption = page->title;
    textresultado.text = page->result;
    Textavisos.text = page->notices;
    texttempo.text = page->tempo;
    resultRow_ = row;
    resultModel_ = program_.gPhoneModel;
  }
}

void Form1::picconvertir_Click() {
  if (!List1.SelectedText().empty()) {
    ConvertSelectedMelody();
    picimprimir.enabled = true;
  }
}

void Form1::picimprimir_Click() {
  PrintSheet(program_.services.RichTextBox1, program_.ProgramFolder() / kSheetTemplate,
             {.title = std::string(List1.SelectedText()),
              .instructions = Textavisos.text,
              .tempo = texttempo.text,
              .melody = textresultado.text,
              .model = program_.gPhoneModel});
}

}  // namespace tonadex::app
