#include <gtest/gtest.h>

#include <QFile>
#include <QGuiApplication>

#include "app/print_sheet.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "platform/message_box.h"
#include "shell/qt/print/rich_text_box.h"
#include "tests/qt_rtf/private_spooler.h"

namespace tonadex::shell {
namespace {

using core::literals::operator""_w;

constexpr std::string_view kTemplate =
    R"({\rtf1\ansi\deff0{\fonttbl{\f0\fswiss Arial;}}\paperw11906\paperh16838\margl1134\margt1134)"
    R"(\f0\fs40\b cambiatitulo\b0\fs24\par Formato: cambiamodelo\par Tempo: cambiatempo\par)"
    R"( Melod\'eda: cambiamelodia\par cambiainstrucciones\par\page \'daltima p\'e1gina\par})";

app::SheetValues Values() {
  return {.title = std::string(u8"Canción del ñandú"_w),
          .instructions = std::string(u8"Pulsa « # » sólo una vez — y ya está."_w),
          .tempo = "125",
          .melody = "11 2 (3) 44* 5# 0",
          .model = "3210,3310,3330,3390,8250"};
}

class PrintQueueTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!test::PrivateSpooler::Installed()) {
      GTEST_SKIP() << "SKIPPED: cupsd, lpadmin or the generic PDF printer is not installed";
    }
    static test::PrivateSpooler* const kOnlyOne = new test::PrivateSpooler;
    spooler = kOnlyOne;
    ASSERT_TRUE(spooler->Running()) << spooler->Log().toStdString();
    folder.Write("print.rtf", kTemplate);
  }
  static void TearDownTestSuite() {
    delete spooler;
    spooler = nullptr;
  }

  void Print(const PrintTarget& target) {
    QtRichTextBox box(target);
    app::PrintSheet(box, folder / "print.rtf", Values());
  }
  std::string Failure(const PrintTarget& target) {
    try {
      Print(target);
      return "";
    } catch (const core::RunTimeError& error) {
      EXPECT_EQ(error.number, core::ErrorNumber::kDeviceFailure);
      return core::ToUtf8(error.what());
    }
  }

  inline static test::PrivateSpooler* spooler = nullptr;
  test::TempFolder folder;
  platform::RecordingMessages messages;
  platform::ScopedMessageSink sink{messages};
};

// One test: the client library finds its server once in a process.
TEST_F(PrintQueueTest, WhatThePrinterGets) {
  ASSERT_TRUE(spooler->AddQueue("OTRA") && spooler->AddQueue("CASA") &&
              spooler->AddQueue("CERRADA"));
  spooler->MakeDefault("CASA");
  spooler->Reject("CERRADA");
  constexpr auto kText =
      "Canción del ñandú\nFormato: Nokia>Compositor.\nTempo: 125\nMelodía: 11 2 (3) 44* 5# 0\n"
      "Pulsa « # » sólo una vez — y ya está.\n\fÚltima página\n\f";

  Print({});
  const QString job = spooler->WaitForJob("CASA");
  ASSERT_FALSE(job.isEmpty()) << spooler->Log().toStdString();
  EXPECT_EQ(test::OutputOf("pdftotext", {"-layout", "-nopgbrk", job, "-"}).simplified(),
            QString(kText).simplified());
  EXPECT_TRUE(test::OutputOf("pdfinfo", {job}).contains("(A4)"));

  Print({.printer = "OTRA", .pdf = {}});
  EXPECT_FALSE(spooler->WaitForJob("OTRA").isEmpty());

  EXPECT_EQ(Failure({.printer = "CERRADA", .pdf = {}}),
            "no se puede imprimir en la impresora «CERRADA»");
  EXPECT_EQ(Failure({.printer = "NINGUNA", .pdf = {}}), "no existe la impresora «NINGUNA»");
  EXPECT_TRUE(messages.messages.empty());
}

}  // namespace
}  // namespace tonadex::shell

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
