#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>

#include "app/composer_keys.h"
#include "app/form1.h"
#include "core/melody_file.h"
#include "core/rtttl.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/read.h"
#include "fuzz/require.h"
#include "net/file_name.h"
#include "nokia3210/cnokia.h"
#include "phones/catalogue.h"
#include "server/melody_name.h"
#include "tests/support/test_program.h"

// The main window: the first byte selects the phone, the first line is the name of a file in the
// repertoire, the rest is its content and the text typed into the boxes.
namespace {

using namespace tonadex;
namespace fs = std::filesystem;

bool CanBeFile(std::string_view name) {
  return !name.empty() && name.size() <= 255 && name != "." && name != ".." &&
         name.find_first_of(std::string_view("/\0", 2)) == name.npos;
}

void CheckDrawing(const app::Drawing& drawing) {
  double end = 0;
  for (const app::DrawnNote& note : drawing.notes) {
    Require(std::isfinite(note.length) && note.length >= 0, "a note without length");
    Require(std::abs(note.start - end) <= 1e-6 * (1 + end), "notes that are not back to back");
    Require(note.pause || (note.pitch >= drawing.lowest && note.pitch <= drawing.highest),
            "a note outside the drawing");
    end = note.start + note.length;
  }
  Require(std::abs(drawing.length - end) <= 1e-6 * (1 + end), "another length than its notes'");
  Require(core::IsUtf8(core::ToUtf8(app::DrawingInWords(drawing))), "words that are no text");
  Require(app::NoteAt(drawing, drawing.soundLength + 1) == -1, "a note behind the end");
}

std::string WithoutBlanks(std::string_view text) {
  std::string rest;
  std::ranges::copy_if(text, std::back_inserter(rest), [](char c) {
    return std::string_view(" \t\r\n").find(c) == std::string_view::npos;
  });
  return rest;
}

void CheckResult(const app::Form1& form) {
  std::string joined;
  for (const app::ResultGroup& group : form.ResultGroupsShown()) {
    Require(group.held.empty() ||
                (group.text.from <= group.held.from && group.held.to <= group.text.to),
            "keys held outside their group");
    joined += form.textresultado.text.substr(group.text.from, group.text.to - group.text.from);
  }
  Require(WithoutBlanks(joined) == WithoutBlanks(form.textresultado.text), "a torn result");
}

// A file with a valid name is found through its row, unless the melody's name contains the
// separators of rows or the row is too short for the search for a number at its end.
void CheckRow(const app::Form1& form, const test::TestProgram& test, std::string_view fileName) {
  const auto& rows = form.List1.rows;
  Require(rows.size() <= 1, "more rows than files");
  const std::string text = core::FromUtf8(fileName);
  const auto name = server::ParseMelodyName(text);
  if (rows.empty() || !name) {
    return;
  }
  const std::string melodyName =
      core::ScanName(files::ReadMelodyLine(test.program.MelodyFolder() / fileName));
  if (melodyName.find('.') == melodyName.npos && melodyName.find(" (") == melodyName.npos &&
      melodyName.size() + text.size() > 3) {
    Require(core::MelodyFileName(rows[0].text, rows[0].itemData) == text,
            "a row that leads elsewhere");
  }
}

void CheckRepertoire(test::TestProgram& test, const std::string& fileName,
                     const std::string& contents) {
  if (!CanBeFile(fileName)) {
    return;
  }
  test.folder.Write(fs::path("melodias") / fileName, contents);
  app::Form1 form(test.program);
  form.Form_Load();
  form.cmdrepertorio_Click();
  CheckRow(form, test, fileName);
  form.List1.Select(0);
  form.List1_Click();
  CheckDrawing(form.repertoireDrawing);
  using Handler = void (app::Form1::*)();
  for (const Handler handler : {&app::Form1::picconvertir_Click, &app::Form1::picreproducir_Click,
                                &app::Form1::picimprimir_Click}) {
    core::SkipErrors([&] { (form.*handler)(); });
  }
  CheckResult(form);
  form.saveAsButton_Click();
  Require(net::IsSafeFileName(test.fileDialogs.proposed.back()), "a name that no file can have");
  fs::remove(test.program.MelodyFolder() / fileName);
}

void CheckTyped(test::TestProgram& test, const std::string& typed) {
  app::Form1 form(test.program);
  form.Form_Load();
  form.cmdinicio_Click();
  form.txtrtttlsube.text = typed;
  form.txtrtttlsube_Change();
  CheckDrawing(form.rtttlDrawing);
  if (form.rtttlCheck.verdict == app::Verdict::kGood) {
    core::RTTTLMelody melody;
    melody.Text = typed;
    Require(core::ParseRTTTL(melody) == core::kParsed, "praise for what is no melody");
  }
  form.txtmelodiacompo.text = typed;
  form.txtmelodiacompo_Change();
  CheckDrawing(form.composerDrawing);
  form.txtcomponombremelodia.text = "x";
  form.txtcompoTempo.text = "120";
  form.cmdscuchacumpo_Click();
  for (const std::string_view name : {"cmdsubecompo", "cmdscuchartttl", "cmdsubirmelortttl"}) {
    const app::ControlInfo& button = *app::FindControl(name);
    if ((form.*button.member).enabled) {
      test.http.replies = {"", ""};
      (form.*button.on.handler)();  // an exception would end the program
    } else {
      Require(!(form.*button.member).whyDisabled.empty(), "a disabled button without a reason");
    }
  }
  const std::string_view keys = typed;
  app::ComposerText composer;
  for (const char key : keys.substr(0, 50)) {
    composer = app::PressKey(composer, std::string_view(&key, 1), (key & 0x20) != 0);
    Require(composer.cursor <= composer.text.size(), "a cursor behind the text");
  }
  nokia3210::CNokia converter;
  converter.SetOriginalText(composer.text);
  converter.Convert();
  Require(converter.ConversionErrors().empty(), "keys that write what cannot be read");
  composer = {typed, typed.size() / 2};
  for (const app::ComposerKey& key : app::ComposerKeys()) {
    composer = app::PressKey(composer, key.label, false);
    Require(composer.cursor <= composer.text.size(), "a cursor behind the text");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  static test::TestProgram test;
  static const auto phones = phones::CatalogueRows();
  test.folder.Write("print.rtf", "{\\rtf1 xxtituloxx xxmelodiaxx}");
  test.program.gPhoneModel = phones[data[0] % phones.size()].model;
  test.fileDialogs.answers = {"/dev/null"};
  test.fileDialogs.asked.clear();
  test.fileDialogs.kinds.clear();
  test.fileDialogs.proposed.clear();
  test.sequencer.commands.clear();
  test.webViews.log.clear();
  test.richText.printed.clear();
  test.boxes.messages.clear();
  const std::string input(data + 1, data + size);
  const std::size_t end = std::min(input.find('\n'), input.size());
  const std::string rest = input.substr(std::min(end + 1, input.size()));
  CheckRepertoire(test, input.substr(0, end), rest);
  CheckTyped(test, rest);
  return 0;
}
