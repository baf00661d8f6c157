#include "shell/qt/print/rich_text_box.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <sstream>

#include "app/print_sheet.h"
#include "cli/context.h"
#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "platform/message_box.h"
#include "tests/support/full_disk.h"
#include "tests/support/temp_folder.h"

namespace tonadex::shell {
namespace {

using core::literals::operator""_w;

std::string PdfText(const std::filesystem::path& file) {
  QProcess process;
  process.start("pdftotext", {"-raw", "-nopgbrk", QString::fromStdString(file.string()), "-"});
  process.waitForFinished();
  return process.readAllStandardOutput().simplified().toStdString();
}

// The machine of these tests has no printer: see CUPS_SERVER in CMakeLists.txt.
class RichTextBoxTest : public testing::Test {
 protected:
  RichTextBoxTest() {
    qputenv("HOME", folder.path().c_str());
    qputenv("XDG_CONFIG_HOME", (folder / "config").c_str());
    folder.Write("config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Mis papeles\"\n");
  }

  test::TempFolder folder;
  platform::RecordingMessages messages;
  platform::ScopedMessageSink sink{messages};
};

// Values are part of the source: they can change its structure.
TEST_F(RichTextBoxTest, ValuesGoIntoTheSourceAsTheyAre) {
  struct Case {
    std::string source, title, melody, want;
  };
  const Case cases[] = {
      {"{\\rtf1 cambiatitulo / cambiatitulo: cambiamelodia, cambiamelodia.}", "uno", "8c 8d",
       "uno / uno: 8c 8d, 8c 8d."},
      {"{\\rtf1 cambiatitulo|cambiamelodia.}", "a{\\*\\x ", "b}c", "ac."},
      {"{\\rtf1 cambiatitulo|cambiamelodia.}", "a\\b{c}\\par d", "e\nf", "ac d|ef."},
      {"{\\rtf1 cambiatitulo|cambiamelodia.}", "a}", "b", "a"},
      {"{\\rtf1 cambiatitulo|cambiamelodia.}", "cambiamelodia", "8c", "8c|8c."},
  };
  for (const Case& sheet : cases) {
    folder.Write("print.rtf", sheet.source);
    QtRichTextBox box({.printer = {}, .pdf = folder / "hoja.pdf"});
    app::SheetValues values{};
    values.title = sheet.title;
    values.melody = sheet.melody;
    app::PrintSheet(box, folder / "print.rtf", values);
    EXPECT_EQ(PdfText(folder / "hoja.pdf"), sheet.want);
  }
  EXPECT_TRUE(messages.messages.empty());
}

TEST_F(RichTextBoxTest, WithoutPrintersToTheUsersDocuments) {
  QtRichTextBox box;
  box.SetTextRTF(
      "{\\rtf1 Se\xF1"
      "al}");
  box.SelPrint();
  box.SelPrint();
  ASSERT_EQ(messages.messages.size(), 2u);
  const std::filesystem::path first = folder / "Mis papeles/Tonadex.pdf";
  const std::filesystem::path second = folder / "Mis papeles/Tonadex (2).pdf";
  EXPECT_EQ(PdfText(first), "Señal");
  EXPECT_EQ(PdfText(second), "Señal");
  EXPECT_EQ(messages.messages[1],
            (platform::Message{std::string(u8"No hay ninguna impresora predeterminada.\r\n"
                                           u8"La hoja está guardada en:\r\n"_w) +
                                   core::TextFromPath(second),
                               "Tonadex", platform::Icon::kInformation}));
}

TEST_F(RichTextBoxTest, FailuresAreErrors) {
  folder.Write("fichero", "");
  for (const PrintTarget& target :
       {PrintTarget{"", folder / "fichero/hoja.pdf"}, PrintTarget{"NINGUNA", {}}}) {
    QtRichTextBox box(target);
    box.SetTextRTF("{\\rtf1 x}");
    EXPECT_THROW(box.SelPrint(), core::RunTimeError);
  }
  folder.Write("hoja.pdf", "old");
  {
    const test::FullDisk full(200);  // less than a sheet, which is less than the toolkit's buffer
    QtRichTextBox box({.printer = {}, .pdf = folder / "hoja.pdf"});
    box.SetTextRTF("{\\rtf1 x}");
    EXPECT_THROW(box.SelPrint(), core::RunTimeError);
  }
  EXPECT_EQ(folder.Read("hoja.pdf"), "old");
  folder.Write("config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/fichero\"\n");
  QtRichTextBox box;
  box.SetTextRTF("{\\rtf1 x}");
  EXPECT_THROW(box.SelPrint(), core::RunTimeError);
  EXPECT_TRUE(messages.messages.empty());
}

TEST_F(RichTextBoxTest, AnySheetPrints) {
  for (const char* source : {"", "{\\rtf1}", "}}}{{{\\par", "{\\rtf1\\paperw1\\paperh1 x}",
                             "{\\rtf1\\margl30000\\margr30000 x}", "{\\rtf1\\paperw20000 x}",
                             "{\\rtf1\\fs800\\li30000\\box\\brdrs\\cbpat9 xxxxxxxxxx}"}) {
    QtRichTextBox box({.printer = {}, .pdf = folder / "hoja.pdf"});
    box.SetTextRTF(source);
    EXPECT_NO_THROW(box.SelPrint()) << source;
  }
}

TEST_F(RichTextBoxTest, FromTheCommandLine) {
  struct Case {
    std::vector<std::string> arguments;
    int code;
    std::string errors;
  };
  folder.Write("print.rtf", "{\\rtf1 cambiatitulo|cambiamodelo|cambiatempo|cambiamelodia}");
  folder.Write("vals.txt", "Vals\xF1:d=4,o=5,b=63:c,8d#6");
  folder.Write("mala.txt", "x:d=4");
  qputenv("TONADEX_HOME", folder.path().c_str());
  const std::string pdf = (folder / "hoja.pdf").string();
  const std::string melody = (folder / "vals.txt").string();
  const std::string kBad =
      "Error desconocido al separar las notas del RTTTL.Comprueba que sea correcto\n";
  const Case cases[] = {
      {{"-m", " Compositor", melody, "--pdf", pdf}, 0, ""},
      {{"-m", " Compositor", (folder / "mala.txt").string(), "--pdf", pdf + "2"}, 1, kBad + kBad},
      {{"-m", "?", melody, "--pdf", pdf + "2"},
       1,
       "tonadex-cli: Selecciona el modelo de tu móvil en el apartado de opciones para poder usar "
       "el programa\n"},
      {{"-m", " KWS", melody}, 2, "tonadex-cli: « KWS» graba un fichero que no se imprime\n"},
      {{"-m", " Compositor", melody, "--pdf", pdf, "--impresora", "X"},
       2,
       "tonadex-cli: elige --pdf o --impresora\n"},
      {{"-m", " Compositor", melody, "--impresora", "X"},
       3,
       "tonadex-cli: no existe la impresora «X»\n"},
  };
  for (const Case& run : cases) {
    std::vector<const char*> arguments = {"tonadex-cli", "imprimir"};
    for (const std::string& argument : run.arguments) {
      arguments.push_back(argument.c_str());
    }
    std::istringstream in;
    std::ostringstream out, err;
    EXPECT_EQ(cli::Run(static_cast<int>(arguments.size()), arguments.data(), in, out, err),
              run.code);
    EXPECT_EQ(out.str() + err.str(), run.errors);
  }
  EXPECT_EQ(PdfText(pdf), "Valsñ|Nokia>Compositor.|63|4c1 8#d2");
  EXPECT_FALSE(std::filesystem::exists(pdf + "2"));
}

}  // namespace
}  // namespace tonadex::shell
