#include "platform/qt/rich_text_box.h"

#include <gtest/gtest.h>

#include <QProcess>

#include "app/print_sheet.h"
#include "core/message_box.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "tests/core/table.h"
#include "tests/support/full_disk.h"
#include "tests/support/temp_folder.h"

namespace tonadex::platform::rich_text_box_test {

using core::literals::operator""_w;

std::string PdfText(const std::filesystem::path& file) {
  QProcess process;
  process.start("pdftotext", {"-raw", "-nopgbrk", QString::fromStdString(file.string()), "-"});
  process.waitForFinished();
  return process.readAllStandardOutput().simplified().toStdString();
}

// CUPS_SERVER in CMakeLists.txt makes sure that these tests find no printer.
struct RichTextBoxTest : testing::Test {
  RichTextBoxTest() {
    qputenv("HOME", folder.path().c_str());
    qputenv("XDG_CONFIG_HOME", (folder / "config").c_str());
    folder.Write("config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Mis papeles\"\n");
  }

  test::TempFolder folder;
  core::RecordingMessages messages;
  core::ScopedMessageSink sink{messages};
};

// Values are not escaped, so they can change the structure of the sheet.
TEST_F(RichTextBoxTest, ValuesGoIntoTheSourceAsTheyAre) {
  for (const test::Row& row : test::Table("Sheets")) {
    folder.Write("print.rtf", row[0]);
    QtRichTextBox box({.printer = {}, .pdf = folder / "hoja.pdf"});
    app::SheetValues values{};
    values.title = row[1];
    values.melody = row[2];
    app::PrintSheet(box, folder / "print.rtf", values);
    EXPECT_EQ(PdfText(folder / "hoja.pdf"), row[3]);
  }
  EXPECT_TRUE(messages.messages.empty());
}

TEST_F(RichTextBoxTest, WithoutPrintersToTheUsersDocuments) {
  QtRichTextBox box;
  box.SetTextRTF(
      "{\\rtf1 Se\xF1"
      "al}");
  box.SelPrint("vals");
  box.SelPrint("vals");
  ASSERT_EQ(messages.messages.size(), 2u);
  const std::filesystem::path first = folder / "Mis papeles/vals.pdf";
  const std::filesystem::path second = folder / "Mis papeles/vals 2.pdf";
  EXPECT_EQ(PdfText(first), "Señal");
  EXPECT_EQ(PdfText(second), "Señal");
  EXPECT_EQ(messages.messages[1],
            (core::Message{std::string(u8"No hay ninguna impresora predeterminada.\r\n"
                                       u8"La hoja está guardada en:\r\n"_w) +
                               files::TextFromPath(second),
                           "Tonadex", core::Icon::kInformation}));
}

TEST_F(RichTextBoxTest, FailuresAreErrors) {
  folder.Write("fichero", "");
  for (const PrintTarget& target :
       {PrintTarget{"", folder / "fichero/hoja.pdf"}, PrintTarget{"NINGUNA", {}}}) {
    QtRichTextBox box(target);
    box.SetTextRTF("{\\rtf1 x}");
    EXPECT_THROW(box.SelPrint("vals"), core::RunTimeError);
  }
  folder.Write("hoja.pdf", "old");
  {
    const test::FullDisk full(200);  // less than a sheet, which fits in the buffer of QSaveFile
    QtRichTextBox box({.printer = {}, .pdf = folder / "hoja.pdf"});
    box.SetTextRTF("{\\rtf1 x}");
    EXPECT_THROW(box.SelPrint("vals"), core::RunTimeError);
  }
  EXPECT_EQ(folder.Read("hoja.pdf"), "old");
  folder.Write("config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/fichero\"\n");
  QtRichTextBox box;
  box.SetTextRTF("{\\rtf1 x}");
  EXPECT_THROW(box.SelPrint("vals"), core::RunTimeError);
  EXPECT_TRUE(messages.messages.empty());
}

TEST_F(RichTextBoxTest, AnySheetPrints) {
  for (const char* source : {"", "{\\rtf1}", "}}}{{{\\par", "{\\rtf1\\paperw1\\paperh1 x}",
                             "{\\rtf1\\margl30000\\margr30000 x}", "{\\rtf1\\paperw20000 x}",
                             "{\\rtf1\\fs800\\li30000\\box\\brdrs\\cbpat9 xxxxxxxxxx}"}) {
    QtRichTextBox box({.printer = {}, .pdf = folder / "hoja.pdf"});
    box.SetTextRTF(source);
    EXPECT_NO_THROW(box.SelPrint("vals")) << source;
  }
}

}  // namespace tonadex::platform::rich_text_box_test
